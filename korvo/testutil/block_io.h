// Reads and writes single method blocks of a point file through the stream
// the document uses.
#ifndef KORVO_TESTUTIL_BLOCK_IO_H_
#define KORVO_TESTUTIL_BLOCK_IO_H_

#include <gtest/gtest.h>

#include <string>

#include "korvo/foundation/stdio_file_mem.h"
#include "korvo/testutil/temp_dir.h"

namespace korvo::test {

// A row as the writer writes it: the left part, blanks up to the remark
// column, the remark.
inline std::string Padded(const std::string& left, const std::string& remark, size_t column) {
  std::string line = left;
  if (line.size() < column) line.append(column - line.size(), ' ');
  return line + remark + "\r\n";
}

// The part of a written block behind its method line.
inline std::string RowsOf(const std::string& written) {
  return written.substr(written.find("\r\n", written.find(" GUID ")) + 2);
}

class BlockIo {
 public:
  // Reads a block from `bytes`, which start with its code line.
  template <class Block>
  int Read(const std::string& bytes, Block& block, const wchar_t* date = L"09.03.2014") const {
    dir_.Write("in.txt", bytes);
    CStdioFileMem in;
    EXPECT_TRUE(in.Open(dir_.File("in.txt").c_str(), 0));
    std::wstring code_line;
    in.ReadString(code_line);
    const int result = block.Init(&in, date);
    in.Close();
    return result;
  }
  // The bytes a block writes.
  template <class Block>
  std::string Write(Block& block) const {
    CStdioFileMem out;
    EXPECT_TRUE(out.Open(dir_.File("out.txt").c_str(), 0x1001));
    EXPECT_EQ(block.Uppdat(&out), 0);
    out.Close();
    return dir_.Read("out.txt");
  }
  // Reads a whole block, marker first, with the date of its code line, and
  // writes it back.
  template <class Block>
  std::string RoundTrip(const std::string& block_bytes, Block& block) const {
    const std::string code_line = block_bytes.substr(3, block_bytes.find("\r\n", 3) - 3);
    const std::string date = code_line.size() > 3 ? code_line.substr(3) : "";
    EXPECT_EQ(Read(block_bytes.substr(3), block, std::wstring(date.begin(), date.end()).c_str()),
              0);
    return Write(block);
  }
  const TempDir& dir() const { return dir_; }

 private:
  TempDir dir_;
};

}  // namespace korvo::test

#endif  // KORVO_TESTUTIL_BLOCK_IO_H_
