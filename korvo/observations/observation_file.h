// What the files of the field observations (.TLK, .PRV, .MIL, .VB, .GVR,
// .MTN) do alike when they are read: the two file dates in the form these
// files use, and opening a file that another user may be writing.
#ifndef KORVO_OBSERVATIONS_OBSERVATION_FILE_H_
#define KORVO_OBSERVATIONS_OBSERVATION_FILE_H_

#include <string>

#include "korvo/foundation/stdio_file_mem.h"

namespace korvo {

// Sets `skapad` and `andrad` to the local dates of creation and last write of
// the file at `path`, as "%4d-%02.2d-%02.2d". Leaves both when there is no file.
void TakeObservationFileDates(const std::wstring& path, wchar_t (&skapad)[11],
                              wchar_t (&andrad)[11]);

// Opens `stream` on `path` for reading. A file that will not open is tried
// three times with a short wait between (another user may be writing it);
// then the user is asked whether to try again, and each failure asks again.
// False when the user says no.
bool OpenObservationFile(CStdioFileMem& stream, const std::wstring& path);

}  // namespace korvo

#endif  // KORVO_OBSERVATIONS_OBSERVATION_FILE_H_
