#include "korvo/foundation/stdio_file_mem.h"

#include <gtest/gtest.h>

#include <string>

#include "korvo/testutil/temp_dir.h"

namespace {

std::string ReadAll(CMemFile* mem) {
  std::string bytes(mem->GetLength(), '\0');
  mem->SeekToBegin();
  mem->Read(bytes.data(), static_cast<unsigned>(bytes.size()));
  return bytes;
}

TEST(StdioFileMemTest, MemoryModeHoldsUtf16UnitsAndOneTrailerPerClose) {
  korvo::test::TempDir dir;
  CStdioFileMem s;
  EXPECT_EQ(s.MemFile(), nullptr);  // disk mode until asked
  s.SetMemFile(1);
  const std::wstring path = dir.File("never/made.SND");
  EXPECT_EQ(s.Open(path.c_str(), 0x1001), 1);
  s.WriteString(L"a\n");
  s.WriteString(L"b\n");
  s.Close();
  CMemFile* mem = s.MemFile();
  EXPECT_EQ(mem->GetPosition(), 0u);
  const std::string expected("a\0\n\0b\0\n\0E\0O\0F\0\r\0\n\0", 18);
  EXPECT_EQ(ReadAll(mem), expected);
  EXPECT_FALSE(dir.Exists("never"));

  // Nordic letters keep their 16-bit value; a second close adds a second trailer.
  s.WriteString(L"\u00e5\u20ac");
  s.Close();
  const std::string bytes = ReadAll(mem);
  EXPECT_EQ(bytes.size(), 18u + 4u + 10u);
  EXPECT_EQ(bytes.substr(18, 4), std::string("\xe5\x00\xac\x20", 4));
}

TEST(StdioFileMemTest, MemoryModeReadsNothingAndSurvivesLeavingTheMode) {
  CStdioFileMem s;
  s.SetMemFile(1);
  s.WriteString(L"line\n");
  std::wstring line = L"untouched";
  EXPECT_EQ(s.ReadString(line), 0);
  s.SetMemFile(0);
  EXPECT_EQ(s.MemFile(), nullptr);
  s.SetMemFile(1);
  EXPECT_EQ(s.MemFile()->GetLength(), 10u);
}

TEST(StdioFileMemTest, DiskModeWritesCrLfAndReadsBothLineEnds) {
  korvo::test::TempDir dir;
  const std::wstring path = dir.File("X.SND");
  CStdioFileMem out;
  ASSERT_NE(out.Open(path.c_str(), 0x1001), 0);
  EXPECT_NE(out.strom, nullptr);
  out.WriteString(L"1.000000\n\u00c5s\n");
  out.Close();
  EXPECT_EQ(out.strom, nullptr);
  EXPECT_EQ(dir.Read("X.SND"), "1.000000\r\n\xc5s\r\n");

  dir.Write("Y.SND", "a\r\nb\nc");
  CStdioFileMem in;
  const std::wstring ypath = dir.File("Y.SND");
  ASSERT_NE(in.Open(ypath.c_str(), 0), 0);
  std::wstring line;
  std::wstring seen;
  while (in.ReadString(line)) seen += line + L"|";
  EXPECT_EQ(seen, L"a|b|c|");
  in.SeekToBegin();
  ASSERT_NE(in.ReadString(line), 0);
  EXPECT_EQ(line, L"a");

  CStdioFileMem missing;
  EXPECT_EQ(missing.Open(dir.File("missing.SND").c_str(), 0), 0);
  EXPECT_EQ(missing.strom, nullptr);
}

}  // namespace
