// What the operations of the project database share inside the library: the
// modes of the lock protocol, the titles of its notices, and the version from
// which records take their long form.
#ifndef KORVO_DATABASE_DBS_INTERNAL_H_
#define KORVO_DATABASE_DBS_INTERNAL_H_

namespace korvo::dbs {

// Modes of CKorvoDbs::Dbs_rw.
inline constexpr int kModeOpen = 1000;
inline constexpr int kModeClose = 1001;
inline constexpr int kModeCreate = 1002;

inline constexpr const wchar_t* kReadTitle = L"Innlesning av Brenmark - databas";
inline constexpr const wchar_t* kUpdateTitle = L"Uppdatering av Brenmark - databas";
inline constexpr const wchar_t* kCheckTitle = L"Kontroll av databas";

// The versions from which a record takes 93 bytes.
inline constexpr double kLongRecordVersion = 3.99;

}  // namespace korvo::dbs

#endif  // KORVO_DATABASE_DBS_INTERNAL_H_
