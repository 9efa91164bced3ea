// The operating-system layer on POSIX (Linux): paths are UTF-8 byte strings
// and names are case-sensitive, so a name from a Windows share is looked up
// in its directory when the exact one is not there.
#include <dirent.h>
#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "korvo/platform/env.h"
#include "korvo/platform/platform_internal.h"

namespace korvo {

const wchar_t* const kPathSeparator = L"/";

namespace {

bool PathExists(const std::string& native) {
  struct stat st;
  return ::stat(native.c_str(), &st) == 0;
}

bool IsRegularFile(const std::string& native) {
  struct stat st;
  return ::stat(native.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

// Calls `visit(name)` for each entry of `dir` but "." and "..".
template <typename Visit>
bool ForEachEntry(const std::string& dir, Visit visit) {
  DIR* d = ::opendir(dir.empty() ? "." : dir.c_str());
  if (d == nullptr) return false;
  while (const dirent* e = ::readdir(d)) {
    if (std::strcmp(e->d_name, ".") == 0 || std::strcmp(e->d_name, "..") == 0) continue;
    visit(e);
  }
  ::closedir(d);
  return true;
}

bool FillRandom(unsigned char* buffer, size_t size) {
  size_t got = 0;
  while (got < size) {
    const ssize_t n = ::getrandom(buffer + got, size - got, 0);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    got += static_cast<size_t>(n);
  }
  if (got == size) return true;
  // Kernels without getrandom still have the device.
  const int fd = ::open("/dev/urandom", O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  while (got < size) {
    const ssize_t n = ::read(fd, buffer + got, size - got);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    got += static_cast<size_t>(n);
  }
  ::close(fd);
  return got == size;
}

// The creation time where the file system records one, else the last write
// time; and the last write time. Seconds since 1970.
bool FileTimes(const std::string& native, int64_t* created, int64_t* written) {
  struct statx stx;
  if (::statx(AT_FDCWD, native.c_str(), 0, STATX_BTIME | STATX_MTIME, &stx) == 0) {
    *written = stx.stx_mtime.tv_sec;
    *created = (stx.stx_mask & STATX_BTIME) ? stx.stx_btime.tv_sec : *written;
    return true;
  }
  if (errno != ENOSYS) return false;
  struct stat st;
  if (::stat(native.c_str(), &st) != 0) return false;
  *created = *written = st.st_mtime;
  return true;
}

}  // namespace

size_t LastSeparator(std::wstring_view path) {
  return path.rfind(L'/');
}

std::wstring FindExistingPath(const std::wstring& path) {
  const std::string native = NativePath(path);
  if (native.empty() || PathExists(native)) return path;
  const size_t cut = LastSeparator(path);
  const std::wstring dir = cut == std::wstring::npos ? L"" : path.substr(0, cut + 1);
  const std::wstring name = cut == std::wstring::npos ? path : path.substr(cut + 1);
  // Of several names that differ only in case, the smallest wins, so that the
  // answer does not depend on the order of the directory.
  std::wstring best;
  ForEachEntry(NativePath(dir), [&](const dirent* e) {
    std::wstring candidate = FromNativePath(e->d_name);
    if (SameNameIgnoringCase(candidate, name) && (best.empty() || candidate < best)) {
      best = std::move(candidate);
    }
  });
  return best.empty() ? path : dir + best;
}

bool FileExists(const std::wstring& path) {
  return IsRegularFile(NativePath(FindExistingPath(path)));
}

bool DirectoryExists(const std::wstring& path) {
  struct stat st;
  return ::stat(NativePath(FindExistingPath(path)).c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool RemoveFile(const std::wstring& path) {
  const std::string native = NativePath(FindExistingPath(path));
  return IsRegularFile(native) && ::unlink(native.c_str()) == 0;
}

bool CanReadWrite(const std::wstring& path) {
  const std::string native = NativePath(FindExistingPath(path));
  return IsRegularFile(native) && ::access(native.c_str(), R_OK | W_OK) == 0;
}

Created CreateFileExclusive(const std::wstring& path, std::string_view content) {
  // A lock file made by a program that spelt the name in another case is
  // still the same lock.
  if (FindExistingPath(path) != path) return Created::kExists;
  const int fd = ::open(NativePath(path).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (fd < 0) return errno == EEXIST ? Created::kExists : Created::kFailed;
  // The file exists now, and that is what counts; a short write leaves a
  // shorter mark.
  if (!content.empty()) (void)!::write(fd, content.data(), content.size());
  ::close(fd);
  return Created::kCreated;
}

bool GetLocalFileTimes(const std::wstring& path, LocalTime* created, LocalTime* written) {
  int64_t birth = 0, mtime = 0;
  if (!FileTimes(NativePath(FindExistingPath(path)), &birth, &mtime)) return false;
  if (created) *created = LocalTimeFromUnix(birth);
  if (written) *written = LocalTimeFromUnix(mtime);
  return true;
}

std::vector<std::wstring> ListFiles(const std::wstring& dir) {
  std::vector<std::wstring> names;
  std::string base = NativePath(dir);
  if (!base.empty() && base.back() != '/') base += '/';
  ForEachEntry(base, [&](const dirent* e) {
    const bool regular = e->d_type == DT_REG || ((e->d_type == DT_UNKNOWN || e->d_type == DT_LNK) &&
                                                 IsRegularFile(base + e->d_name));
    if (regular) names.push_back(FromNativePath(e->d_name));
  });
  return names;
}

std::wstring TempDirectory() {
  const char* env = std::getenv("TMPDIR");
  std::wstring dir = FromNativePath(env != nullptr && *env != '\0' ? env : "/tmp");
  if (dir.back() != L'/') dir += L'/';
  return dir;
}

bool MakeDirectories(const std::wstring& dir) {
  std::error_code ec;
  const std::filesystem::path p(NativePath(dir));
  std::filesystem::create_directories(p, ec);
  return std::filesystem::is_directory(p, ec);
}

void SleepMs(int ms) {
  if (ms <= 0) return;
  timespec ts{ms / 1000, static_cast<long>(ms % 1000) * 1000000L};
  while (::nanosleep(&ts, &ts) != 0 && errno == EINTR) {
  }
}

int64_t ClockMs() {
  timespec ts;
  ::clock_gettime(CLOCK_MONOTONIC, &ts);
  return static_cast<int64_t>(ts.tv_sec) * 1000 + ts.tv_nsec / 1000000;
}

std::wstring NewUuid() {
  unsigned char bytes[16];
  if (!FillRandom(bytes, sizeof bytes)) {
    // Without the kernel's source, the library's own random device still
    // gives unique names.
    std::random_device device;
    for (unsigned char& b : bytes) b = static_cast<unsigned char>(device());
  }
  bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0F) | 0x40);  // version 4
  bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3F) | 0x80);  // RFC 4122 variant
  return FormatUuid(bytes);
}

namespace {
// strerror_r comes in two shapes; these pick the text out of either.
[[maybe_unused]] const char* ErrorResult(int result, const char* buffer) {
  return result == 0 ? buffer : "Unknown error";
}
[[maybe_unused]] const char* ErrorResult(const char* result, const char*) {
  return result;
}
}  // namespace

std::wstring ErrorText(int error) {
  char buffer[256] = {};
  return FromNativePath(ErrorResult(::strerror_r(error, buffer, sizeof buffer), buffer));
}

}  // namespace korvo
