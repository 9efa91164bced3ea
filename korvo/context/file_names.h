// Every file name a project's point holds: the extensions of the field files,
// the fixed temporary names used when a point is written to memory, and the
// marks that separate the sections of that memory form.
#ifndef KORVO_CONTEXT_FILE_NAMES_H_
#define KORVO_CONTEXT_FILE_NAMES_H_

namespace korvo {

// Extensions of a point's field files, as they are formed (upper case).
inline constexpr const wchar_t* kExtSnd = L".SND";
inline constexpr const wchar_t* kExtTlk = L".TLK";
inline constexpr const wchar_t* kExtPrv = L".PRV";
inline constexpr const wchar_t* kExtGvr = L".GVR";
inline constexpr const wchar_t* kExtMtn = L".MTN";
inline constexpr const wchar_t* kExtMil = L".MIL";
inline constexpr const wchar_t* kExtVb = L".VB";

// The field files of a point in the order of the document's seven streams:
// the stems' suffixes that follow the stem's "." .
inline constexpr const wchar_t* kStreamSuffixes[7] = {L"SND", L"TLK", L"PRV", L"GVR",
                                                      L"MTN", L"MIL", L"VB"};

// The names that replace them while a point is written in memory mode; they
// lie in the field-file directory.
inline constexpr const wchar_t* kTempNames[7] = {L"SND.TMP", L"TLK.TMP", L"PRV.TMP", L"GVR.TMP",
                                                 L"MTN.TMP", L"MIL.TMP", L"VB.TMP"};

// The settings file of an installation (in ParKat) and of a project (in its
// directory).
inline constexpr const wchar_t* kSettingsFile = L"korvo.ini";

// The project information file, in the project directory.
inline constexpr const wchar_t* kInfoFile = L"Info.prj";

// Section marks of the memory form of a point.
inline constexpr const wchar_t* kSectionSnd = L"#snd#\n";
inline constexpr const wchar_t* kSectionPrv = L"#prv#\n";
inline constexpr const wchar_t* kSectionMil = L"#mil#\n";
inline constexpr const wchar_t* kSectionGvr = L"#gvr#\n";
inline constexpr const wchar_t* kSectionVb = L"#vb #\n";

}  // namespace korvo

#endif  // KORVO_CONTEXT_FILE_NAMES_H_
