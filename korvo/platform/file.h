// The file classes of the desktop framework, as far as the library uses them:
// a binary file, a text file on top of it, and a growing memory file.
//
// Paths are wide text. On this side of the platform layer a path is handed to
// the operating system as UTF-8 (POSIX) or UTF-16 (Windows). Opening for
// reading finds an existing file whatever the case of its last component, since
// projects come from Windows shares.
#ifndef KORVO_PLATFORM_FILE_H_
#define KORVO_PLATFORM_FILE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "korvo/export.h"

class KORVO_EXPORT CFile {
 public:
  // The framework's flag values.
  enum OpenFlags : unsigned {
    modeRead = 0x0000,
    modeWrite = 0x0001,
    modeReadWrite = 0x0002,
    shareExclusive = 0x0010,
    shareDenyWrite = 0x0020,
    shareDenyRead = 0x0030,
    shareDenyNone = 0x0040,
    modeNoInherit = 0x0080,
    modeCreate = 0x1000,
    modeNoTruncate = 0x2000,
    typeText = 0x4000,
    typeBinary = 0x8000,
  };
  enum SeekPosition { begin = 0, current = 1, end = 2 };

  CFile();
  virtual ~CFile();
  CFile(const CFile&) = delete;
  CFile& operator=(const CFile&) = delete;

  // Opens `path`; modeCreate without modeNoTruncate creates or truncates.
  // An existing file is found whatever the case of its last component, and
  // GetFilePath then gives its real name. A directory does not open.
  // Returns non-zero on success. `exception` is accepted for the framework's
  // signature and never used.
  virtual int Open(const wchar_t* path, unsigned flags, void* exception = nullptr);
  virtual void Close();
  // Reads up to `count` bytes; returns how many were read (0 at the end).
  virtual unsigned Read(void* buffer, unsigned count);
  // Writes all `count` bytes; returns false when the system refused.
  virtual bool Write(const void* buffer, unsigned count);
  // Returns the new position, or -1 when the seek failed.
  virtual int64_t Seek(int64_t offset, int from);
  void SeekToBegin() { Seek(0, begin); }
  int64_t SeekToEnd() { return Seek(0, end); }
  virtual uint64_t GetLength() const;
  virtual uint64_t GetPosition() const;
  // Nothing is held back in a CFile: each Write has reached the system, where
  // other processes see it. True while the file is open.
  virtual bool Flush();

  bool IsOpen() const { return handle_ != kNoHandle; }
  const std::wstring& GetFilePath() const { return path_; }
  void SetFilePath(const wchar_t* path) { path_ = path ? path : L""; }
  // The error number of the last failed operation (errno on POSIX, GetLastError
  // on Windows); ErrorText gives its text.
  int LastError() const { return last_error_; }

 protected:
  static constexpr intptr_t kNoHandle = -1;
  intptr_t handle_ = kNoHandle;
  std::wstring path_;
  int last_error_ = 0;
};

// A text file of Windows-1252 lines. Reading loads the rest of the file at the
// first read and hands out lines without their CR LF or LF (a last line without
// a line end is a line too; a DOS end-of-file mark as the last byte is dropped);
// writing encodes and buffers lines, turning each "\n" into CR LF, and writes
// them in large chunks and at Close or Flush.
class KORVO_EXPORT CStdioFile : public CFile {
 public:
  CStdioFile();
  ~CStdioFile() override;

  int Open(const wchar_t* path, unsigned flags, void* exception = nullptr) override;
  void Close() override;
  // Writes the buffered lines; false when a write failed since Open.
  bool Flush() override;
  // Binary reads continue from the loaded text; binary writes follow the
  // buffered lines. A seek writes the buffered lines and drops the loaded
  // text, so that the next read starts at the new position. Positions count
  // the lines read and the lines written so far.
  unsigned Read(void* buffer, unsigned count) override;
  bool Write(const void* buffer, unsigned count) override;
  int64_t Seek(int64_t offset, int from) override;
  uint64_t GetPosition() const override;

  // Reads the next line, without its line end, into `line` (reusing its
  // storage). Returns non-zero while a line was read, 0 at the end.
  int ReadString(std::wstring& line);
  // Writes `text`; each "\n" in it becomes CR LF.
  void WriteString(const wchar_t* text);
  void WriteString(const std::wstring& text) { WriteString(text.c_str()); }
  // True when every write since Open reached the file.
  bool WriteOk() const { return write_ok_; }

 private:
  bool LoadWhole();
  bool FlushLines();
  std::string in_;
  size_t in_pos_ = 0;
  bool loaded_ = false;
  std::string out_;
  bool write_ok_ = true;
};

// A growing buffer of bytes with a position, readable and writable like a file.
class KORVO_EXPORT CMemFile {
 public:
  explicit CMemFile(unsigned grow_bytes = 1024);
  ~CMemFile();
  CMemFile(const CMemFile&) = delete;
  CMemFile& operator=(const CMemFile&) = delete;

  uint64_t GetLength() const { return size_; }
  uint64_t GetPosition() const { return pos_; }
  // Returns the new position, or -1 for a position before the start.
  int64_t Seek(int64_t offset, int from);
  void SeekToBegin() { pos_ = 0; }
  unsigned Read(void* buffer, unsigned count);
  void Write(const void* buffer, unsigned count);
  // Cuts or extends (with zeros) the contents to `length` bytes; the
  // position stays within them.
  void SetLength(uint64_t length);
  // The bytes, for callers that want them without a copy.
  const unsigned char* Data() const { return data_.data(); }

 private:
  void Reserve(uint64_t length);
  std::vector<unsigned char> data_;
  uint64_t size_ = 0;
  uint64_t pos_ = 0;
  unsigned grow_;
};

#endif  // KORVO_PLATFORM_FILE_H_
