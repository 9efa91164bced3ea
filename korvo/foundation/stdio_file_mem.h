// The stream through which every field file is read and written: a text file
// of lines that can be switched into a memory mode, in which everything
// written goes into a growing buffer and no disk file is touched.
//
// Memory form: the characters of the written lines as 16-bit little-endian
// units, untranslated (a line ends in a lone "\n"), no terminating zero.
// Each Close in memory mode appends the trailer "EOF\r\n" and seeks the buffer
// back to its start.
#ifndef KORVO_FOUNDATION_STDIO_FILE_MEM_H_
#define KORVO_FOUNDATION_STDIO_FILE_MEM_H_

#include <string>

#include "korvo/export.h"
#include "korvo/platform/file.h"

class KORVO_EXPORT CStdioFileMem {
 public:
  CStdioFileMem();
  ~CStdioFileMem();
  CStdioFileMem(const CStdioFileMem&) = delete;
  CStdioFileMem& operator=(const CStdioFileMem&) = delete;

  // Disk mode: opens the file (0 to read, 0x1001 to create or truncate for
  // writing); non-zero on success. Memory mode: no effect, result 1.
  int Open(const wchar_t* path, unsigned flags, void* exception = nullptr);
  // Disk mode: closes the file. Memory mode: appends the trailer and seeks the
  // buffer to its start.
  void Close();
  // The next line without its line end; non-zero while a line was read.
  // Always 0 in memory mode, which is write-only to the readers.
  int ReadString(std::wstring& line);
  void WriteString(const wchar_t* line);
  void WriteString(const std::wstring& line) { WriteString(line.c_str()); }
  void SeekToBegin();
  std::wstring GetFilePath() const { return fil.GetFilePath(); }
  void SetFilePath(const wchar_t* path) { fil.SetFilePath(path); }
  void SetFilePath(const std::wstring& path) { fil.SetFilePath(path.c_str()); }
  // The buffer of the memory side in memory mode, null in disk mode.
  CMemFile* MemFile() { return minne ? &minnesfil : nullptr; }
  void SetMemFile(int flag) { minne = flag; }
  // The error number of the last failed Open.
  int LastError() const { return fil.LastError(); }

  // Non-null while the disk file is open.
  void* strom;
  CStdioFile fil;
  int minne;
  CMemFile minnesfil;
};

#endif  // KORVO_FOUNDATION_STDIO_FILE_MEM_H_
