#include "korvo/soundings/basic_methods.h"

#include <gtest/gtest.h>

#include <string>

#include "korvo/foundation/format.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/testutil/block_io.h"
#include "korvo/testutil/point_project.h"
#include "korvo/testutil/rows.h"

namespace {

constexpr const char* kGuid = "6f1c2a9e-3b7d-4c55-8e2f-0a9b8c7d6e5f";

std::string MethodLine(const std::string& numbers) {
  return numbers + " GUID " + kGuid + "\r\n";
}

std::string Line(const std::string& left, const std::string& remark = "", size_t column = 22) {
  return korvo::test::Padded(left, remark, column);
}

using korvo::test::Texts;

// Each row as "depth count(s) [load word] [remark] {symbol}".
std::wstring Describe(const dreietype& r) {
  return korvo::Format(L"%.3f %d %s [%s] {%s}", r.djup, r.varv, r.vikt, r.anm, r.symbol);
}
std::wstring Describe(const ramsondtype& r) {
  return korvo::Format(L"%.3f %d %d [%s] {%s}", r.djup, r.tal1, r.tal2, r.anm, r.symbol);
}
template <class Row>
std::wstring Describe(const Row& r) {
  return korvo::Format(L"%.3f %d [%s] {%s}", r.djup, r.varv, r.anm, r.symbol);
}
template <class Block>
Texts Rows(Block& block) {
  return korvo::test::EachRow(block, [](const auto& r) { return Describe(r); });
}
// The method line as "flag stop digit count [stop text] code system date".
template <class Block>
std::wstring Head(const Block& b) {
  return korvo::Format(L"%d %d %d %d [%s] %s %s", b.flagga1, b.stopp, b.digit, b.metodtal,
                       b.stopptext, b.kodsystem, b.datum);
}

class BasicMethodsTest : public testing::Test, protected korvo::test::BlockIo {};

TEST_F(BasicMethodsTest, RotaryBlockComesBackByteIdentical) {
  const std::string bytes = "*\r\n21 09.03.2014\r\n" + MethodLine("1.000000 91 2 0 1 7 Sten") +
                            Line("  0.200   10 5", "torrskorpa") +
                            Line("  1.200   12 25", "le, gr\xe5 SA") +
                            Line("  1.400   -1 SL", "sjunker") + Line("  2.000    0 SL1") +
                            Line(" 12.345 1234 100", "<R1> \xc5\xc4\xd6\xe6\xf8");
  CKorvoDreie block(1, 0, 0);
  EXPECT_EQ(RoundTrip(bytes, block), bytes);

  EXPECT_EQ(Head(block), L"1 91 2 7 [Sten] SGF 09.03.2014");
  EXPECT_EQ(block.guid, L"6f1c2a9e-3b7d-4c55-8e2f-0a9b8c7d6e5f");
  // LE, for the words behind the comma don't count; R1 is no rotary code,
  // and <...> no code at all.
  EXPECT_EQ(Rows(block),
            (Texts{L"0.200 10 5 [torrskorpa] {}", L"1.200 12 25 [le, gr\u00e5 SA] {\u00b3}",
                   L"1.400 -1 SL [sjunker] {}", L"2.000 0 SL1 [] {}",
                   L"12.345 1234 100 [<R1> \u00c5\u00c4\u00d6\u00e6\u00f8] {}"}));
}

TEST_F(BasicMethodsTest, SimpleAndPressureBlocksComeBackByteIdentical) {
  const std::string simple = "*\r\n22 1.2.99\r\n" + MethodLine("0.000000 2 0 0 0 0 ") +
                             Line("  0.500    3  ", "sa gr") + Line("  1.000   14  ");
  CKorvoEnkel enkel(1, 0, 0);
  EXPECT_EQ(RoundTrip(simple, enkel), simple);
  EXPECT_STREQ(enkel.kodsystem, L"KRV");
  EXPECT_EQ(Rows(enkel), (Texts{L"0.500 3 [sa gr] {:}", L"1.000 14 [] {}"}));

  // Rotary-pressure rows have their remark at column 15.
  const std::string pressure = "*\r\n23 \r\n" + MethodLine("0.000000 0 0 0 1 0 ") +
                               Line("  3.000   40  ", "R1 spolning", 15) +
                               Line("  3.200   -5  ", "MY", 15);
  CKorvoDtrykk dtrykk(1, 0, 0);
  EXPECT_EQ(RoundTrip(pressure, dtrykk), pressure);
  // R1 is valid for this method, and there is no load-word rule here.
  EXPECT_EQ(Rows(dtrykk), (Texts{L"3.000 40 [R1 spolning] {R1}", L"3.200 -5 [MY] {\u00f0}"}));
}

TEST_F(BasicMethodsTest, RamBlockHoldsTal1BeforeTal2) {
  const std::string bytes = "*\r\n24 09.03.2014\r\n" + MethodLine("0.000000 93 0 0 1 0 Stopp") +
                            Line("  0.200 12 3", "Fyllning, \xf6vre") +
                            Line("  0.400 125 -20", "ST") + Line("  0.600 0 0");
  CKorvoRam ram(1, 0, 0);
  EXPECT_EQ(RoundTrip(bytes, ram), bytes);
  EXPECT_EQ(Rows(ram), (Texts{L"0.200 12 3 [Fyllning, \u00f6vre] {}",
                              L"0.400 125 -20 [ST] {\u007f}", L"0.600 0 0 [] {}"}));
}

TEST_F(BasicMethodsTest, RamStopTextIsCutToItsField) {
  CKorvoRam ram(1, 0, 0);
  Read("24\r\n" + MethodLine("0.000000 0 0 0 1 0 ABCDEFGHIJKLMNOPQ"), ram);
  EXPECT_STREQ(ram.stopptext, L"ABCDEFGHIJKLM");
  CKorvoDreie dreie(1, 0, 0);
  Read("21\r\n" + MethodLine("0.000000 0 0 0 1 0 ABCDEFGHIJKLMNOPQ"), dreie);
  EXPECT_STREQ(dreie.stopptext, L"ABCDEFGHIJKLMNOPQ");
}

TEST_F(BasicMethodsTest, NegativeCountIsWrittenAsSinkingUnderLoad) {
  CKorvoDreie block(1, 0, 0);
  dreietype row{L"25", 2.5f, -1, L"", L""};
  block.Ny(1, &row);
  const std::string written = Write(block);
  EXPECT_NE(written.find("\r\n" + Line("  2.500   -1 SL")), std::string::npos) << written;
  EXPECT_STREQ(block.pael->vikt, L"SL");
}

TEST_F(BasicMethodsTest, LinesTheWriterNeverWrites) {
  CKorvoDreie block(1, 0, 0);
  const std::string long_remark = "abcdefghijklmnopqrstuvwxyz0123";
  ASSERT_EQ(Read("21\r\n0 3 1 0\r\n\r\n" + Line("  1.000    5 25", long_remark) +
                     Line("  1.200 12345 25", "SA") + "abc\r\n*\r\n  9.000    1\r\n",
                 block),
            0);
  // A method line of four columns.
  EXPECT_EQ(Head(block), L"0 3 1 0 [] KRV 09.03.2014");
  EXPECT_TRUE(block.guid.empty());
  // An empty line is a row of zeros, five digits push the load word out of
  // its column and the remark with it, a line that doesn't scan is zeros, and
  // the marker ends the block.
  EXPECT_EQ(Rows(block), (Texts{L"0.000 0  [] {}", L"1.000 5 25 [abcdefghijklmnopqrstuvwxy] {}",
                                L"1.200 12345  [SA] {:}", L"0.000 0  [] {}"}));

  const std::string written = Write(block);
  const size_t rows_at = written.find("\r\n", written.find("GUID ")) + 2;
  EXPECT_EQ(written.substr(rows_at), Line("  0.000    0 ") +
                                         Line("  1.000    5 25", long_remark.substr(0, 25)) +
                                         Line("  1.200 12345 ", "SA") + Line("  0.000    0 "));
  const std::string head = "*\r\n21 09.03.2014\r\n0.000000 3 1 0 0 0  GUID ";
  EXPECT_EQ(written.substr(0, head.size()), head);
}

TEST_F(BasicMethodsTest, FlagAndCodeSystemOfTheMethodLine) {
  const struct {
    const char* numbers;
    int flag;
    const wchar_t* system;
  } cases[] = {{"1.000000 0 0 0 1 0 x", 1, L"SGF"},
               {"1.005 0 0 0 1", 1, L"SGF"},
               {"1.02 0 0 0 0", 0, L"KRV"},
               {"0.5 0 0 0 2", 0, L"KRV"},
               {"1 0 0 0", 1, L"KRV"},
               {"", 0, L"KRV"}};
  for (const auto& c : cases) {
    CKorvoEnkel block(1, 0, 0);
    Read(std::string("22\r\n") + c.numbers + "\r\n", block);
    EXPECT_EQ(block.flagga1, c.flag) << c.numbers;
    EXPECT_STREQ(block.kodsystem, c.system) << c.numbers;
  }
}

TEST_F(BasicMethodsTest, GuidIsKeptFromThirtySixCharactersOn) {
  CKorvoRam kept(1, 0, 0);
  Read("24\r\n" + MethodLine("0.000000 0 0 0 1 0 "), kept);
  EXPECT_NE(Write(kept).find(kGuid), std::string::npos);

  CKorvoRam short_one(1, 0, 0);
  const std::string guid35 = std::string(kGuid).substr(0, 35);
  Read("24\r\n0.000000 0 0 0 1 0  GUID " + guid35 + "\r\n", short_one);
  EXPECT_EQ(short_one.guid.size(), 35u);
  const std::string written = Write(short_one);
  EXPECT_EQ(written.find(guid35), std::string::npos);
  ASSERT_EQ(short_one.guid.size(), 36u);
  EXPECT_NE(written.find(" GUID " + std::string(short_one.guid.begin(), short_one.guid.end())),
            std::string::npos);

  // A new block gets one at its first save and keeps it after that.
  CKorvoDtrykk fresh(1, 0, 0);
  Write(fresh);
  const std::wstring first = fresh.guid;
  Write(fresh);
  EXPECT_EQ(fresh.guid, first);
}

TEST_F(BasicMethodsTest, BlockWithoutRowsAndStreamThatEndsBehindTheCodeLine) {
  const std::string bytes = "*\r\n21 09.03.2014\r\n" + MethodLine("0.000000 0 0 0 1 0 ");
  CKorvoDreie block(1, 0, 0);
  EXPECT_EQ(RoundTrip(bytes, block), bytes);
  EXPECT_EQ(block.MyKod(), -1);

  CKorvoDreie nothing(1, 0, 0);
  EXPECT_EQ(Read("21 09.03.2014\r\n", nothing, L"09.03.2014"), -1);
  EXPECT_STREQ(nothing.datum, L"09.03.2014");
}

TEST_F(BasicMethodsTest, MyKodStopsAtTheFirstRowWithTheCode) {
  CKorvoDreie block(1, 0, 0);
  Read("21\r\n0 0 0 0 1\r\n" + Line("  1.000    1 5", "MYR") + Line("  2.000    1 5", "SA") +
           Line("  3.000    1 5", "sa my") + Line("  4.000    1 5", "MY"),
       block);
  ASSERT_EQ(block.MyKod(), 0);
  EXPECT_EQ(block.Where(nullptr), 3);
  EXPECT_FLOAT_EQ(block.pael->djup, 3.0f);

  CKorvoRam ram(1, 0, 0);
  Read("24\r\n0 0 0 0 1\r\n" + Line("  1.000 1 1", "SA"), ram);
  EXPECT_EQ(ram.MyKod(), -1);
}

TEST_F(BasicMethodsTest, NewBlockTakesTheChosenCodeSystem) {
  const wchar_t* before = CKorvoSnd::Kodtyp;
  CKorvoSnd::Kodtyp = L"KRV";
  CKorvoEnkel own(1, 0, 0);
  CKorvoSnd::Kodtyp = before;
  EXPECT_STREQ(own.kodsystem, L"KRV");
  EXPECT_NE(Write(own).find("\r\n0.000000 0 0 0 0 0  GUID "), std::string::npos);
  EXPECT_STREQ(CKorvoEnkel(1, 0, 0).kodsystem, L"SGF");
}

// The four blocks inside a point's .SND file.
using BasicBlocksInDocumentTest = korvo::test::PointProjectTest;

TEST_F(BasicBlocksInDocumentTest, AllFourBlocksMakeTheRoundTripInFileOrder) {
  const std::string dreie = "*\r\n21 09.03.2014\r\n" + MethodLine("0.000000 0 0 0 1 0 ") +
                            Line("  1.000   10 25", "Lera");
  const std::string ram =
      "*\r\n24 10.03.2014\r\n" + MethodLine("0.000000 0 0 0 1 0 ") + Line("  0.200 12 3");
  const std::string dtrykk = "*\r\n23 11.03.2014\r\n" + MethodLine("0.000000 0 0 0 1 0 ") +
                             Line("  3.000   40  ", "R1", 15);
  const std::string enkel_rows = MethodLine("0.000000 0 0 0 1 0 ") + Line("  0.500    3  ", "sa");
  const std::string enkel = "*\r\n22 2014-03-12\r\n" + enkel_rows;
  WriteField("P1.SND", korvo::test::PointHead() + enkel + dtrykk + ram + dreie + "*\r\n");
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"P1", nullptr), 0);
  EXPECT_TRUE(notices_.status.empty());
  ASSERT_TRUE(snd.m_dreie && snd.m_ram && snd.m_dtrykk && snd.m_enkel);
  EXPECT_STREQ(snd.m_enkel->datum, L"12.03.2014");
  EXPECT_STREQ(snd.m_dreie->datum, L"09.03.2014");
  EXPECT_STREQ(snd.datum, L"09.03.2014");  // that of the last block read

  snd.Uppdat(nullptr, nullptr);
  const std::string normalised = "*\r\n22 12.03.2014\r\n" + enkel_rows;
  EXPECT_EQ(ReadField("P1.SND"),
            korvo::test::PointHead() + dreie + ram + dtrykk + normalised + "*\r\n");
}

TEST_F(BasicBlocksInDocumentTest, ALaterBlockOfTheSameCodeReplacesTheFirst) {
  WriteField("P2.SND", korvo::test::PointHead() + "*\r\n21 01.01.2001\r\n0 0 0 0 1\r\n" +
                           Line("  1.000    1 5") + "*\r\n21 02.02.2002\r\n0 0 0 0 1\r\n" +
                           Line("  2.000    2 5") + Line("  3.000    3 5"));
  CKorvoSnd snd(&proj_, nullptr);
  snd.Init(L"P2", nullptr);
  ASSERT_NE(snd.m_dreie, nullptr);
  EXPECT_STREQ(snd.m_dreie->datum, L"02.02.2002");
  int rows = 0;
  snd.m_dreie->Where(&rows);
  EXPECT_EQ(rows, 2);
  EXPECT_EQ(snd.New(24), 1);
  EXPECT_EQ(snd.New(24), 1);
  EXPECT_EQ(snd.m_ram->Where(nullptr), -1);
}

}  // namespace
