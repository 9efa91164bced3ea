// CFile over a POSIX file descriptor. Share flags have no meaning here and
// are ignored; the lock files order writers instead.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <limits>

#include "korvo/platform/env.h"
#include "korvo/platform/file.h"

namespace {

int OpenFlagsFor(unsigned flags) {
  int os;
  switch (flags & 3u) {
    case CFile::modeWrite:
      os = O_WRONLY;
      break;
    case CFile::modeReadWrite:
      os = O_RDWR;
      break;
    default:
      os = O_RDONLY;
      break;
  }
  if (flags & CFile::modeCreate) {
    os |= O_CREAT;
    if (!(flags & CFile::modeNoTruncate)) os |= O_TRUNC;
  }
  return os | O_CLOEXEC;
}

}  // namespace

CFile::CFile() = default;

CFile::~CFile() {
  CFile::Close();
}

int CFile::Open(const wchar_t* path, unsigned flags, void*) {
  Close();
  path_ = korvo::FindExistingPath(path ? path : L"");
  const int fd = ::open(korvo::NativePath(path_).c_str(), OpenFlagsFor(flags), 0666);
  if (fd < 0) {
    last_error_ = errno;
    return 0;
  }
  // A directory opens for reading here but not on Windows; refuse it the same.
  struct stat st;
  if (::fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
    last_error_ = EISDIR;
    ::close(fd);
    return 0;
  }
  handle_ = fd;
  last_error_ = 0;
  return 1;
}

void CFile::Close() {
  if (handle_ == kNoHandle) return;
  if (::close(static_cast<int>(handle_)) != 0) last_error_ = errno;
  handle_ = kNoHandle;
}

unsigned CFile::Read(void* buffer, unsigned count) {
  auto* dst = static_cast<char*>(buffer);
  unsigned done = 0;
  while (done < count) {
    const ssize_t n = ::read(static_cast<int>(handle_), dst + done, count - done);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) last_error_ = errno;
    if (n <= 0) break;
    done += static_cast<unsigned>(n);
  }
  return done;
}

bool CFile::Write(const void* buffer, unsigned count) {
  const auto* src = static_cast<const char*>(buffer);
  unsigned done = 0;
  while (done < count) {
    const ssize_t n = ::write(static_cast<int>(handle_), src + done, count - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      last_error_ = n < 0 ? errno : EIO;
      return false;
    }
    done += static_cast<unsigned>(n);
  }
  return true;
}

int64_t CFile::Seek(int64_t offset, int from) {
  static constexpr int kWhence[] = {SEEK_SET, SEEK_CUR, SEEK_END};
  if (from < begin || from > end) {
    last_error_ = EINVAL;
    return -1;
  }
  const off_t pos = ::lseek(static_cast<int>(handle_), static_cast<off_t>(offset), kWhence[from]);
  if (pos < 0) {
    last_error_ = errno;
    return -1;
  }
  return static_cast<int64_t>(pos);
}

uint64_t CFile::GetLength() const {
  struct stat st;
  if (::fstat(static_cast<int>(handle_), &st) != 0) return 0;
  return static_cast<uint64_t>(st.st_size);
}

uint64_t CFile::GetPosition() const {
  const off_t pos = ::lseek(static_cast<int>(handle_), 0, SEEK_CUR);
  return pos < 0 ? 0 : static_cast<uint64_t>(pos);
}

// Each Write has already handed its bytes to the system, where every other
// process sees them; durability against power loss is not asked for.
bool CFile::Flush() {
  return IsOpen();
}
