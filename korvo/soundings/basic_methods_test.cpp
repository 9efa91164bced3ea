#include "korvo/soundings/basic_methods.h"

#include <gtest/gtest.h>

#include <string>

#include "korvo/foundation/format.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/soundings/rock_methods.h"
#include "korvo/testutil/block_io.h"
#include "korvo/testutil/point_project.h"
#include "korvo/testutil/rows.h"

namespace {

using korvo::test::Texts;

constexpr const char* kGuid = "6f1c2a9e-3b7d-4c55-8e2f-0a9b8c7d6e5f";

std::string MethodLine(const std::string& numbers) {
  return numbers + " GUID " + kGuid + "\r\n";
}

std::string Line(const std::string& left, const std::string& remark = "", size_t column = 22) {
  return korvo::test::Padded(left, remark, column);
}

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

class BasicMethodsTest : public testing::Test, protected korvo::test::BlockIo {
 protected:
  // Reads `bytes` into a new block, checks that it writes them back, and
  // gives its head and rows.
  template <class Block>
  Texts RoundTrip(const std::string& bytes) {
    Block block(1, 0, 0);
    EXPECT_EQ(BlockIo::RoundTrip(bytes, block), bytes);
    Texts out = Rows(block);
    out.insert(out.begin(), Head(block));
    return out;
  }
};

TEST_F(BasicMethodsTest, EachBlockComesBackByteIdentical) {
  // LE, for the words behind the comma don't count; R1 is no rotary code,
  // and <...> no code at all.
  EXPECT_EQ(
      RoundTrip<CKorvoDreie>("*\r\n21 09.03.2014\r\n" + MethodLine("1.000000 91 2 0 1 7 Sten") +
                             Line("  0.200   10 5", "torrskorpa") +
                             Line("  1.200   12 25", "le, gr\xe5 SA") +
                             Line("  1.400   -1 SL", "sjunker") + Line("  2.000    0 SL1") +
                             Line(" 12.345 1234 100", "<R1> \xc5\xc4\xd6\xe6\xf8")),
      (Texts{L"1 91 2 7 [Sten] SGF 09.03.2014", L"0.200 10 5 [torrskorpa] {}",
             L"1.200 12 25 [le, gr\u00e5 SA] {\u00b3}", L"1.400 -1 SL [sjunker] {}",
             L"2.000 0 SL1 [] {}", L"12.345 1234 100 [<R1> \u00c5\u00c4\u00d6\u00e6\u00f8] {}"}));
  EXPECT_EQ(RoundTrip<CKorvoEnkel>("*\r\n22 1.2.99\r\n" + MethodLine("0.000000 2 0 0 0 0 ") +
                                   Line("  0.500    3  ", "sa gr") + Line("  1.000   14  ")),
            (Texts{L"0 2 0 0 [] KRV 1.2.99", L"0.500 3 [sa gr] {:}", L"1.000 14 [] {}"}));
  // Rotary-pressure rows have their remark at column 15; R1 is valid for this
  // method, and there is no load-word rule here.
  EXPECT_EQ(RoundTrip<CKorvoDtrykk>("*\r\n23 \r\n" + MethodLine("0.000000 0 0 0 1 0 ") +
                                    Line("  3.000   40  ", "R1 spolning", 15) +
                                    Line("  3.200   -5  ", "MY", 15)),
            (Texts{L"0 0 0 0 [] SGF ", L"3.000 40 [R1 spolning] {R1}", L"3.200 -5 [MY] {\u00f0}"}));
  // The ram's file holds tal1 before tal2.
  EXPECT_EQ(
      RoundTrip<CKorvoRam>("*\r\n24 09.03.2014\r\n" + MethodLine("0.000000 93 0 0 1 0 Stopp") +
                           Line("  0.200 12 3", "Fyllning, \xf6vre") +
                           Line("  0.400 125 -20", "ST") + Line("  0.600 0 0")),
      (Texts{L"0 93 0 0 [Stopp] SGF 09.03.2014", L"0.200 12 3 [Fyllning, \u00f6vre] {}",
             L"0.400 125 -20 [ST] {\u007f}", L"0.600 0 0 [] {}"}));
  // Without rows.
  EXPECT_EQ(RoundTrip<CKorvoDreie>("*\r\n21 09.03.2014\r\n" + MethodLine("0.000000 0 0 0 1 0 ")),
            (Texts{L"0 0 0 0 [] SGF 09.03.2014"}));
}

TEST_F(BasicMethodsTest, StopTextIsCutOnlyInTheRam) {
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
  EXPECT_EQ(korvo::test::RowsOf(Write(block)), Line("  2.500   -1 SL"));
  EXPECT_STREQ(block.pael->vikt, L"SL");
}

TEST_F(BasicMethodsTest, LinesTheWriterNeverWrites) {
  CKorvoDreie block(1, 0, 0);
  const std::string long_remark = "abcdefghijklmnopqrstuvwxyz0123";
  ASSERT_EQ(Read("21\r\n0 3 1 0\r\n\r\n" + Line("  1.000    5 25", long_remark) +
                     Line("  1.200 12345 25", "SA") + "abc\r\n*\r\n  9.000    1\r\n",
                 block),
            0);
  // A method line of four columns has no GUID. An empty line is a row of
  // zeros, five digits push the load word out of its column and the remark
  // with it, a line that doesn't scan is zeros, and the marker ends the block.
  EXPECT_EQ(Head(block), L"0 3 1 0 [] KRV 09.03.2014");
  EXPECT_TRUE(block.guid.empty());
  EXPECT_EQ(Rows(block), (Texts{L"0.000 0  [] {}", L"1.000 5 25 [abcdefghijklmnopqrstuvwxy] {}",
                                L"1.200 12345  [SA] {:}", L"0.000 0  [] {}"}));

  const std::string written = Write(block);
  EXPECT_EQ(written.rfind("*\r\n21 09.03.2014\r\n0.000000 3 1 0 0 0  GUID ", 0), 0u);
  EXPECT_EQ(korvo::test::RowsOf(written), Line("  0.000    0 ") +
                                              Line("  1.000    5 25", long_remark.substr(0, 25)) +
                                              Line("  1.200 12345 ", "SA") + Line("  0.000    0 "));
  // A stream that ends behind the code line.
  CKorvoDreie nothing(1, 0, 0);
  EXPECT_EQ(Read("21 09.03.2014\r\n", nothing), -1);
  EXPECT_STREQ(nothing.datum, L"09.03.2014");
}

TEST_F(BasicMethodsTest, FlagAndCodeSystemOfTheMethodLine) {
  const struct {
    const char* numbers;
    const wchar_t* flag_and_system;
  } cases[] = {
      {"1.000000 0 0 0 1 0 x", L"1 SGF"}, {"1.005 0 0 0 1", L"1 SGF"}, {"1.02 0 0 0 0", L"0 KRV"},
      {"0.5 0 0 0 2", L"0 KRV"},          {"1 0 0 0", L"1 KRV"},       {"", L"0 KRV"}};
  for (const auto& c : cases) {
    CKorvoEnkel block(1, 0, 0);
    Read(std::string("22\r\n") + c.numbers + "\r\n", block);
    EXPECT_EQ(korvo::Format(L"%d %s", block.flagga1, block.kodsystem), c.flag_and_system)
        << c.numbers;
  }
  // A new block takes the chosen code system and writes the flag after it.
  const wchar_t* before = CKorvoSnd::Kodtyp;
  CKorvoSnd::Kodtyp = L"KRV";
  CKorvoEnkel own(1, 0, 0);
  CKorvoSnd::Kodtyp = before;
  EXPECT_STREQ(own.kodsystem, L"KRV");
  EXPECT_NE(Write(own).find("\r\n0.000000 0 0 0 0 0  GUID "), std::string::npos);
  EXPECT_STREQ(CKorvoEnkel(1, 0, 0).kodsystem, L"SGF");
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

TEST_F(BasicMethodsTest, MyKodStopsAtTheFirstRowWithTheCode) {
  CKorvoDreie block(1, 0, 0);
  EXPECT_EQ(block.MyKod(), -1);
  Read("21\r\n0 0 0 0 1\r\n" + Line("  1.000    1 5", "MYR") + Line("  2.000    1 5", "SA") +
           Line("  3.000    1 5", "sa my") + Line("  4.000    1 5", "MY"),
       block);
  ASSERT_EQ(block.MyKod(), 0);
  EXPECT_EQ(block.Where(nullptr), 3);
  CKorvoRam ram(1, 0, 0);
  Read("24\r\n0 0 0 0 1\r\n" + Line("  1.000 1 1", "SA"), ram);
  EXPECT_EQ(ram.MyKod(), -1);
}

// The sounding blocks inside a point's .SND file.
using BlocksInDocumentTest = korvo::test::PointProjectTest;

TEST_F(BlocksInDocumentTest, AllBlocksMakeTheRoundTripInTheirFixedOrder) {
  const auto block = [](const std::string& code_line, const std::string& rows) {
    return "*\r\n" + code_line + "\r\n" + MethodLine("0.000000 0 0 0 1 0 ") + rows;
  };
  const std::string dreie = block("21 09.03.2014", Line("  1.000   10 25", "Lera"));
  const std::string ram = block("24 10.03.2014", Line("  0.200 12 3"));
  const std::string total = block("25 02.02.2020", Line("  1.000    12     3 SL", "", 29));
  const std::string fjell = block("26 01.02.2020", Line("  3.000   10  ", "F"));
  const std::string dtrykk = block("23 11.03.2014", Line("  3.000   40  ", "R1", 15));
  const std::string enkel_rows = Line("  0.500    3  ", "sa");
  WriteField("P1.SND", korvo::test::PointHead() + block("22 2014-03-12", enkel_rows) + dtrykk +
                           fjell + total + ram + dreie + "*\r\n");
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"P1", nullptr), 0);
  EXPECT_TRUE(notices_.status.empty());
  ASSERT_TRUE(snd.m_dreie && snd.m_ram && snd.m_dtrykk && snd.m_enkel && snd.m_total &&
              snd.m_fjell);
  EXPECT_STREQ(snd.datum, L"09.03.2014");  // that of the last block read

  snd.Uppdat(nullptr, nullptr);
  EXPECT_EQ(ReadField("P1.SND"), korvo::test::PointHead() + dreie + ram + total + fjell + dtrykk +
                                     block("22 12.03.2014", enkel_rows) + "*\r\n");

  // A later block of the same code replaces the first; New an empty one.
  WriteField("P2.SND", korvo::test::PointHead() + block("21 01.01.2001", Line("  1.000    1 5")) +
                           block("21 02.02.2002", Line("  2.000    2 5") + Line("  3.000    3 5")));
  CKorvoSnd twice(&proj_, nullptr);
  twice.Init(L"P2", nullptr);
  ASSERT_NE(twice.m_dreie, nullptr);
  EXPECT_EQ(Rows(*twice.m_dreie), (Texts{L"2.000 2 5 [] {}", L"3.000 3 5 [] {}"}));
  EXPECT_EQ(twice.New(24), 1);
  EXPECT_EQ(twice.New(24), 1);
  EXPECT_EQ(twice.m_ram->Where(nullptr), -1);
}

}  // namespace
