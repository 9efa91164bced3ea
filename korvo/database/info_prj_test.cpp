#include "korvo/database/info_prj.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "korvo/context/proj_path.h"
#include "korvo/context/transformation.h"
#include "korvo/testutil/temp_dir.h"

namespace {

class InfoPrjTest : public ::testing::Test {
 protected:
  InfoPrjTest() { proj.SetPath(dir.wpath().c_str()); }
  korvo::test::TempDir dir;
  CProjPath proj;
};

// latmin latmax lonmin lonmax ksyst hsyst latmedel lonmedel
std::vector<double> Numbers(const CInfoPrj& i) {
  return {i.latmin,
          i.latmax,
          i.lonmin,
          i.lonmax,
          static_cast<double>(i.ksyst),
          static_cast<double>(i.hsyst),
          i.latmedel,
          i.lonmedel};
}

// A file as Uppdat writes it.
const std::string kFull =
    "Bergstr\xf6m & Co AB\r\n"
    "C:\\Projekt\\rapport.pdf\r\n"
    "Rad ett\r\n"
    "\r\n"
    "Rad tre \x80\r\n"
    "55.500000 69.125000 10.250000 24.000000 0 1\r\n"
    "SWEREF 99 TM enligt kommunen\r\n"
    "RH 2000\r\n"
    "Trans 1\r\n"
    "Trans 2\r\n"
    "\r\n"
    "62.312500 17.125000\r\n";

TEST_F(InfoPrjTest, MissingFileIsCreatedEmptyAndNothingIsSet) {
  CInfoPrj info(&proj);
  EXPECT_TRUE(dir.Exists("Info.prj"));
  EXPECT_EQ(dir.Read("Info.prj"), "");
  EXPECT_EQ(info.andrad, 0);
  EXPECT_EQ(info.foretag, L"");
  EXPECT_EQ(Numbers(info), (std::vector<double>{0, 0, 0, 0, -1, -1, 0, 0}));
  std::filesystem::remove(dir.path() / "Info.prj");
  // Without a project nothing is read or written.
  CInfoPrj none(nullptr);
  EXPECT_EQ(none.ksyst, -1);
  EXPECT_EQ(none.Uppdat(), -1);
  EXPECT_FALSE(dir.Exists("Info.prj"));
}

TEST_F(InfoPrjTest, FullFileReadsAndWritesBackByteForByte) {
  dir.Write("Info.prj", kFull);
  CInfoPrj info(&proj);
  EXPECT_EQ(info.foretag, L"Bergstr\u00f6m & Co AB");
  EXPECT_EQ(info.dokument, L"C:\\Projekt\\rapport.pdf");
  EXPECT_EQ(info.textrad[0] + L"|" + info.textrad[1] + L"|" + info.textrad[2],
            L"Rad ett||Rad tre \u20ac");
  EXPECT_EQ(Numbers(info), (std::vector<double>{55.5, 69.125, 10.25, 24.0, 0, 1, 62.3125, 17.125}));
  EXPECT_EQ(info.ksysttext, L"SWEREF 99 TM enligt kommunen");
  EXPECT_EQ(info.hsysttext, L"RH 2000");
  EXPECT_EQ(info.transrad[1] + L"|" + info.transrad[2], L"Trans 2|");

  EXPECT_EQ(info.Uppdat(), 0);
  EXPECT_EQ(dir.Read("Info.prj"), kFull);
}

TEST_F(InfoPrjTest, ChangedValuesSurviveTheRoundTripWithSixDecimals) {
  {
    CInfoPrj info(&proj);
    info.foretag = L"\u00c5F Infrastruktur";
    info.latmin = 59.123456789;
    info.lonmax = -0.5;
    info.ksyst = CTransformation::SIZE + 5;  // beyond the table: kept as it is
    info.hsyst = 2;
    info.andrad = 1;
    EXPECT_EQ(info.Uppdat(), 0);
    EXPECT_EQ(info.andrad, 1);
  }
  const std::string first = dir.Read("Info.prj");
  CInfoPrj again(&proj);
  EXPECT_EQ(again.foretag, L"\u00c5F Infrastruktur");
  EXPECT_EQ(again.latmin, 59.123457);
  EXPECT_EQ(again.lonmax, -0.5);
  EXPECT_EQ(again.ksyst, CTransformation::SIZE + 5);
  EXPECT_EQ(again.hsyst, 2);
  EXPECT_EQ(again.andrad, 0);
  EXPECT_EQ(again.Uppdat(), 0);
  EXPECT_EQ(dir.Read("Info.prj"), first);
  EXPECT_NE(first.find("59.123457 0.000000 0.000000 -0.500000 63 2\r\n"), std::string::npos);
}

TEST_F(InfoPrjTest, ElevenLinesWithFourBoundsGiveTheMeansOfTheBounds) {
  dir.Write("Info.prj", "F\nD\nR1\nR2\nR3\n1.0 2.0 3.0 4.0\nK\nH\nT1\nT2\nT3\n");
  CInfoPrj info(&proj);
  EXPECT_EQ(Numbers(info), (std::vector<double>{1, 2, 3, 4, -1, -1, 1.5, 3.5}));
  EXPECT_EQ(info.transrad[2], L"T3");
  // The next write gives all twelve lines, in CR LF.
  info.Uppdat();
  EXPECT_EQ(dir.Read("Info.prj"),
            "F\r\nD\r\nR1\r\nR2\r\nR3\r\n1.000000 2.000000 3.000000 4.000000 -1 -1\r\n"
            "K\r\nH\r\nT1\r\nT2\r\nT3\r\n1.500000 3.500000\r\n");
}

TEST_F(InfoPrjTest, FiveFieldsKeepTheSystemAndDropTheHeight) {
  dir.Write("Info.prj", "F\nD\nR1\nR2\nR3\n1 2 3 4 7\n");
  CInfoPrj info(&proj);
  EXPECT_EQ(Numbers(info), (std::vector<double>{1, 2, 3, 4, 7, -1, 1.5, 3.5}));
  EXPECT_EQ(info.ksysttext, L"");
}

TEST_F(InfoPrjTest, ShortOrOddFilesKeepWhatTheyHold) {
  // Three lines, the last without its line end.
  dir.Write("Info.prj", "Firma\r\nDok\nRad");
  CInfoPrj info(&proj);
  EXPECT_EQ(info.foretag + L"|" + info.dokument + L"|" + info.textrad[0] + L"|" + info.textrad[1],
            L"Firma|Dok|Rad|");
  EXPECT_EQ(Numbers(info), (std::vector<double>{0, 0, 0, 0, -1, -1, 0, 0}));

  // A bounds line with garbage after two numbers keeps those two.
  dir.Write("Info.prj", "F\nD\nR1\nR2\nR3\n5.5 6.5 x 8 1 1\nK\nH\nT1\nT2\nT3\nbad\n");
  CInfoPrj odd(&proj);
  // A twelfth line is there, so no means are worked out from the bounds.
  EXPECT_EQ(Numbers(odd), (std::vector<double>{5.5, 6.5, 0, 0, -1, -1, 0, 0}));

  // The file is found whatever the case of its name.
  std::filesystem::remove(dir.path() / "Info.prj");
  dir.Write("INFO.PRJ", "Versaler\n");
  EXPECT_EQ(CInfoPrj(&proj).foretag, L"Versaler");
}

TEST(InfoPrjTablesTest, LookupsStopAtTheEndsOfTheTables) {
  EXPECT_EQ(CInfoPrj::EPGSsystem(-1), -1);
  EXPECT_EQ(CInfoPrj::EPGSsystem(0), 3006);
  EXPECT_EQ(CInfoPrj::EPGSsystem(CTransformation::SIZE),
            CTransformation::nrSystem[CTransformation::SIZE]);
  EXPECT_EQ(CInfoPrj::EPGSsystem(CTransformation::SIZE + 1), -1);
  EXPECT_EQ(CInfoPrj::EPGSsystemHeight(-1), -1);
  EXPECT_EQ(CInfoPrj::EPGSsystemHeight(0), 5613);
  EXPECT_EQ(CInfoPrj::EPGSsystemHeight(CTransformation::SIZEHEIGHT),
            CTransformation::nrSystemHeight[CTransformation::SIZEHEIGHT]);
  EXPECT_EQ(CInfoPrj::EPGSsystemHeight(CTransformation::SIZEHEIGHT + 1), -1);
  EXPECT_EQ(CInfoPrj::TextSystem(-1), L" ");
  EXPECT_EQ(CInfoPrj::TextSystem(0), L"SWEREF 99 TM");
  EXPECT_EQ(CInfoPrj::TextSystem(CTransformation::SIZE + 1), L" ");
}

}  // namespace
