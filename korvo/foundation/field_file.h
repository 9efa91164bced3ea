// What every reader of a field file does alike before it reads: take the
// file's two dates, and open a file that another user may be writing.
#ifndef KORVO_FOUNDATION_FIELD_FILE_H_
#define KORVO_FOUNDATION_FIELD_FILE_H_

#include <string>

#include "korvo/foundation/stdio_file_mem.h"

namespace korvo {

// The forms of the two file dates: the sounding document writes them day
// first ("09.03.2014"), the field observation files year first ("2014-03-09").
enum class FileDateForm { kSounding, kObservation };

// Sets `skapad` and `andrad` to the local dates of creation and last write of
// the file at `path`, in `form`. Leaves both when there is no file.
void TakeFileDates(const std::wstring& path, FileDateForm form, wchar_t (&skapad)[11],
                   wchar_t (&andrad)[11]);

// Opens `stream` on `path` for reading. A file that will not open is tried
// three times with a short wait between (another user may be writing it);
// then the user is asked whether to try again, and each failure asks again.
// False when the user says no.
bool OpenFieldFile(CStdioFileMem& stream, const std::wstring& path);

}  // namespace korvo

#endif  // KORVO_FOUNDATION_FIELD_FILE_H_
