#include "korvo/soundings/cpt_presentation.h"

#include <gtest/gtest.h>

#include <string>

#include "korvo/foundation/format.h"
#include "korvo/testutil/rows.h"
#include "korvo/testutil/temp_dir.h"

namespace {

using korvo::test::Texts;

constexpr const char* kGuid = "11111111-2222-3333-4444-555555555555";

const std::string kDefaultLines =
    std::string("10.0000 2.0000 GUID ") + kGuid +
    "\r\n0.1000 0.0500\r\n0.8000 0.2000\r\n10.0000 2.0000\r\n"
    "1.0000 0.5000\r\n8.0000 1.0000\r\n1.0000 0.1000 0.0800 0.0000\r\n";

// The seven lines of settings as read, in the file's order, and the rows.
Texts Read(CKorvoCptPresentation& p) {
  Texts out = korvo::test::EachRow(p, [](const cptpresentationtype& r) {
    return korvo::Format(L"%.6g %.6g %.6g", r.varde1, r.varde2, r.varde3);
  });
  out.insert(out.begin(),
             korvo::Format(L"%d %d | %.6g %.6g | %.6g %.6g | %d %d | %d %.6g | %d "
                           L"%d | %.6g %.6g %.6g %.6g",
                           p.rad1a, p.rad1b, p.rad2a, p.rad2b, p.rad3a, p.rad3b, p.rad4a, p.rad4b,
                           p.rad5a, p.rad5b, p.rad6a, p.rad6b, p.rad7a, p.rad7b, p.rad7c, p.rad7d));
  return out;
}
const wchar_t* kDefaults = L"10 2 | 0.1 0.05 | 0.8 0.2 | 10 2 | 1 0.5 | 8 1 | 1 0.1 0.08 0";
// Lines 2 and 3 creep up by a ten-thousandth at each reading; 5 and 7 are
// taken as they stand.
const wchar_t* kNudged =
    L"10 2 | 0.1001 0.0501 | 0.8001 0.2001 | 10 2 | 1 0.5 | 8 1 | 1 0.1 0.08 0";

class CptPresentationTest : public testing::Test {
 protected:
  std::wstring Snd() const { return dir_.File("P1.SND"); }
  korvo::test::TempDir dir_;
};

TEST_F(CptPresentationTest, FileNameReplacesTheExtension) {
  EXPECT_EQ(korvo::CptFileName(L"/p/FALT/P101.SND"), L"/p/FALT/P101.cpt");
  EXPECT_EQ(korvo::CptFileName(L"P1.TMP"), L"P1.cpt");
  EXPECT_EQ(korvo::CptFileName(L"ab"), L".cpt");
}

TEST_F(CptPresentationTest, DefaultsAndRowsAreWrittenInTheirFormats) {
  CKorvoCptPresentation p;
  p.guid = L"11111111-2222-3333-4444-555555555555";
  cptpresentationtype row{1.005, 2.25, -0.0004};
  p.Ny(1, &row);
  row = {120.0, 0.0, 3.5};
  p.Ny(1, &row);
  ASSERT_EQ(p.Uppdat(Snd(), 1), 0);
  EXPECT_EQ(dir_.Read("P1.cpt"),
            kDefaultLines + "*\r\n1.00 2.2 -0.000\r\n120.00 0.0 3.500\r\n*\r\n");
}

TEST_F(CptPresentationTest, NewFileOnlyWhenAskedFor) {
  CKorvoCptPresentation missing;  // a missing file leaves the fields
  missing.rad2a = 7.0;
  missing.guid = L"kept";
  EXPECT_EQ(missing.Init(Snd()), -1);
  EXPECT_EQ(missing.rad2a, 7.0);
  EXPECT_EQ(missing.guid, L"kept");

  CKorvoCptPresentation p;
  EXPECT_EQ(p.Uppdat(Snd(), 0), -1);
  EXPECT_FALSE(dir_.Exists("P1.cpt"));
  EXPECT_TRUE(p.guid.empty());

  dir_.Write("P1.cpt", "old\r\n");
  ASSERT_EQ(p.Uppdat(Snd(), 0), 0);  // an existing file is rewritten
  EXPECT_EQ(p.guid.size(), 36u);
  const std::string bytes = dir_.Read("P1.cpt");
  EXPECT_EQ(bytes.substr(0, 20), "10.0000 2.0000 GUID ");
  EXPECT_EQ(bytes.substr(56), kDefaultLines.substr(56) + "*\r\n*\r\n");

  EXPECT_EQ(p.Uppdat(dir_.File("no/such/dir/P1.SND"), 1), -1);
}

TEST_F(CptPresentationTest, ReadingAddsATenThousandthThatShowsAfterAWrite) {
  dir_.Write("P1.cpt", kDefaultLines + "*\r\n*\r\n");
  CKorvoCptPresentation p;
  ASSERT_EQ(p.Init(Snd()), 0);
  EXPECT_EQ(Read(p), Texts{kNudged});
  EXPECT_EQ(p.guid, L"11111111-2222-3333-4444-555555555555");
  ASSERT_EQ(p.Uppdat(Snd(), 0), 0);

  CKorvoCptPresentation again;
  ASSERT_EQ(again.Init(Snd()), 0);
  ASSERT_EQ(again.Uppdat(Snd(), 0), 0);
  EXPECT_EQ(dir_.Read("P1.cpt"), std::string("10.0000 2.0000 GUID ") + kGuid +
                                     "\r\n0.1002 0.0502\r\n0.8002 0.2002\r\n10.0000 2.0000\r\n"
                                     "1.0000 0.5000\r\n8.0000 1.0000\r\n"
                                     "1.0000 0.1000 0.0800 0.0000\r\n*\r\n*\r\n");
}

TEST_F(CptPresentationTest, FilesTheWriterNeverWrites) {
  std::string hundred = kDefaultLines;
  for (int line = 8; line <= 101; ++line) hundred += std::to_string(line) + " 0.5 0.25\r\n";
  const struct {
    std::string bytes;
    Texts read;
  } cases[] = {
      // An empty line reads as zeros; a whole number is cut after the nudge
      // and held to the range of its field.
      {"9.99995 2.7\r\n\r\n\r\n-3.5 0\r\n4 0.25\r\n7.9999 1e12\r\n2 0.3 0.04 1\r\n*\r\n",
       {L"10 2 | 0.0001 0.0001 | 0.0001 0.0001 | -3 0 | 4 0.25 | 8 2147483647 | 2 0.3 0.04 1"}},
      {"*\r\n*\r\n", {kDefaults}},
      // A marker first sends every line to the rows; one of two numbers
      // makes none.
      {"*\r\n1 2 3\r\n4 5\r\n6 7 8 9\r\n", {kDefaults, L"1 2 3", L"6 7 8"}},
      // Without a marker the rows start at the hundredth line.
      {hundred, {kNudged, L"100 0.5 0.25", L"101 0.5 0.25"}},
  };
  for (const auto& c : cases) {
    dir_.Write("P1.cpt", c.bytes);
    CKorvoCptPresentation p;
    p.guid = L"old";
    ASSERT_EQ(p.Init(Snd()), 0);
    EXPECT_EQ(Read(p), c.read) << c.bytes;
    EXPECT_EQ(p.guid, c.bytes == hundred ? L"11111111-2222-3333-4444-555555555555" : L"");
  }
}

}  // namespace
