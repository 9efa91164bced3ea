// The operating-system layer on Windows: paths are UTF-16 and the file system
// already ignores case, so names are handed to it as they are.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <io.h>
#include <rpc.h>
#include <windows.h>
#undef GetCurrentTime

#include <string>
#include <vector>

#include "korvo/platform/env.h"
#include "korvo/platform/platform_internal.h"

namespace korvo {

const wchar_t* const kPathSeparator = L"\\";

namespace {

bool Attributes(const std::wstring& path, WIN32_FILE_ATTRIBUTE_DATA* data) {
  return ::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, data) != 0;
}

LocalTime FromFileTime(const FILETIME& utc) {
  FILETIME local;
  SYSTEMTIME st;
  LocalTime out;
  if (!::FileTimeToLocalFileTime(&utc, &local) || !::FileTimeToSystemTime(&local, &st)) {
    return out;
  }
  out.year = st.wYear;
  out.month = st.wMonth;
  out.day = st.wDay;
  out.hour = st.wHour;
  out.minute = st.wMinute;
  out.second = st.wSecond;
  return out;
}

std::wstring WithSeparator(std::wstring dir) {
  if (!dir.empty() && dir.back() != L'\\' && dir.back() != L'/') dir += L'\\';
  return dir;
}

}  // namespace

size_t LastSeparator(std::wstring_view path) {
  return path.find_last_of(L"\\/");
}

std::wstring FindExistingPath(const std::wstring& path) {
  return path;
}

bool FileExists(const std::wstring& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool DirectoryExists(const std::wstring& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool RemoveFile(const std::wstring& path) {
  return ::DeleteFileW(path.c_str()) != 0;
}

bool CanReadWrite(const std::wstring& path) {
  return FileExists(path) && ::_waccess(path.c_str(), 6) == 0;
}

Created CreateFileExclusive(const std::wstring& path, std::string_view content) {
  HANDLE h = ::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                           CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) {
    const DWORD error = ::GetLastError();
    return error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS ? Created::kExists
                                                                       : Created::kFailed;
  }
  if (!content.empty()) {
    DWORD written = 0;
    ::WriteFile(h, content.data(), static_cast<DWORD>(content.size()), &written, nullptr);
  }
  ::CloseHandle(h);
  return Created::kCreated;
}

bool GetLocalFileTimes(const std::wstring& path, LocalTime* created, LocalTime* written) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!Attributes(path, &data)) return false;
  if (created) *created = FromFileTime(data.ftCreationTime);
  if (written) *written = FromFileTime(data.ftLastWriteTime);
  return true;
}

std::vector<std::wstring> ListFiles(const std::wstring& dir) {
  std::vector<std::wstring> names;
  WIN32_FIND_DATAW found;
  HANDLE h = ::FindFirstFileW((WithSeparator(dir) + L"*").c_str(), &found);
  if (h == INVALID_HANDLE_VALUE) return names;
  do {
    if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) names.push_back(found.cFileName);
  } while (::FindNextFileW(h, &found));
  ::FindClose(h);
  return names;
}

std::wstring TempDirectory() {
  wchar_t buffer[MAX_PATH + 2];
  const DWORD n = ::GetTempPathW(MAX_PATH + 1, buffer);
  if (n == 0 || n > MAX_PATH + 1) return L".\\";
  return WithSeparator(std::wstring(buffer, n));
}

bool MakeDirectories(const std::wstring& dir) {
  // Each parent in turn; the ones that exist (or are a drive or share root)
  // simply refuse.
  for (size_t i = 1; i < dir.size(); ++i) {
    const bool separator = dir[i] == L'\\' || dir[i] == L'/';
    if (separator && dir[i - 1] != L':' && dir[i - 1] != L'\\' && dir[i - 1] != L'/') {
      ::CreateDirectoryW(dir.substr(0, i).c_str(), nullptr);
    }
  }
  ::CreateDirectoryW(dir.c_str(), nullptr);
  return DirectoryExists(dir);
}

void SleepMs(int ms) {
  if (ms > 0) ::Sleep(static_cast<DWORD>(ms));
}

int64_t ClockMs() {
  return static_cast<int64_t>(::GetTickCount64());
}

std::wstring NewUuid() {
  UUID id;
  ::UuidCreate(&id);
  // The text form prints the first three fields as numbers: big-endian.
  unsigned char bytes[16] = {
      static_cast<unsigned char>(id.Data1 >> 24), static_cast<unsigned char>(id.Data1 >> 16),
      static_cast<unsigned char>(id.Data1 >> 8),  static_cast<unsigned char>(id.Data1),
      static_cast<unsigned char>(id.Data2 >> 8),  static_cast<unsigned char>(id.Data2),
      static_cast<unsigned char>(id.Data3 >> 8),  static_cast<unsigned char>(id.Data3)};
  for (int i = 0; i < 8; ++i) bytes[8 + i] = id.Data4[i];
  return FormatUuid(bytes);
}

std::wstring ErrorText(int error) {
  wchar_t* buffer = nullptr;
  const DWORD n = ::FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, static_cast<DWORD>(error), 0, reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
  std::wstring text = n > 0 && buffer ? std::wstring(buffer, n) : L"Unknown error";
  if (buffer) ::LocalFree(buffer);
  while (!text.empty() && (text.back() == L'\n' || text.back() == L'\r' || text.back() == L' ')) {
    text.pop_back();
  }
  return text;
}

}  // namespace korvo
