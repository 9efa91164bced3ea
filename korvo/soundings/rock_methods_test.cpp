#include "korvo/soundings/rock_methods.h"

#include <gtest/gtest.h>

#include <string>

#include "korvo/context/proj_path.h"
#include "korvo/soundings/basic_methods.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/testutil/temp_dir.h"

namespace {

constexpr const char* kGuid = "3c9e1b27-5a4d-4f08-9e6b-71d2c0a8f453";

std::string MethodLine(const std::string& numbers) {
  return numbers + " GUID " + kGuid + "\r\n";
}

// A row as the writer writes it: the left part, blanks up to the remark
// column, the remark.
std::string Line(const std::string& left, const std::string& remark = "", size_t column = 29) {
  std::string line = left;
  if (line.size() < column) line.append(column - line.size(), ' ');
  return line + remark + "\r\n";
}

// The part of a written block behind its method line.
std::string Rows(const std::string& written) {
  return written.substr(written.find("\r\n", written.find(" GUID ")) + 2);
}

class RockMethodsTest : public testing::Test {
 protected:
  // Reads a block from `bytes`, which start with its code line.
  template <class Block>
  int Read(const std::string& bytes, Block& block) {
    dir_.Write("in.txt", bytes);
    CStdioFileMem in;
    EXPECT_TRUE(in.Open(dir_.File("in.txt").c_str(), 0));
    std::wstring code_line;
    in.ReadString(code_line);
    const int result = block.Init(&in, L"09.03.2014");
    in.Close();
    return result;
  }
  template <class Block>
  std::string Write(Block& block) {
    CStdioFileMem out;
    EXPECT_TRUE(out.Open(dir_.File("out.txt").c_str(), 0x1001));
    EXPECT_EQ(block.Uppdat(&out), 0);
    out.Close();
    return dir_.Read("out.txt");
  }
  // Reads a whole block, marker and code line of date 09.03.2014 first.
  template <class Block>
  std::string RoundTrip(const std::string& block_bytes, Block& block) {
    EXPECT_EQ(Read(block_bytes.substr(3), block), 0);
    return Write(block);
  }
  static int Count(list0<totaltype>& block) {
    int rows = 0;
    block.Where(&rows);
    return rows;
  }

  korvo::test::TempDir dir_;
};

TEST_F(RockMethodsTest, FjellCarriesItsFourthColumn) {
  const std::string bytes = "*\r\n26 09.03.2014\r\n" + MethodLine("1.000000 94 1 7 1 3 Berg") +
                            Line("  0.400   12  ", "Fyllning", 22) +
                            Line("  3.250  130  ", "B1 hammare", 22) +
                            Line("  3.900 1234  ", "", 22);
  CKorvoFjell block(1, 0, 0);
  EXPECT_EQ(RoundTrip(bytes, block), bytes);
  EXPECT_EQ(block.format, 7);
  EXPECT_EQ(block.stopp, 94);
  EXPECT_EQ(block.metodtal, 3);
  EXPECT_STREQ(block.stopptext, L"Berg");
  block.Home();
  EXPECT_FLOAT_EQ(block.pael->djup, 0.4f);
  EXPECT_EQ(block.pael->varv, 12);
  block++;
  EXPECT_STREQ(block.pael->anm, L"B1 hammare");
  EXPECT_STREQ(block.pael->symbol, L"B1");  // a rock code, valid for this method

  // A new one writes 0 there, and a line of three numbers reads as 0.
  CKorvoFjell fresh(1, 0, 0);
  EXPECT_EQ(fresh.format, 0);
  EXPECT_NE(Write(fresh).find("\r\n0.000000 0 0 0 1 0  GUID "), std::string::npos);
  CKorvoFjell short_line(1, 0, 0);
  short_line.format = 9;
  Read("26\r\n0 93 2\r\n", short_line);
  EXPECT_EQ(short_line.format, 0);
  EXPECT_EQ(short_line.digit, 2);
}

// Generations 0 and 1: two numbers and the word at column 20.
TEST_F(RockMethodsTest, TotalRowsWithTheWordComeBackByteIdentical) {
  for (const char* generation : {"0", "1"}) {
    const std::string bytes = "*\r\n25 09.03.2014\r\n" +
                              MethodLine(std::string("0.000000 93 0 ") + generation + " 1 0 Sten") +
                              Line("  0.500    12     3 SL", "le") +
                              Line("  1.250   140   -25 TR", "sa F") +
                              Line(" 10.000 12345 99999 TR");
    CKorvoTotal block(1, 0, 0);
    EXPECT_EQ(RoundTrip(bytes, block), bytes) << generation;
    EXPECT_EQ(block.format, generation[0] - '0');
    ASSERT_EQ(Count(block), 3);
    block.Home();
    EXPECT_STREQ(block.pael->typ, L"SL");
    EXPECT_EQ(block.pael->tal1, 12);
    EXPECT_EQ(block.pael->tal2, 3);
    EXPECT_EQ(block.pael->tal3, 0);
    EXPECT_STREQ(block.pael->symbol, L"\u00b3");
    block++;
    EXPECT_EQ(block.pael->tal2, -25);
    EXPECT_STREQ(block.pael->anm, L"sa F");
    EXPECT_STREQ(block.pael->symbol, L":");  // row order: SA stands before the rock code
  }
}

// Generations 2 to 5: three numbers, the remark at column 29 all the same.
TEST_F(RockMethodsTest, TotalRowsWithThreeNumbersComeBackByteIdentical) {
  for (const char* generation : {"2", "3", "4", "5"}) {
    const std::string bytes = "*\r\n25 09.03.2014\r\n" +
                              MethodLine(std::string("0.000000 94 1 ") + generation + " 1 2 ") +
                              Line("  0.500    12     3    40", "GR") +
                              Line("  2.000     0    -7     0") +
                              Line(" 12.125 99999 12345 123456", "Berg F");
    CKorvoTotal block(1, 0, 0);
    EXPECT_EQ(RoundTrip(bytes, block), bytes) << generation;
    EXPECT_EQ(block.format, generation[0] - '0');
    block.Home();
    EXPECT_EQ(block.pael->tal1, 12);
    EXPECT_EQ(block.pael->tal2, 3);
    EXPECT_EQ(block.pael->tal3, 40);
    EXPECT_STREQ(block.pael->typ, L"");
    EXPECT_STREQ(block.pael->symbol, L"o");
    block.End();
    // Six digits fit in front of the remark column.
    EXPECT_EQ(block.pael->tal3, 123456);
    EXPECT_STREQ(block.pael->anm, L"Berg F");
  }
}

TEST_F(RockMethodsTest, TotalLinesTheWriterNeverWrites) {
  // Three columns in the method line: generation 0, so the rows are read in
  // the old form, and an unknown word is the ordinary one.
  CKorvoTotal block(1, 0, 0);
  ASSERT_EQ(
      Read("25\r\n0 93 0\r\n" + Line("  1.000    12     3 XX", "abcdefghijklmnopqrstuvwxyz0") +
               Line("  2.000    15     4 S") + "  3.000    1     2    77\r\n\r\n",
           block),
      0);
  EXPECT_EQ(block.format, 0);
  ASSERT_EQ(Count(block), 4);
  block.Home();
  EXPECT_STREQ(block.pael->typ, L"TR");
  EXPECT_STREQ(block.pael->anm, L"abcdefghijklmnopqrstuvwxy");
  block++;
  EXPECT_STREQ(block.pael->typ, L"TR");  // a word cut short
  block++;
  EXPECT_EQ(block.pael->tal3, 0);  // no third number in this generation
  EXPECT_STREQ(block.pael->typ, L"TR");
  block++;
  EXPECT_EQ(block.pael->djup, 0.0f);
  EXPECT_STREQ(block.pael->typ, L"TR");  // an empty line is a row all the same

  const std::string written = Write(block);
  EXPECT_NE(written.find("\r\n0.000000 93 0 0 0 0  GUID "), std::string::npos);
  EXPECT_EQ(Rows(written), Line("  1.000    12     3 TR", "abcdefghijklmnopqrstuvwxy") +
                               Line("  2.000    15     4 TR") + Line("  3.000     1     2 TR") +
                               Line("  0.000     0     0 TR"));
}

TEST_F(RockMethodsTest, NewTotalIsOfTheLatestGeneration) {
  CKorvoTotal block(1, 0, 0);
  EXPECT_EQ(block.format, 5);
  totaltype row{L"SL", 1.5f, 7, 30, 2, L"TR", L""};
  block.Ny(1, &row);
  const std::string written = Write(block);
  const std::string head = "*\r\n25 \r\n0.000000 0 0 5 1 0  GUID ";
  EXPECT_EQ(written.substr(0, head.size()), head);
  // The word of a row is not written in this generation.
  EXPECT_EQ(Rows(written), Line("  1.500     7     2    30", "TR"));
}

TEST_F(RockMethodsTest, ConversionOfEachGeneration) {
  const struct {
    int from;
    int to;
    const char* rows;
    int tal1[2];
    int tal3[2];
    const char* first_written;
  } cases[] = {
      {0,
       4,
       "  1.000    12     3 SL\r\n  2.000    12     3 TR\r\n",
       {0, 12},
       {120, 0},
       "  1.000     0     3   120"},
      {1,
       5,
       "  1.000    12     3 SL\r\n  2.000    12     3 TR\r\n",
       {0, 12},
       {120, 0},
       "  1.000     0     3   120"},
      {2,
       4,
       "  1.000    12     3    15\r\n  2.000    -4     3    -2\r\n",
       {12, -4},
       {150, -20},
       "  1.000    12     3   150"},
      {3,
       5,
       "  1.000    12     3    15\r\n  2.000    -4     3    -2\r\n",
       {12, -4},
       {150, -20},
       "  1.000    12     3   150"},
      {4,
       4,
       "  1.000    12     3    15\r\n  2.000    -4     3    -2\r\n",
       {12, -4},
       {15, -2},
       "  1.000    12     3    15"},
      {5,
       5,
       "  1.000    12     3    15\r\n  2.000    -4     3    -2\r\n",
       {12, -4},
       {15, -2},
       "  1.000    12     3    15"},
  };
  for (const auto& c : cases) {
    CKorvoTotal block(1, 0, 0);
    Read("25\r\n0 93 0 " + std::to_string(c.from) + " 1\r\n" + c.rows, block);
    block.ConvertToFormat4();
    EXPECT_EQ(block.format, c.to) << c.from;
    block.Home();
    for (int i = 0; i < 2; ++i, block++) {
      EXPECT_EQ(block.pael->tal1, c.tal1[i]) << c.from << " row " << i;
      EXPECT_EQ(block.pael->tal3, c.tal3[i]) << c.from << " row " << i;
      EXPECT_EQ(block.pael->tal2, 3) << c.from << " row " << i;
      EXPECT_STREQ(block.pael->typ, L"") << c.from << " row " << i;
    }
    // Converted rows are written with three numbers.
    EXPECT_EQ(Rows(Write(block)).substr(0, 25), c.first_written) << c.from;
  }
}

TEST_F(RockMethodsTest, ConversionOfAnEmptyBlockStillMovesItsGeneration) {
  CKorvoTotal old_form(1, 0, 0);
  Read("25\r\n0 93 0 1 1\r\n*\r\n", old_form);
  old_form.ConvertToFormat4();
  EXPECT_EQ(old_form.format, 5);
  CKorvoTotal tenfold(1, 0, 0);
  tenfold.format = 2;
  tenfold.ConvertToFormat4();
  EXPECT_EQ(tenfold.format, 4);
  tenfold.format = -1;
  tenfold.ConvertToFormat4();
  EXPECT_EQ(tenfold.format, -1);
}

TEST_F(RockMethodsTest, BergKontrollOnlyForStopCodesThatAllowIt) {
  const std::string rows = Line("  1.000    10     3     0", "SA") +
                           Line("  4.250    80     9     0", "GR f") +
                           Line("  5.000    90     9     0", "F");
  for (int stopp : {93, 94}) {
    CKorvoTotal block(1, 0, 0);
    Read("25\r\n0 " + std::to_string(stopp) + " 0 5 1\r\n" + rows, block);
    float depth = -1.0f;
    ASSERT_EQ(block.BergKontroll(&depth), 0) << stopp;
    EXPECT_FLOAT_EQ(depth, 4.25f);
    EXPECT_EQ(block.Where(nullptr), 2);
  }
  for (int stopp : {0, 90, 92, 95}) {
    CKorvoTotal block(1, 0, 0);
    Read("25\r\n0 " + std::to_string(stopp) + " 0 5 1\r\n" + rows, block);
    float depth = -1.0f;
    EXPECT_EQ(block.BergKontroll(&depth), -1) << stopp;
    EXPECT_EQ(depth, -1.0f);
  }
  // The code in digits counts; other rock words, and no rows at all, don't.
  CKorvoFjell fjell(1, 0, 0);
  Read("26\r\n0 94 0 0 1\r\n" + Line("  2.000   10  ", "B1 B2", 22) +
           Line("  3.500   10  ", "43", 22),
       fjell);
  float depth = 0.0f;
  ASSERT_EQ(fjell.BergKontroll(&depth), 0);
  EXPECT_FLOAT_EQ(depth, 3.5f);
  CKorvoFjell no_mark(1, 0, 0);
  Read("26\r\n0 94 0 0 1\r\n" + Line("  2.000   10  ", "B1 FF", 22), no_mark);
  EXPECT_EQ(no_mark.BergKontroll(&depth), -1);
  CKorvoFjell empty(1, 0, 0);
  empty.stopp = 94;
  EXPECT_EQ(empty.BergKontroll(&depth), -1);
}

TEST_F(RockMethodsTest, MyKodLooksWithTheBlocksOwnMethod) {
  CKorvoTotal block(1, 0, 0);
  Read("25\r\n0 0 0 5 1\r\n" + Line("  1.000     1     1     1", "SA") +
           Line("  2.000     1     1     1", "MY 3"),
       block);
  ASSERT_EQ(block.MyKod(), 0);
  EXPECT_FLOAT_EQ(block.pael->djup, 2.0f);
  CKorvoFjell fjell(1, 0, 0);
  EXPECT_EQ(fjell.MyKod(), -1);
}

// The two blocks inside a point's .SND file, in their place in the file order.
TEST_F(RockMethodsTest, DocumentMakesReadsAndWritesBothInFileOrder) {
  std::filesystem::create_directory(dir_.path() / "Dbf");
  CProjPath proj;
  proj.SetPath(dir_.wpath().c_str());
  const std::string head =
      "0.000000\r\n0.000000\r\n5.000000\r\n9999999.900000\r\n0.000000\r\n"
      "0.000000 0 90.000000\r\n*\r\n97\r\n40 0\r\n*\r\n99\r\n"
      "GUID 0f8fad5b-d9cb-469f-a165-70867728950e\r\n";
  const std::string fjell = "*\r\n26 01.02.2020\r\n" + MethodLine("0.000000 94 0 7 1 0 ") +
                            Line("  3.000   10  ", "F", 22);
  const std::string total = "*\r\n25 02.02.2020\r\n" + MethodLine("0.000000 93 0 1 1 0 ") +
                            Line("  1.000    12     3 SL");
  const std::string ram =
      "*\r\n24 03.02.2020\r\n" + MethodLine("0.000000 0 0 0 1 0 ") + Line("  0.200 12 3", "", 22);
  dir_.Write("Dbf/R1.SND", head + fjell + total + ram + "*\r\n");
  CKorvoSnd snd(&proj, nullptr);
  ASSERT_EQ(snd.Init(L"R1", nullptr), 0);
  ASSERT_TRUE(snd.m_fjell && snd.m_total && snd.m_ram);
  EXPECT_EQ(snd.m_fjell->format, 7);
  EXPECT_EQ(snd.m_total->format, 1);
  snd.Uppdat(nullptr, nullptr);
  EXPECT_EQ(dir_.Read("Dbf/R1.SND"), head + ram + total + fjell + "*\r\n");

  // New replaces a block with an empty one of the latest generation.
  EXPECT_EQ(snd.New(25), 1);
  EXPECT_EQ(snd.New(26), 1);
  EXPECT_EQ(snd.m_total->Where(nullptr), -1);
  EXPECT_EQ(snd.m_total->format, 5);
  EXPECT_EQ(snd.m_fjell->format, 0);
}

}  // namespace
