#include "korvo/soundings/rock_methods.h"

#include <gtest/gtest.h>

#include <string>

#include "korvo/foundation/format.h"
#include "korvo/soundings/basic_methods.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/testutil/block_io.h"
#include "korvo/testutil/point_project.h"
#include "korvo/testutil/rows.h"

namespace {

constexpr const char* kGuid = "3c9e1b27-5a4d-4f08-9e6b-71d2c0a8f453";

std::string MethodLine(const std::string& numbers) {
  return numbers + " GUID " + kGuid + "\r\n";
}

std::string Line(const std::string& left, const std::string& remark = "", size_t column = 29) {
  return korvo::test::Padded(left, remark, column);
}

using korvo::test::RowsOf;
using korvo::test::Texts;

class RockMethodsTest : public testing::Test, protected korvo::test::BlockIo {
 protected:
  // Each row as "depth tal1 tal2 tal3 word [remark] {symbol}".
  static Texts Rows(CKorvoTotal& block) {
    return korvo::test::EachRow(block, [](const totaltype& r) {
      return korvo::Format(L"%.3f %d %d %d %s [%s] {%s}", r.djup, r.tal1, r.tal2, r.tal3, r.typ,
                           r.anm, r.symbol);
    });
  }
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
  // B1 is a rock code, valid for this method.
  EXPECT_EQ(
      korvo::test::EachRow(block,
                           [](const fjelltype& r) {
                             return korvo::Format(L"%.3f %d [%s] {%s}", r.djup, r.varv, r.anm,
                                                  r.symbol);
                           }),
      (Texts{L"0.400 12 [Fyllning] {}", L"3.250 130 [B1 hammare] {B1}", L"3.900 1234 [] {}"}));

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

// Generations 0 and 1 have two numbers and the word at column 20; 2 to 5
// three numbers, the remark at column 29 all the same.
TEST_F(RockMethodsTest, TotalRowsOfEachGenerationComeBackByteIdentical) {
  const struct {
    const char* generations;
    std::string rows;
    Texts read;
  } cases[] = {
      {"01",
       Line("  0.500    12     3 SL", "le") + Line("  1.250   140   -25 TR", "sa F") +
           Line(" 10.000 12345 99999 TR"),
       // Row order: SA stands before the rock code.
       {L"0.500 12 3 0 SL [le] {\u00b3}", L"1.250 140 -25 0 TR [sa F] {:}",
        L"10.000 12345 99999 0 TR [] {}"}},
      {"2345",
       Line("  0.500    12     3    40", "GR") + Line("  2.000     0    -7     0") +
           Line(" 12.125 99999 12345 123456", "Berg F"),
       // Six digits fit in front of the remark column.
       {L"0.500 12 3 40  [GR] {o}", L"2.000 0 -7 0  [] {}",
        L"12.125 99999 12345 123456  [Berg F] {.}"}},
  };
  for (const auto& c : cases) {
    for (const char* g = c.generations; *g; ++g) {
      const std::string bytes = "*\r\n25 09.03.2014\r\n" +
                                MethodLine(std::string("0.000000 93 0 ") + *g + " 1 0 Sten") +
                                c.rows;
      CKorvoTotal block(1, 0, 0);
      EXPECT_EQ(RoundTrip(bytes, block), bytes) << *g;
      EXPECT_EQ(block.format, *g - '0');
      EXPECT_EQ(Rows(block), c.read) << *g;
    }
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
  // A word cut short is the ordinary one too, there is no third number in
  // this generation, and an empty line is a row all the same.
  EXPECT_EQ(Rows(block),
            (Texts{L"1.000 12 3 0 TR [abcdefghijklmnopqrstuvwxy] {}", L"2.000 15 4 0 TR [] {}",
                   L"3.000 1 2 0 TR [] {}", L"0.000 0 0 0 TR [] {}"}));

  const std::string written = Write(block);
  EXPECT_NE(written.find("\r\n0.000000 93 0 0 0 0  GUID "), std::string::npos);
  EXPECT_EQ(RowsOf(written), Line("  1.000    12     3 TR", "abcdefghijklmnopqrstuvwxy") +
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
  EXPECT_EQ(RowsOf(written), Line("  1.500     7     2    30", "TR"));
}

TEST_F(RockMethodsTest, ConversionOfEachGeneration) {
  const std::string old_rows = "  1.000    12     3 SL\r\n  2.000    12     3 TR\r\n";
  const std::string new_rows = "  1.000    12     3    15\r\n  2.000    -4     3    -2\r\n";
  const Texts from_old = {L"1.000 0 3 120  [] {}", L"2.000 12 3 0  [] {}"};
  const Texts tenfold = {L"1.000 12 3 150  [] {}", L"2.000 -4 3 -20  [] {}"};
  const Texts kept = {L"1.000 12 3 15  [] {}", L"2.000 -4 3 -2  [] {}"};
  const struct {
    int from, to;
    const std::string& rows;
    const Texts& converted;
  } cases[] = {{0, 4, old_rows, from_old}, {1, 5, old_rows, from_old}, {2, 4, new_rows, tenfold},
               {3, 5, new_rows, tenfold},  {4, 4, new_rows, kept},     {5, 5, new_rows, kept}};
  for (const auto& c : cases) {
    CKorvoTotal block(1, 0, 0);
    Read("25\r\n0 93 0 " + std::to_string(c.from) + " 1\r\n" + c.rows, block);
    block.ConvertToFormat4();
    EXPECT_EQ(block.format, c.to) << c.from;
    EXPECT_EQ(Rows(block), c.converted) << c.from;
    // Converted rows are written with three numbers.
    EXPECT_EQ(RowsOf(Write(block)).substr(0, 25), c.from < 2   ? "  1.000     0     3   120"
                                                  : c.from < 4 ? "  1.000    12     3   150"
                                                               : "  1.000    12     3    15")
        << c.from;
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
class RockBlocksInDocumentTest : public korvo::test::PointProjectTest {};

TEST_F(RockBlocksInDocumentTest, DocumentMakesReadsAndWritesBothInFileOrder) {
  const std::string head = korvo::test::PointHead();
  const std::string fjell = "*\r\n26 01.02.2020\r\n" + MethodLine("0.000000 94 0 7 1 0 ") +
                            Line("  3.000   10  ", "F", 22);
  const std::string total = "*\r\n25 02.02.2020\r\n" + MethodLine("0.000000 93 0 1 1 0 ") +
                            Line("  1.000    12     3 SL");
  const std::string ram =
      "*\r\n24 03.02.2020\r\n" + MethodLine("0.000000 0 0 0 1 0 ") + Line("  0.200 12 3", "", 22);
  WriteField("R1.SND", head + fjell + total + ram + "*\r\n");
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"R1", nullptr), 0);
  ASSERT_TRUE(snd.m_fjell && snd.m_total && snd.m_ram);
  EXPECT_EQ(snd.m_fjell->format, 7);
  EXPECT_EQ(snd.m_total->format, 1);
  snd.Uppdat(nullptr, nullptr);
  EXPECT_EQ(ReadField("R1.SND"), head + ram + total + fjell + "*\r\n");

  // New replaces a block with an empty one of the latest generation.
  EXPECT_EQ(snd.New(25), 1);
  EXPECT_EQ(snd.New(26), 1);
  EXPECT_EQ(snd.m_total->Where(nullptr), -1);
  EXPECT_EQ(snd.m_total->format, 5);
  EXPECT_EQ(snd.m_fjell->format, 0);
}

}  // namespace
