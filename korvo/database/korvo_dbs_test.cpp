#include "korvo/database/korvo_dbs.h"

#include <gtest/gtest.h>

#include <string>

#include "korvo/context/proj_path.h"
#include "korvo/foundation/format.h"
#include "korvo/platform/datetime.h"
#include "korvo/platform/env.h"

namespace {

std::wstring Today() {
  const korvo::LocalTime t = korvo::NowLocal();
  return korvo::Format(L"%02d.%02d.%04d", t.day, t.month, t.year);
}

TEST(KorvoDbsConstruction, ANewDatabaseHasTheCurrentVersionAndTodaysDate) {
  CProjPath proj;
  proj.SetPath(L"/proj/a");
  const std::wstring before = Today();
  CKorvoDbs dbs(&proj);
  const std::wstring after = Today();

  EXPECT_EQ(std::wstring(dbs.prjdat.Dbsver), L"3.0");
  EXPECT_EQ(dbs.prjdat.verdel, 0.0);
  EXPECT_EQ(std::wstring(dbs.prjdat.Ksyst), L"LOK");
  EXPECT_EQ(dbs.prjdat.slutpos, 500);
  EXPECT_EQ(dbs.prjdat.uppdnrfil, 0);
  EXPECT_EQ(dbs.prjdat.Prjnamn[0], L'\0');
  const std::wstring datum = dbs.prjdat.Datum;
  EXPECT_TRUE(datum == before || datum == after) << "Datum " << datum.c_str();

  EXPECT_EQ(dbs.behorighet, 1);
  EXPECT_EQ(dbs.symbolstatus, -1);
  EXPECT_EQ(dbs.postlangd, 62);
  EXPECT_EQ(dbs.postlangd3, 62);
  EXPECT_EQ(dbs.postlangd4, 93);
  EXPECT_EQ(dbs.proj, &proj);
  EXPECT_EQ(dbs.vaglinje, nullptr);
  EXPECT_EQ(dbs.guidreg, nullptr);
  EXPECT_EQ(dbs.uppdaterar, 0);
  const std::wstring sep = korvo::kPathSeparator;
  EXPECT_EQ(dbs.GetDbsFileName(), L"/proj/a" + sep + L"Korvodal.dbs");
  EXPECT_EQ(dbs.dbkfil.GetFilePath(), L"/proj/a" + sep + L"Korvodal.dbk");
  EXPECT_EQ(std::wstring(dbs.GetDbsverString()), L"3.0");
}

TEST(KorvoDbsConstruction, WithoutAProjectThereAreNoPathsAndNoHeader) {
  CKorvoDbs dbs;
  EXPECT_EQ(dbs.proj, nullptr);
  EXPECT_EQ(dbs.GetDbsFileName(), L"");
  EXPECT_EQ(dbs.prjdat.Dbsver[0], L'\0');
  EXPECT_EQ(dbs.prjdat.slutpos, 0);
  EXPECT_EQ(dbs.symbolstatus, -1);
  EXPECT_EQ(dbs.postlangd3, 62);
  EXPECT_EQ(dbs.postlangd4, 93);
  EXPECT_EQ(dbs.Where(nullptr), -1);
}

TEST(KorvoDbsConstruction, TheVersionsAndChainageMarks) {
  EXPECT_EQ(std::wstring(CKorvoDbs::m_Dbsver), L"3.0");
  EXPECT_EQ(std::wstring(CKorvoDbs::m_Dbsver40), L"4.0");
  EXPECT_EQ(CKorvoDbs::m_sek_noll, 9999999.9);
  EXPECT_EQ(CKorvoDbs::m_sek_koll, 9999999.0);
}

// The plot flags are one bit each, in order from 1.
class PlotFlags : public CKorvoDbs {
 public:
  static std::vector<int> All() {
    return {PL_ID,     PL_SON,      PL_SON_180, PL_TRI,     PL_LAB,   PL_FALT, PL_VB, PL_PG,
            PL_PROV,   PL_PROV_180, PL_DUBB,    PL_90,      PL_95,    PL_94,   PL_91, PL_91_180,
            PL_95_180, PL_90_180,   PL_POR,     PL_AVP,     PL_96,    PL_97,   PL_98, PL_BG,
            PL_PUMP,   PL_MTN,      PL_MTNR,    PL_BERGDAG, PL_MATPOS};
  }
  static int None() { return PL_NONE; }
};

TEST(KorvoDbsConstruction, PlotFlagsRiseBitByBit) {
  const std::vector<int> all = PlotFlags::All();
  ASSERT_EQ(all.size(), 29u);
  for (size_t i = 0; i < all.size(); ++i) EXPECT_EQ(all[i], 1 << i) << i;
  EXPECT_EQ(all.back(), 268435456);
  EXPECT_EQ(PlotFlags::None(), 0);
}

}  // namespace
