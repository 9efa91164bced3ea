#include "korvo/foundation/field_file.h"

#include "korvo/foundation/field_text.h"
#include "korvo/foundation/format.h"
#include "korvo/foundation/messages.h"
#include "korvo/platform/env.h"

namespace korvo {

namespace {
constexpr int kOpenTries = 3;
constexpr int kRetryWaitMs = 200;

void FormatDate(wchar_t (&field)[11], FileDateForm form, const LocalTime& t) {
  CopyField(field, form == FileDateForm::kObservation
                       ? Format(L"%4d-%02.2d-%02.2d", t.year, t.month, t.day)
                       : Format(L"%02.2d.%02.2d.%4d", t.day, t.month, t.year));
}
}  // namespace

void TakeFileDates(const std::wstring& path, FileDateForm form, wchar_t (&skapad)[11],
                   wchar_t (&andrad)[11]) {
  LocalTime created, written;
  if (!GetLocalFileTimes(path, &created, &written)) return;
  FormatDate(skapad, form, created);
  FormatDate(andrad, form, written);
}

bool OpenFieldFile(CStdioFileMem& stream, const std::wstring& path) {
  for (int tries = 1;; ++tries) {
    if (stream.Open(path.c_str(), 0)) return true;
    if (tries < kOpenTries) {
      SleepMs(kRetryWaitMs);
      continue;
    }
    const int error = stream.LastError();
    const std::wstring question =
        Format(L"Could not read file:\n%s\nErrno: %d %s\nRetry?", path, error, ErrorText(error));
    if (ShowMessage(question, MB_ICONQUESTION, MB_YESNO) != IDYES) return false;
  }
}

}  // namespace korvo
