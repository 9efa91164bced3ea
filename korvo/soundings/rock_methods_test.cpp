#include "korvo/soundings/rock_methods.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "korvo/foundation/format.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/testutil/block_io.h"
#include "korvo/testutil/rows.h"

namespace {

using korvo::test::RowsOf;
using korvo::test::Texts;

constexpr const char* kGuid = "3c9e1b27-5a4d-4f08-9e6b-71d2c0a8f453";

std::string MethodLine(const std::string& numbers) {
  return numbers + " GUID " + kGuid + "\r\n";
}

std::string Line(const std::string& left, const std::string& remark = "", size_t column = 29) {
  return korvo::test::Padded(left, remark, column);
}

class RockMethodsTest : public testing::Test, protected korvo::test::BlockIo {
 protected:
  // Each row as "depth tal1 tal2 tal3 word [remark] {symbol}".
  static Texts Rows(CKorvoTotal& block) {
    return korvo::test::EachRow(block, [](const totaltype& r) {
      return korvo::Format(L"%.3f %d %d %d %s [%s] {%s}", r.djup, r.tal1, r.tal2, r.tal3, r.typ,
                           r.anm, r.symbol);
    });
  }
  // A block read from its method line's numbers and `rows`.
  template <class Block>
  void ReadRows(Block& block, const std::string& numbers, const std::string& rows) {
    Read((std::is_same_v<Block, CKorvoTotal> ? "25\r\n" : "26\r\n") + numbers + "\r\n" + rows,
         block);
  }
};

TEST_F(RockMethodsTest, FjellCarriesItsFourthColumn) {
  const std::string bytes = "*\r\n26 09.03.2014\r\n" + MethodLine("1.000000 94 1 7 1 3 Berg") +
                            Line("  0.400   12  ", "Fyllning", 22) +
                            Line("  3.250  130  ", "B1 hammare", 22) +
                            Line("  3.900 1234  ", "", 22);
  CKorvoFjell block(1, 0, 0);
  EXPECT_EQ(RoundTrip(bytes, block), bytes);
  EXPECT_EQ(
      korvo::Format(L"%d %d %d %s", block.format, block.stopp, block.metodtal, block.stopptext),
      L"7 94 3 Berg");
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
  EXPECT_NE(Write(fresh).find("\r\n0.000000 0 0 0 1 0  GUID "), std::string::npos);
  fresh.format = 9;
  ReadRows(fresh, "0 93 2", "");
  EXPECT_EQ(fresh.format, 0);
  EXPECT_EQ(fresh.digit, 2);
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
  // the old form. An unknown word or one cut short is the ordinary one, there
  // is no third number in this generation, and an empty line is a row.
  CKorvoTotal block(1, 0, 0);
  ReadRows(block, "0 93 0",
           Line("  1.000    12     3 XX", "abcdefghijklmnopqrstuvwxyz0") +
               Line("  2.000    15     4 S") + "  3.000    1     2    77\r\n\r\n");
  EXPECT_EQ(block.format, 0);
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
  totaltype row{L"SL", 1.5f, 7, 30, 2, L"TR", L""};
  block.Ny(1, &row);
  const std::string written = Write(block);
  EXPECT_EQ(written.rfind("*\r\n25 \r\n0.000000 0 0 5 1 0  GUID ", 0), 0u);
  // The word of a row is not written in this generation.
  EXPECT_EQ(RowsOf(written), Line("  1.500     7     2    30", "TR"));

  // So is one the document makes.
  CKorvoSnd snd;
  EXPECT_EQ(snd.New(25), 1);
  EXPECT_EQ(snd.m_total->format, 5);
}

TEST_F(RockMethodsTest, ConversionOfEachGeneration) {
  const std::string old_rows = "  1.000    12     3 SL\r\n  2.000    12     3 TR\r\n";
  const std::string new_rows = "  1.000    12     3    15\r\n  2.000    -4     3    -2\r\n";
  const Texts from_old = {L"1.000 0 3 120  [] {}", L"2.000 12 3 0  [] {}"};
  const Texts tenfold = {L"1.000 12 3 150  [] {}", L"2.000 -4 3 -20  [] {}"};
  const Texts kept = {L"1.000 12 3 15  [] {}", L"2.000 -4 3 -2  [] {}"};
  const std::string no_rows = "*\r\n";
  const Texts none;
  const struct {
    int from, to;
    const std::string& rows;
    const Texts& converted;
  } cases[] = {{0, 4, old_rows, from_old}, {1, 5, old_rows, from_old}, {2, 4, new_rows, tenfold},
               {3, 5, new_rows, tenfold},  {4, 4, new_rows, kept},     {5, 5, new_rows, kept},
               {1, 5, no_rows, none},      {2, 4, no_rows, none}};
  for (const auto& c : cases) {
    CKorvoTotal block(1, 0, 0);
    ReadRows(block, "0 93 0 " + std::to_string(c.from) + " 1", c.rows);
    block.ConvertToFormat4();
    EXPECT_EQ(block.format, c.to) << c.from;
    EXPECT_EQ(Rows(block), c.converted) << c.from;
    // Converted rows are written with three numbers.
    if (!c.converted.empty()) {
      EXPECT_EQ(RowsOf(Write(block)).substr(0, 25), c.from < 2   ? "  1.000     0     3   120"
                                                    : c.from < 4 ? "  1.000    12     3   150"
                                                                 : "  1.000    12     3    15")
          << c.from;
    }
  }
  CKorvoTotal unknown(1, 0, 0);
  unknown.format = -1;
  unknown.ConvertToFormat4();
  EXPECT_EQ(unknown.format, -1);
}

TEST_F(RockMethodsTest, BergKontrollOnlyForStopCodesThatAllowIt) {
  const std::string rows = Line("  1.000    10     3     0", "SA") +
                           Line("  4.250    80     9     0", "GR f") +
                           Line("  5.000    90     9     0", "F");
  for (int stopp : {93, 94, 0, 90, 92, 95}) {
    CKorvoTotal block(1, 0, 0);
    ReadRows(block, "0 " + std::to_string(stopp) + " 0 5 1", rows);
    float depth = -1.0f;
    const bool rock = stopp == 93 || stopp == 94;
    EXPECT_EQ(block.BergKontroll(&depth), rock ? 0 : -1) << stopp;
    EXPECT_FLOAT_EQ(depth, rock ? 4.25f : -1.0f) << stopp;
    if (rock) {
      EXPECT_EQ(block.Where(nullptr), 2);
    }
  }
  // The code in digits counts; other rock words, and no rows at all, don't.
  CKorvoFjell fjell(1, 0, 0);
  ReadRows(fjell, "0 94 0 0 1",
           Line("  2.000   10  ", "B1 B2", 22) + Line("  3.500   10  ", "43", 22));
  float depth = 0.0f;
  ASSERT_EQ(fjell.BergKontroll(&depth), 0);
  EXPECT_FLOAT_EQ(depth, 3.5f);
  CKorvoFjell no_mark(1, 0, 0);
  ReadRows(no_mark, "0 94 0 0 1", Line("  2.000   10  ", "B1 FF", 22));
  EXPECT_EQ(no_mark.BergKontroll(&depth), -1);
  CKorvoFjell empty(1, 0, 0);
  empty.stopp = 94;
  EXPECT_EQ(empty.BergKontroll(&depth), -1);
}

TEST_F(RockMethodsTest, MyKodLooksWithTheBlocksOwnMethod) {
  CKorvoTotal block(1, 0, 0);
  ReadRows(block, "0 0 0 5 1",
           Line("  1.000     1     1     1", "SA") + Line("  2.000     1     1     1", "MY 3"));
  ASSERT_EQ(block.MyKod(), 0);
  EXPECT_EQ(block.Where(nullptr), 2);
  CKorvoFjell fjell(1, 0, 0);
  EXPECT_EQ(fjell.MyKod(), -1);
}

}  // namespace
