#include "korvo/soundings/korvo_cpt.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "korvo/foundation/field_text.h"
#include "korvo/foundation/format.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/testutil/block_io.h"
#include "korvo/testutil/notices.h"
#include "korvo/testutil/point_project.h"
#include "korvo/testutil/rows.h"

namespace {

using korvo::test::Texts;

constexpr const char* kGuid = "6f1c2a9e-3b7d-4c55-8e2f-0a9b8c7d6e5f";

// A row as the writer writes it: the left part padded to column 30, the
// remark, and the tail at column 56 when there is one.
std::string Row(const std::string& left, const std::string& remark = "",
                const std::string& tail = "") {
  const std::string line = korvo::test::Padded(left, remark, 30);
  if (tail.empty()) return line;
  return korvo::test::Padded(line.substr(0, line.size() - 2), tail, 56);
}

std::string Keyword(const std::string& key, const std::string& value) {
  return korvo::test::Padded(key, " " + value, 25);
}

// A whole .SND file with a CPT and the blocks behind it.
std::string Point(const std::string& blocks, const std::string& before = "") {
  return korvo::test::PointHead() + before + "*\r\n7 09.03.2014\r\n1.000000 0 1 0 1 3  GUID " +
         kGuid + "\r\n" + blocks + "*\r\n";
}

// Each row as "depth values | tal4 extra values [remark] {symbol}".
Texts Rows(CKorvoCpt& cpt) {
  return korvo::test::EachRow(cpt, [](const cpttype& r) {
    return korvo::Format(L"%.3f %d %d %d | %d %g %g %g [%s] {%s}", r.djup, r.matv1, r.matv2,
                         r.matv3, r.tal4, r.varde1, r.varde2, r.varde3, r.anm, r.symbol);
  });
}

Texts Keywords(CKorvoCptHeader& header) {
  return korvo::test::EachRow(
      header, [](const cptheadertype& k) { return korvo::Format(L"%s=%s", k.nyckel, k.varde); });
}

class CptTest : public testing::Test, protected korvo::test::BlockIo {
 protected:
  // Reads `bytes` as the point P1 and writes it to OUT.SND; returns the bytes
  // written.
  std::string RoundTrip(const std::string& bytes, CKorvoSnd& point) {
    dir().Write("P1.SND", bytes);
    EXPECT_EQ(point.Init(L"P1", dir().File("P1.SND").c_str()), 0);
    EXPECT_EQ(point.Uppdat(L"OUT", dir().File("OUT.SND").c_str()), 0);
    return dir().Read("OUT.SND");
  }
};

TEST_F(CptTest, PointWithRemarksTailsKeywordsAndPresentationComesBackByteIdentical) {
  dir().Write("P1.cpt",
              "12.0000 3.0000 GUID 11111111-2222-3333-4444-555555555555\r\n*\r\n"
              "1.00 2.0 3.000\r\n*\r\n");
  const std::string bytes =
      Point(Row("  0.000    812     14     -3  ", "Fyllning", "0     0.0   0.000    12.5") +
            Row("  0.020   1234     56      7  ", "le, gr\xe5 SA") +
            Row("  0.040  15000    240    599  ") +
            Row("  0.060 123456 123456 123456  ", "", "5    12.3   0.045     3.0") +
            Row("  1.000    900     20      0  ", "F\xf6rborrat \xc5\xc4\xd6 \xe6\xf8",
                "0     0.0  -1.000     0.0") +
            "*\r\n107 \r\n" + Keyword("MA", "0.800") + Keyword("HN", "4711") +
            Keyword("Projekt", "Norra l\xe4nken, etapp 2") + Keyword("", ""));
  CKorvoSnd point;
  EXPECT_EQ(RoundTrip(bytes, point), bytes);
  EXPECT_FALSE(dir().Exists("OUT.cpt"));  // not changed, so not written with the point

  ASSERT_NE(point.m_cpt, nullptr);
  CKorvoCpt& cpt = *point.m_cpt;
  EXPECT_EQ(korvo::Format(L"%s %d %d %d %s %s", cpt.datum, cpt.flagga1, cpt.digit, cpt.metodtal,
                          cpt.kodsystem, cpt.guid),
            L"09.03.2014 1 1 3 SGF 6f1c2a9e-3b7d-4c55-8e2f-0a9b8c7d6e5f");
  // The blanks up to the tail are not the remark's.
  EXPECT_EQ(
      Rows(cpt),
      (Texts{L"0.000 812 14 -3 | 0 0 0 12.5 [Fyllning] {}",
             L"0.020 1234 56 7 | 0 0 0 0 [le, gr\u00e5 SA] {\u00b3}",
             L"0.040 15000 240 599 | 0 0 0 0 [] {}",
             L"0.060 123456 123456 123456 | 5 12.3 0.045 3 [] {}",
             L"1.000 900 20 0 | 0 0 -1 0 [F\u00f6rborrat \u00c5\u00c4\u00d6 \u00e6\u00f8] {}"}));
  EXPECT_EQ(Keywords(cpt.header),
            (Texts{L"MA=0.800", L"HN=4711", L"Projekt=Norra l\u00e4nken, etapp 2", L"="}));
  EXPECT_DOUBLE_EQ(cpt.header.SpetsAreaFaktor(), 0.8);
  EXPECT_EQ(cpt.header.SondNummer(), 4711);
  CKorvoCptPresentation& shown = cpt.presentation;
  EXPECT_EQ(shown.rad1a, 12);
  EXPECT_EQ(shown.guid, L"11111111-2222-3333-4444-555555555555");
  ASSERT_EQ(shown.Home(), 0);
  EXPECT_EQ(shown.pael->varde2, 2.0);
}

TEST_F(CptTest, RowsReadByColumnWhereTheWriterNeverPutsThem) {
  const std::string short_line = "  1.000    100     10   1  SA";  // one short of column 30
  CKorvoCpt cpt(1, 0, 0);
  ASSERT_EQ(Read("7 09.03.2014\r\n0.000000 0 0 0 0 0 \r\n" + short_line + "\r\n" +
                     "  1.020    100     10      1  SA\r\n" +
                     Row("  1.040    100     10      1  ", "", "7") +
                     Row("  1.060    100     10      1  ", "", "8 2.5") + "\r\n*\r\n",
                 cpt),
            0);
  // A tail of one number, and the empty line a row of zeros.
  EXPECT_EQ(Rows(cpt),
            (Texts{L"1.000 100 10 1 | 0 0 0 0 [] {}", L"1.020 100 10 1 | 0 0 0 0 [SA] {:}",
                   L"1.040 100 10 1 | 7 0 0 0 [] {}", L"1.060 100 10 1 | 8 2.5 0 0 [] {}",
                   L"0.000 0 0 0 | 0 0 0 0 [] {}"}));
  EXPECT_STREQ(cpt.kodsystem, L"KRV");
}

TEST_F(CptTest, TailStandsAtColumn56AndOnlyForExtraValues) {
  CKorvoCpt cpt(1, 0, 0);
  cpt.guid = L"6f1c2a9e-3b7d-4c55-8e2f-0a9b8c7d6e5f";
  const auto add = [&](int tal4, double v1, double v2, double v3, const wchar_t* anm) {
    cpttype row{2.5f, 1000, 0, 0, tal4, v1, v2, v3, {}, {}};
    korvo::CopyField(row.anm, anm);
    cpt.Ny(1, &row);
  };
  add(5, 0, 0, 0, L"Sand med grus, fuktig 123");  // 25 characters
  add(0, -4.0, 0, 0, L"");
  add(0, -4.0, -1.0, 0, L"");
  add(0, 0, 0, 0.5, L"x");
  const std::string left = "  2.500   1000      0      0  ";
  const std::string written = Write(cpt);
  EXPECT_EQ(written, std::string("*\r\n7 \r\n0.000000 0 0 0 1 0  GUID ") + kGuid + "\r\n" +
                         Row(left, "Sand med grus, fuktig 123", "5     0.0   0.000     0.0") +
                         Row(left) + Row(left, "", "0    -4.0  -1.000     0.0") +
                         Row(left, "x", "0     0.0   0.000     0.5") + "*\r\n107 \r\n");

  // A negative varde1 alone had no tail, so it is gone after reading back.
  CKorvoCpt back(1, 0, 0);
  ASSERT_EQ(Read(written.substr(3), back), 0);
  EXPECT_EQ(Rows(back),
            (Texts{L"2.500 1000 0 0 | 5 0 0 0 [Sand med grus, fuktig 123] {}",
                   L"2.500 1000 0 0 | 0 0 0 0 [] {}", L"2.500 1000 0 0 | 0 -4 -1 0 [] {}",
                   L"2.500 1000 0 0 | 0 0 0 0.5 [x] {}"}));
}

TEST_F(CptTest, CptWithoutRowsWritesHeadAndKeywordBlock) {
  CKorvoSnd point;
  ASSERT_EQ(point.New(7), 1);
  const std::wstring path = dir().File("P2.SND");
  point.Uppdat(L"P2", path.c_str());
  ASSERT_EQ(point.m_cpt->guid.size(), 36u);
  const std::string guid(point.m_cpt->guid.begin(), point.m_cpt->guid.end());
  EXPECT_NE(dir().Read("P2.SND").find("*\r\n7 \r\n0.000000 0 0 0 1 0  GUID " + guid +
                                      "\r\n*\r\n107 \r\n*\r\n"),
            std::string::npos);
  EXPECT_FALSE(dir().Exists("P2.cpt"));  // an unchanged presentation makes no file

  CKorvoSnd back;
  ASSERT_EQ(back.Init(L"P2", path.c_str()), 0);
  ASSERT_NE(back.m_cpt, nullptr);
  EXPECT_EQ(back.m_cpt->Home(), -1);
  EXPECT_EQ(back.m_cpt->header.Home(), -1);
}

TEST_F(CptTest, KeywordOverItsWidthPushesTheValueAndReadsBackByColumn) {
  CKorvoCpt cpt(1, 0, 0);
  cpt.header.SetValue(L"ABCDEFGHIJKLMNOPQRSTUVWXYZ12", L"value");  // cut to 25
  EXPECT_NE(Write(cpt).find("*\r\n107 \r\nABCDEFGHIJKLMNOPQRSTUVWXY value\r\n"), std::string::npos);

  // A file with the longer keyword: the value is taken from column 26 all the same.
  CStdioFileMem in;
  dir().Write("H.SND", "ABCDEFGHIJKLMNOPQRSTUVWXYZ12 value   \r\nshort\r\n*\r\nrest\r\n");
  ASSERT_TRUE(in.Open(dir().File("H.SND").c_str(), 0));
  CKorvoCptHeader header;
  EXPECT_EQ(header.Init(&in), 0);
  std::wstring next;
  ASSERT_TRUE(in.ReadString(next));
  EXPECT_EQ(next, L"rest");  // the marker was consumed, nothing behind it
  in.Close();
  EXPECT_EQ(Keywords(header), (Texts{L"ABCDEFGHIJKLMNOPQRSTUVWXY=12 value", L"short="}));
}

TEST_F(CptTest, KeywordsAreFoundWithoutCaseFromEitherEnd) {
  CKorvoCptHeader header;
  EXPECT_EQ(header.Find(L"MA"), -1);
  EXPECT_EQ(header.FindReverse(L"MA"), -1);
  header.SetValue(L"ma", L"1.200");
  header.SetValue(L"Djup", L"10");
  header.SetValue(L"MA", L"1.300");  // found as "ma": replaced, not added
  header.SetValue(L"\u00c5r", L"2014");
  header.Ny(1, nullptr);
  korvo::CopyField(header.sista->rec.nyckel, L"MA");
  korvo::CopyField(header.sista->rec.varde, L"9.000");
  EXPECT_EQ(Keywords(header), (Texts{L"ma=1.300", L"Djup=10", L"\u00c5r=2014", L"MA=9.000"}));

  ASSERT_EQ(header.Find(L"Ma"), 0);
  EXPECT_EQ(header.Where(nullptr), 1);
  ASSERT_EQ(header.FindReverse(L"mA"), 0);
  EXPECT_EQ(header.Where(nullptr), 4);
  EXPECT_EQ(header.Find(L"\u00e5R"), 0);  // the Nordic letters fold too
  EXPECT_EQ(header.Find(L"M"), -1);
  EXPECT_DOUBLE_EQ(header.SpetsAreaFaktor(), 1.3);
}

TEST_F(CptTest, KnownKeywordsHaveDefaultsAndThresholds) {
  CKorvoCptHeader header;
  EXPECT_EQ(header.SpetsAreaFaktor(), 1.0);
  EXPECT_TRUE(header.MantelAreaFaktor() == 0.0 && std::signbit(header.MantelAreaFaktor()));
  EXPECT_EQ(header.SondNummer(), 0);

  header.SpetsAreaFaktor(1.0009);
  header.MantelAreaFaktor(-0.001);
  header.SondNummer(0);
  EXPECT_EQ(header.Home(), -1);  // nothing worth a keyword

  header.SpetsAreaFaktor(1.2);
  header.MantelAreaFaktor(0.0125);
  header.SondNummer(-17);
  // 0.0125 written as "%.3lf" is rounded to even.
  EXPECT_EQ(Keywords(header), (Texts{L"MA=1.200", L"MB=0.013", L"HN=-17"}));

  // A value near the default leaves the old one in place.
  header.SpetsAreaFaktor(1.0005);
  header.SondNummer(0);
  header.MantelAreaFaktor(0.0);
  EXPECT_EQ(Keywords(header), (Texts{L"MA=1.200", L"MB=0.013", L"HN=-17"}));
}

TEST_F(CptTest, PresentationFileWrittenWithTheBlockOnlyWhenChanged) {
  CKorvoCpt cpt(1, 0, 0);
  const auto written = [&] {
    Write(cpt);
    return dir().Exists("out.cpt") ? dir().Read("out.cpt") : "none";
  };
  EXPECT_EQ(written(), "none");
  // Changed, but still at the defaults: no new file.
  cpt.presentation.andrad = 1;
  cpt.presentation.rad7b = 0.105;
  EXPECT_EQ(written(), "none");
  cpt.presentation.rad7d = 0.5;
  EXPECT_NE(written().find("1.0000 0.1050 0.0800 0.5000\r\n"), std::string::npos);
  // An existing file is rewritten even at the defaults.
  cpt.presentation.rad7d = 0.0;
  cpt.presentation.rad2a = 0.3;
  EXPECT_NE(written().find("\r\n0.3000 0.0500\r\n"), std::string::npos);
  // Not marked as changed: the file stays as it is.
  cpt.presentation.andrad = 0;
  cpt.presentation.rad2a = 0.7;
  EXPECT_NE(written().find("\r\n0.3000 0.0500\r\n"), std::string::npos);
}

TEST_F(CptTest, DocumentFindsMyCodeAndReportsHeaderWithoutCpt) {
  korvo::test::Notices notices;
  CKorvoSnd point;
  dir().Write("P1.SND", Point(Row("  1.000 1 1 1") + Row("  2.000 1 1 1", "MY") + "*\r\n107 \r\n" +
                                  Keyword("HN", "12"),
                              "*\r\n107 \r\n"));
  EXPECT_EQ(point.Init(L"P1", dir().File("P1.SND").c_str()), 0);
  EXPECT_EQ(notices.status, (Texts{L"Kan inte skapa klassinformation f\u00f6r CPTHeader (Id=P1)"}));
  ASSERT_NE(point.m_cpt, nullptr);
  EXPECT_EQ(point.m_cpt->header.SondNummer(), 12);
  ASSERT_EQ(point.m_cpt->MyKod(), 0);
  EXPECT_EQ(point.m_cpt->Where(nullptr), 2);
  EXPECT_STREQ(point.m_cpt->pael->symbol, L"\u00f0");
}

}  // namespace
