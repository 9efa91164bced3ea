// CFile over a Win32 file handle, with the framework's share modes.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#undef GetCurrentTime

#include "korvo/platform/env.h"
#include "korvo/platform/file.h"

namespace {

HANDLE AsHandle(intptr_t h) {
  return reinterpret_cast<HANDLE>(h);
}

DWORD AccessFor(unsigned flags) {
  switch (flags & 3u) {
    case CFile::modeWrite:
      return GENERIC_WRITE;
    case CFile::modeReadWrite:
      return GENERIC_READ | GENERIC_WRITE;
    default:
      return GENERIC_READ;
  }
}

DWORD ShareFor(unsigned flags) {
  switch (flags & 0x70u) {
    case CFile::shareExclusive:
      return 0;
    case CFile::shareDenyWrite:
      return FILE_SHARE_READ;
    case CFile::shareDenyRead:
      return FILE_SHARE_WRITE;
    // Without a share flag several users may read and write one project.
    default:
      return FILE_SHARE_READ | FILE_SHARE_WRITE;
  }
}

DWORD DispositionFor(unsigned flags) {
  if (!(flags & CFile::modeCreate)) return OPEN_EXISTING;
  return (flags & CFile::modeNoTruncate) ? OPEN_ALWAYS : CREATE_ALWAYS;
}

}  // namespace

CFile::CFile() = default;

CFile::~CFile() {
  CFile::Close();
}

int CFile::Open(const wchar_t* path, unsigned flags, void*) {
  Close();
  path_ = path ? path : L"";
  SECURITY_ATTRIBUTES sa{sizeof(SECURITY_ATTRIBUTES), nullptr,
                         (flags & modeNoInherit) ? FALSE : TRUE};
  HANDLE h = ::CreateFileW(path_.c_str(), AccessFor(flags), ShareFor(flags), &sa,
                           DispositionFor(flags), FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) {
    last_error_ = static_cast<int>(::GetLastError());
    return 0;
  }
  handle_ = reinterpret_cast<intptr_t>(h);
  last_error_ = 0;
  return 1;
}

void CFile::Close() {
  if (handle_ == kNoHandle) return;
  if (!::CloseHandle(AsHandle(handle_))) last_error_ = static_cast<int>(::GetLastError());
  handle_ = kNoHandle;
}

unsigned CFile::Read(void* buffer, unsigned count) {
  auto* dst = static_cast<char*>(buffer);
  unsigned done = 0;
  while (done < count) {
    DWORD n = 0;
    if (!::ReadFile(AsHandle(handle_), dst + done, count - done, &n, nullptr)) {
      last_error_ = static_cast<int>(::GetLastError());
      break;
    }
    if (n == 0) break;
    done += n;
  }
  return done;
}

bool CFile::Write(const void* buffer, unsigned count) {
  const auto* src = static_cast<const char*>(buffer);
  unsigned done = 0;
  while (done < count) {
    DWORD n = 0;
    if (!::WriteFile(AsHandle(handle_), src + done, count - done, &n, nullptr) || n == 0) {
      last_error_ = static_cast<int>(::GetLastError());
      return false;
    }
    done += n;
  }
  return true;
}

int64_t CFile::Seek(int64_t offset, int from) {
  static constexpr DWORD kMethod[] = {FILE_BEGIN, FILE_CURRENT, FILE_END};
  if (from < begin || from > end) {
    last_error_ = ERROR_INVALID_PARAMETER;
    return -1;
  }
  LARGE_INTEGER distance, pos;
  distance.QuadPart = offset;
  if (!::SetFilePointerEx(AsHandle(handle_), distance, &pos, kMethod[from])) {
    last_error_ = static_cast<int>(::GetLastError());
    return -1;
  }
  return pos.QuadPart;
}

uint64_t CFile::GetLength() const {
  LARGE_INTEGER size;
  if (!::GetFileSizeEx(AsHandle(handle_), &size)) return 0;
  return static_cast<uint64_t>(size.QuadPart);
}

uint64_t CFile::GetPosition() const {
  LARGE_INTEGER zero, pos;
  zero.QuadPart = 0;
  if (!::SetFilePointerEx(AsHandle(handle_), zero, &pos, FILE_CURRENT)) return 0;
  return static_cast<uint64_t>(pos.QuadPart);
}

// Each Write has already handed its bytes to the system, where every other
// process sees them; durability against power loss is not asked for.
bool CFile::Flush() {
  return IsOpen();
}
