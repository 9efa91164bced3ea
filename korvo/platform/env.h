// The operating system as the rest of the library sees it: paths, directory
// listings, file times, removal, temporary files, sleeping, the process clock
// and random UUIDs. Nothing outside korvo/platform includes a system header.
#ifndef KORVO_PLATFORM_ENV_H_
#define KORVO_PLATFORM_ENV_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "korvo/export.h"
#include "korvo/platform/datetime.h"

namespace korvo {

// The path separator: "\\" on Windows, "/" elsewhere.
KORVO_EXPORT extern const wchar_t* const kPathSeparator;

// The path as UTF-8, the form POSIX systems take (Windows takes the wide path
// as it is). A byte of a native name that is not valid UTF-8 comes back as
// U+DC80 + (byte - 0x80) and goes out again as that byte.
KORVO_EXPORT std::string NativePath(const std::wstring& path);
KORVO_EXPORT std::wstring FromNativePath(const std::string& path);

// The path of an existing file named `path`, whatever the case of its last
// component; `path` itself when no such file exists. An exact match wins.
KORVO_EXPORT std::wstring FindExistingPath(const std::wstring& path);

// Whether a regular file exists at `path`, whatever the case of its name
// (the `_waccess` test of the framework).
KORVO_EXPORT bool FileExists(const std::wstring& path);
KORVO_EXPORT bool DirectoryExists(const std::wstring& path);

// Removes the file found by FindExistingPath; false when there was none or it
// could not be removed.
KORVO_EXPORT bool RemoveFile(const std::wstring& path);

// Whether `path` is an existing file that this process may read and write
// (the `_waccess` test with mode 6), whatever the case of its name.
KORVO_EXPORT bool CanReadWrite(const std::wstring& path);

// Creates `path` only if nothing is there, atomically: of several callers at
// the same moment exactly one succeeds. The file is left holding `content`
// and closed. kExists: something of that name, in any case, was there first;
// kFailed: the file could not be made for another reason.
enum class Created { kCreated, kExists, kFailed };
KORVO_EXPORT Created CreateFileExclusive(const std::wstring& path, std::string_view content = {});

// The creation time (birth time where the file system keeps one, else the last
// write time) and the last write time of a file, in local time.
// Returns false when the file does not exist.
KORVO_EXPORT bool GetLocalFileTimes(const std::wstring& path, LocalTime* created,
                                    LocalTime* written);

// The names (not paths) of the regular files in `dir`, in no set order.
KORVO_EXPORT std::vector<std::wstring> ListFiles(const std::wstring& dir);

// The system's directory of temporary files, with a trailing separator
// (GetTempPathW).
KORVO_EXPORT std::wstring TempDirectory();

// Makes a directory and its parents; true when it exists afterwards.
KORVO_EXPORT bool MakeDirectories(const std::wstring& dir);

// Sleeps for `ms` milliseconds.
KORVO_EXPORT void SleepMs(int ms);

// Milliseconds of a monotonic clock, for waits that poll.
KORVO_EXPORT int64_t ClockMs();

// A new random (version 4) UUID from the operating system's random source,
// in lower case with hyphens: 36 characters.
KORVO_EXPORT std::wstring NewUuid();

// The text of an error number (strerror; FormatMessageW for a Windows error).
KORVO_EXPORT std::wstring ErrorText(int error);

}  // namespace korvo

#endif  // KORVO_PLATFORM_ENV_H_
