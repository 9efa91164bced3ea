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

TEST(ProjPathTest, StaticsAreDistinctPlainNames) {
  const std::wstring names[] = {
      CProjPath::AutoDbsNamn, CProjPath::AutoDbkNamn,  CProjPath::AutoDbfKat, CProjPath::AvpNamn,
      CProjPath::Gvrref,      CProjPath::KlippDbkNamn, CProjPath::KlippDbfKat};
  for (const std::wstring& n : names) {
    EXPECT_FALSE(n.empty());
    EXPECT_EQ(n.find_first_of(L"\\/"), std::wstring::npos) << n.c_str();
    for (const std::wstring& m : names) {
      if (&n != &m) {
        EXPECT_NE(n, m);
      }
    }
  }
  EXPECT_STREQ(CProjPath::AutoParNamn, L"KORVO");
}

TEST(ProjPathTest, AssignmentCopiesEveryPathAndStaysApart) {
  CProjPath a;
  a.SetPath(L"first");
  CProjPath b;
  b.SetPath(L"second");
  b = a;
  EXPECT_EQ(b.ProjKat, L"first");
  EXPECT_EQ(b.DbsFil, a.DbsFil);
  EXPECT_EQ(b.DbfKat, a.DbfKat);
  EXPECT_EQ(b.AvpFil, a.AvpFil);
  a.SetPath(L"third");
  EXPECT_EQ(b.ProjKat, L"first");
  EXPECT_EQ(b.DbsFil, L"first" + kSep + L"Korvodal.dbs");
}

}  // namespace
