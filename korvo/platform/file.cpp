// The text file and the memory file, which are the same on every system.
#include "korvo/platform/file.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "korvo/platform/codepage.h"

namespace {

// Written lines are kept until this many bytes wait, then go in one write.
constexpr size_t kWriteChunk = 64 * 1024;
constexpr unsigned kMaxIo = 1u << 30;
// The end-of-file mark of old DOS editors, dropped when it is the last byte.
constexpr char kDosEof = '\x1A';

}  // namespace

// --- CStdioFile -------------------------------------------------------------

CStdioFile::CStdioFile() = default;

CStdioFile::~CStdioFile() {
  CStdioFile::Close();
}

int CStdioFile::Open(const wchar_t* path, unsigned flags, void* exception) {
  Close();
  in_.clear();
  in_pos_ = 0;
  loaded_ = false;
  out_.clear();
  write_ok_ = true;
  return CFile::Open(path, flags, exception);
}

void CStdioFile::Close() {
  if (!IsOpen()) return;
  FlushLines();
  CFile::Close();
}

bool CStdioFile::Flush() {
  return FlushLines() && CFile::Flush();
}

bool CStdioFile::FlushLines() {
  if (out_.empty()) return write_ok_;
  for (size_t done = 0; done < out_.size();) {
    const auto n = static_cast<unsigned>(std::min<size_t>(out_.size() - done, kMaxIo));
    if (!CFile::Write(out_.data() + done, n)) {
      write_ok_ = false;
      break;
    }
    done += n;
  }
  out_.clear();
  return write_ok_;
}

bool CStdioFile::LoadWhole() {
  loaded_ = true;
  in_.clear();
  in_pos_ = 0;
  if (!IsOpen()) return false;
  const uint64_t length = GetLength();
  const uint64_t pos = GetPosition();
  in_.resize(length > pos ? static_cast<size_t>(length - pos) : 0);
  size_t got = 0;
  while (got < in_.size()) {
    const auto want = static_cast<unsigned>(std::min<size_t>(in_.size() - got, kMaxIo));
    const unsigned n = CFile::Read(in_.data() + got, want);
    if (n == 0) break;
    got += n;
  }
  in_.resize(got);
  return true;
}

int CStdioFile::ReadString(std::wstring& line) {
  if (!loaded_) LoadWhole();
  const size_t end = !in_.empty() && in_.back() == kDosEof ? in_.size() - 1 : in_.size();
  if (in_pos_ >= end) return 0;
  const char* start = in_.data() + in_pos_;
  const size_t left = end - in_pos_;
  const auto* newline = static_cast<const char*>(std::memchr(start, '\n', left));
  size_t length = newline ? static_cast<size_t>(newline - start) : left;
  in_pos_ += newline ? length + 1 : length;
  if (newline && length > 0 && start[length - 1] == '\r') --length;
  line.clear();
  korvo::AppendFromCp1252(line, std::string_view(start, length));
  return 1;
}

void CStdioFile::WriteString(const wchar_t* text) {
  if (text == nullptr) return;
  korvo::AppendLinesToCp1252(out_, text);
  if (out_.size() >= kWriteChunk) FlushLines();
}

unsigned CStdioFile::Read(void* buffer, unsigned count) {
  if (!loaded_) return CFile::Read(buffer, count);
  const auto n = static_cast<unsigned>(std::min<size_t>(count, in_.size() - in_pos_));
  if (n > 0) std::memcpy(buffer, in_.data() + in_pos_, n);
  in_pos_ += n;
  return n;
}

bool CStdioFile::Write(const void* buffer, unsigned count) {
  return FlushLines() && CFile::Write(buffer, count);
}

uint64_t CStdioFile::GetPosition() const {
  const uint64_t system = CFile::GetPosition();
  if (loaded_) return system - (in_.size() - in_pos_);
  return system + out_.size();
}

int64_t CStdioFile::Seek(int64_t offset, int from) {
  FlushLines();
  // The system stands at the end of the loaded text, not at the reader.
  if (loaded_ && from == current) offset -= static_cast<int64_t>(in_.size() - in_pos_);
  // The next read loads the file again from the new position.
  loaded_ = false;
  in_.clear();
  in_pos_ = 0;
  return CFile::Seek(offset, from);
}

// --- CMemFile ---------------------------------------------------------------

CMemFile::CMemFile(unsigned grow_bytes) : grow_(grow_bytes == 0 ? 1024 : grow_bytes) {}

CMemFile::~CMemFile() = default;

int64_t CMemFile::Seek(int64_t offset, int from) {
  int64_t base = 0;
  if (from == CFile::current) base = static_cast<int64_t>(pos_);
  if (from == CFile::end) base = static_cast<int64_t>(size_);
  const int64_t target = base + offset;
  if (target < 0) return -1;
  pos_ = static_cast<uint64_t>(target);
  return target;
}

unsigned CMemFile::Read(void* buffer, unsigned count) {
  if (pos_ >= size_) return 0;
  const auto n = static_cast<unsigned>(std::min<uint64_t>(count, size_ - pos_));
  std::memcpy(buffer, data_.data() + pos_, n);
  pos_ += n;
  return n;
}

void CMemFile::Reserve(uint64_t length) {
  if (length <= data_.size()) return;
  // Whole grow steps, and at least doubling, so that many small writes cost
  // linear time.
  const uint64_t steps = (length + grow_ - 1) / grow_ * grow_;
  data_.resize(static_cast<size_t>(std::max<uint64_t>(steps, data_.size() * 2)));
}

void CMemFile::Write(const void* buffer, unsigned count) {
  if (count == 0) return;
  Reserve(pos_ + count);
  // A write past the end leaves zeros in the gap, as a file would.
  if (pos_ > size_) std::memset(data_.data() + size_, 0, static_cast<size_t>(pos_ - size_));
  std::memcpy(data_.data() + pos_, buffer, count);
  pos_ += count;
  size_ = std::max(size_, pos_);
}

void CMemFile::SetLength(uint64_t length) {
  Reserve(length);
  if (length > size_) std::memset(data_.data() + size_, 0, static_cast<size_t>(length - size_));
  size_ = length;
  pos_ = std::min(pos_, size_);
}
