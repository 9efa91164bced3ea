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

  EXPECT_EQ(std::wstring(dbs.prjdat.Dbsver) + L"|" + dbs.prjdat.Ksyst + L"|" + dbs.prjdat.Prjnamn,
            L"3.0|LOK|");
  EXPECT_EQ(dbs.prjdat.verdel, 0.0);
  EXPECT_EQ(dbs.prjdat.slutpos, 500);
  EXPECT_EQ(dbs.prjdat.uppdnrfil, 0);
  const std::wstring datum = dbs.prjdat.Datum;
  EXPECT_TRUE(datum == before || datum == after) << "Datum " << datum.c_str();
  EXPECT_EQ(dbs.behorighet, 1);
  EXPECT_EQ(dbs.symbolstatus, -1);
  EXPECT_EQ(dbs.postlangd, 62);
  const std::wstring sep = korvo::kPathSeparator;
  EXPECT_EQ(dbs.GetDbsFileName(), L"/proj/a" + sep + L"Korvodal.dbs");
  EXPECT_EQ(dbs.dbkfil.GetFilePath(), L"/proj/a" + sep + L"Korvodal.dbk");
  EXPECT_EQ(std::wstring(dbs.GetDbsverString()), L"3.0");
}

TEST(KorvoDbsConstruction, WithoutAProjectThereAreNoPathsAndNoHeader) {
  CKorvoDbs dbs;
  EXPECT_EQ(dbs.GetDbsFileName(), L"");
  EXPECT_EQ(dbs.prjdat.Dbsver[0], L'\0');
  EXPECT_EQ(dbs.prjdat.slutpos, 0);
  EXPECT_EQ(dbs.symbolstatus, -1);
  EXPECT_EQ(dbs.Where(nullptr), -1);
}

}  // namespace
