#include "korvo/platform/file.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "korvo/platform/codepage.h"
#include "korvo/testutil/temp_dir.h"

namespace {

using korvo::test::TempDir;
using Lines = std::vector<std::wstring>;

Lines ReadLines(const std::wstring& path) {
  CStdioFile f;
  EXPECT_NE(f.Open(path.c_str(), CFile::modeRead), 0);
  Lines lines;
  std::wstring line;
  while (f.ReadString(line)) lines.push_back(line);
  EXPECT_EQ(f.ReadString(line), 0);  // the end stays the end
  return lines;
}

TEST(CStdioFileRead, LineEndsLastLinesEndMarkAndWindows1252) {
  const struct {
    std::string bytes;
    Lines lines;
  } cases[] = {
      {"one\r\ntwo\nthree\r\n\r\n\nsix\r\n", {L"one", L"two", L"three", L"", L"", L"six"}},
      {"one\r\nlast", {L"one", L"last"}},
      {"only", {L"only"}},
      {"\n", {L""}},
      {"", {}},
      {"a\rb\r\r\nc\r\n\x1A", {L"a\rb\r", L"c"}},  // a lone CR stays, the DOS end mark goes
      {"Sj\xF6 \xC5s \x80\r\n", {L"Sj\x00F6 \x00C5s \x20AC"}},
  };
  TempDir dir;
  for (const auto& c : cases) {
    dir.Write("a", c.bytes);
    EXPECT_EQ(ReadLines(dir.File("a")), c.lines) << c.bytes;
  }
}

TEST(CStdioFileRead, RandomBytesComeBackLineByLine) {
  TempDir dir;
  std::mt19937 rng(7);
  std::string bytes(100000, '\0');
  for (char& c : bytes) c = static_cast<char>(rng() % 256);
  bytes.back() = 'z';  // keep a DOS end mark from being the last byte
  dir.Write("r", bytes);
  std::string rebuilt;
  for (const std::wstring& line : ReadLines(dir.File("r"))) rebuilt += korvo::ToCp1252(line) + "\n";
  // Each line end came out as one "\n"; take the CR of the CR LF ends out of the original.
  std::string expected;
  for (size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') continue;
    expected += bytes[i];
  }
  EXPECT_EQ(rebuilt, expected + "\n");
}

TEST(CStdioFileRead, ReusesTheCallersString) {
  TempDir dir;
  dir.Write("a", "a somewhat longer first line\nb\nc\n");
  CStdioFile f;
  ASSERT_TRUE(f.Open(dir.File("a").c_str(), CFile::modeRead));
  std::wstring line;
  ASSERT_TRUE(f.ReadString(line));
  const wchar_t* storage = line.data();
  ASSERT_TRUE(f.ReadString(line));
  EXPECT_EQ(line, L"b");
  EXPECT_EQ(line.data(), storage);
}

TEST(CStdioFileRead, PositionsFollowTheLinesRead) {
  TempDir dir;
  dir.Write("a", "x\r\nyz\nw\n");
  CStdioFile f;
  ASSERT_TRUE(f.Open(dir.File("a").c_str(), CFile::modeRead));
  std::wstring line;
  ASSERT_TRUE(f.ReadString(line));
  EXPECT_EQ(f.GetPosition(), 3u);
  ASSERT_TRUE(f.ReadString(line));
  EXPECT_EQ(f.Seek(-3, CFile::current), 3);
  ASSERT_TRUE(f.ReadString(line));
  EXPECT_EQ(line, L"yz");
  f.SeekToBegin();
  ASSERT_TRUE(f.ReadString(line));
  EXPECT_EQ(line, L"x");
  char rest[8] = {};
  EXPECT_EQ(f.Read(rest, sizeof rest), 5u);
  EXPECT_EQ(std::string(rest), "yz\nw\n");
}

TEST(CStdioFileWrite, WritesCrLfInWindows1252) {
  TempDir dir;
  {
    CStdioFile f;
    ASSERT_TRUE(f.Open(dir.File("w.snd").c_str(), CFile::modeCreate | CFile::modeWrite));
    f.WriteString(L"-1 \x00E5\x00E4\x00F6 \x20AC\n");
    EXPECT_EQ(f.GetPosition(), 10u);
    f.WriteString(L"two\nthree");
    f.WriteString(std::wstring(L"\n\x4E2D\n"));
    EXPECT_TRUE(f.WriteOk());
    EXPECT_EQ(dir.Read("w.snd"), "");  // held until Close
    f.Close();
  }
  EXPECT_EQ(dir.Read("w.snd"), "-1 \xE5\xE4\xF6 \x80\r\ntwo\r\nthree\r\n?\r\n");
}

TEST(CStdioFileWrite, LargeOutputGoesInChunksAndWhole) {
  TempDir dir;
  std::string expected;
  {
    CStdioFile f;
    ASSERT_TRUE(f.Open(dir.File("big").c_str(), 0x1001));
    for (int i = 0; i < 20000; ++i) {
      const std::string line = "row " + std::to_string(i);
      f.WriteString(std::wstring(line.begin(), line.end()) + L"\n");
      expected += line + "\r\n";
    }
    EXPECT_GT(dir.Read("big").size(), 0u);
  }  // the destructor writes the rest
  EXPECT_EQ(dir.Read("big"), expected);
}

TEST(CStdioFileWrite, CreateTruncatesUnlessAskedNotTo) {
  TempDir dir;
  dir.Write("a", "old contents");
  CStdioFile f;
  ASSERT_TRUE(f.Open(dir.File("a").c_str(), CFile::modeCreate | CFile::modeWrite));
  f.WriteString(L"new\n");
  ASSERT_TRUE(f.Flush());
  f.Close();
  EXPECT_EQ(dir.Read("a"), "new\r\n");
  ASSERT_TRUE(f.Open(dir.File("a").c_str(),
                     CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite));
  f.SeekToEnd();
  f.WriteString(L"more\n");
  f.Close();
  EXPECT_EQ(dir.Read("a"), "new\r\nmore\r\n");
}

TEST(CStdioFileWrite, WriteOkTurnsFalseWhenTheFileRefuses) {
  TempDir dir;
  dir.Write("r", "");
  CStdioFile f;
  ASSERT_TRUE(f.Open(dir.File("r").c_str(), CFile::modeRead));
  f.WriteString(L"x\n");
  EXPECT_FALSE(f.Flush());
  EXPECT_FALSE(f.WriteOk());
  EXPECT_NE(f.LastError(), 0);
}

TEST(CFile, OpensAnExistingFileWhateverTheCase) {
  TempDir dir;
  dir.Write("abc.snd", "12345");
  CFile f;
  ASSERT_TRUE(f.Open(dir.File("ABC.SND").c_str(), CFile::modeRead | CFile::shareDenyNone));
  EXPECT_EQ(f.GetFilePath(), dir.File("abc.snd"));
  EXPECT_EQ(f.GetLength(), 5u);
  char buffer[8] = {};
  EXPECT_EQ(f.Read(buffer, 8), 5u);
  EXPECT_EQ(std::string(buffer), "12345");
  EXPECT_EQ(f.Read(buffer, 8), 0u);
  // Creating with the other case rewrites the same file.
  ASSERT_TRUE(f.Open(dir.File("ABC.SND").c_str(), CFile::modeCreate | CFile::modeWrite));
  ASSERT_TRUE(f.Write("xy", 2));
  f.Close();
  EXPECT_EQ(dir.Read("abc.snd"), "xy");
  EXPECT_FALSE(dir.Exists("ABC.SND"));
  // A new file keeps the name as formed.
  ASSERT_TRUE(f.Open(dir.File("New.TLK").c_str(), CFile::modeCreate | CFile::modeWrite));
  f.Close();
  EXPECT_TRUE(dir.Exists("New.TLK"));
}

TEST(CFile, FailuresLeaveAnErrorNumber) {
  TempDir dir;
  CFile f;
  EXPECT_EQ(f.Open(dir.File("none").c_str(), CFile::modeRead), 0);
  EXPECT_FALSE(f.IsOpen());
  EXPECT_EQ(f.LastError(), 2);  // ENOENT and ERROR_FILE_NOT_FOUND alike
  EXPECT_EQ(f.Open(dir.wpath().c_str(), CFile::modeRead), 0);
  EXPECT_NE(f.LastError(), 0);
}

TEST(CFile, SeekAndPositions) {
  TempDir dir;
  CFile f;
  ASSERT_TRUE(f.Open(dir.File("b").c_str(), CFile::modeCreate | CFile::modeReadWrite));
  ASSERT_TRUE(f.Write("0123456789", 10));
  EXPECT_EQ(f.GetPosition(), 10u);
  EXPECT_EQ(f.Seek(-3, CFile::end), 7);
  char c = 0;
  EXPECT_EQ(f.Read(&c, 1), 1u);
  EXPECT_EQ(c, '7');
  EXPECT_EQ(f.Seek(-2, CFile::current), 6);
  EXPECT_EQ(f.Seek(-1, CFile::begin), -1);
  EXPECT_NE(f.LastError(), 0);
  f.SeekToBegin();
  EXPECT_EQ(f.GetPosition(), 0u);
  EXPECT_TRUE(f.Flush());
}

TEST(CMemFile, WritesGrowAndReadsComeBack) {
  CMemFile m;
  std::string expected;
  for (int i = 0; i < 3000; ++i) {
    const std::string piece = std::to_string(i) + ",";
    m.Write(piece.data(), static_cast<unsigned>(piece.size()));
    expected += piece;
  }
  EXPECT_EQ(m.GetLength(), expected.size());
  EXPECT_EQ(m.GetPosition(), expected.size());
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(m.Data()), expected.size()), expected);
  m.SeekToBegin();
  std::string back(expected.size() + 10, '\0');
  EXPECT_EQ(m.Read(back.data(), static_cast<unsigned>(back.size())), expected.size());
  back.resize(expected.size());
  EXPECT_EQ(back, expected);
  EXPECT_EQ(m.Read(back.data(), 1), 0u);
}

TEST(CMemFile, SeekPastTheEndLeavesZeros) {
  CMemFile m;
  m.Write("ab", 2);
  EXPECT_EQ(m.Seek(4, CFile::begin), 4);
  m.Write("c", 1);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(m.Data()), 5), std::string("ab\0\0c", 5));
  EXPECT_EQ(m.Seek(-1, CFile::end), 4);
  EXPECT_EQ(m.Seek(-5, CFile::current), -1);
  EXPECT_EQ(m.GetPosition(), 4u);
}

TEST(CMemFile, SetLengthCutsAndExtendsWithZeros) {
  CMemFile m;
  m.Write("abcdef", 6);
  m.SetLength(2);
  EXPECT_EQ(m.GetLength(), 2u);
  EXPECT_EQ(m.GetPosition(), 2u);
  m.SetLength(4);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(m.Data()), 4), std::string("ab\0\0", 4));
  m.SetLength(0);
  EXPECT_EQ(m.GetLength(), 0u);
  m.Write("z", 1);
  EXPECT_EQ(m.GetLength(), 1u);
  EXPECT_EQ(m.Data()[0], 'z');
}

}  // namespace
