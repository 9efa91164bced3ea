#include "korvo/context/proj_path.h"

#include <gtest/gtest.h>

#include <string>

#include "korvo/platform/env.h"
#include "korvo/testutil/temp_dir.h"

namespace {

const std::wstring kSep = korvo::kPathSeparator;

TEST(ProjPathTest, SetPathJoinsTheStaticNamesToTheProjectDirectory) {
  korvo::test::TempDir dir;
  CProjPath p;
  EXPECT_EQ(p.SetPath(dir.wpath().c_str()), 0);
  EXPECT_EQ(p.ProjKat, dir.wpath());
  EXPECT_EQ(p.DbsFil, dir.wpath() + kSep + L"Korvodal.dbs");
  EXPECT_EQ(p.DbfKat, dir.wpath() + kSep + CProjPath::AutoDbfKat);
  EXPECT_EQ(p.AvpFil, dir.wpath() + kSep + CProjPath::AvpNamn);

  // The conversion dialog finds the lock file by swapping the last three
  // characters of the database's name for "dbk".
  std::wstring lock = p.DbsFil;
  lock.replace(lock.size() - 3, 3, L"dbk");
  EXPECT_EQ(lock, dir.wpath() + kSep + L"Korvodal.dbk");
  EXPECT_EQ(lock, p.ProjKat + kSep + CProjPath::AutoDbkNamn);

  // A database made at DbsFil lies in the project directory itself.
  dir.Write("Korvodal.dbs", "x");
  EXPECT_TRUE(korvo::FileExists(p.DbsFil));
}

TEST(ProjPathTest, SetPathDropsTrailingSeparatorsAndTakesNull) {
  CProjPath p;
  p.SetPath((L"proj" + kSep + kSep).c_str());
  EXPECT_EQ(p.ProjKat, L"proj");
  EXPECT_EQ(p.DbsFil, L"proj" + kSep + L"Korvodal.dbs");
  p.SetPath(nullptr);
  EXPECT_EQ(p.ProjKat, L"");
  // A root directory keeps its one separator.
  p.SetPath(kSep.c_str());
  EXPECT_EQ(p.ProjKat, kSep);
}

}  // namespace
