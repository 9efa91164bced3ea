#include "korvo/context/dir_sort.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "korvo/platform/env.h"
#include "korvo/testutil/temp_dir.h"

namespace {

std::vector<std::wstring> Rows(CDirSort& list) {
  std::vector<std::wstring> out;
  if (list.Home() != 0) return out;
  do out.push_back(list.pael->namn);
  while (list++);
  return out;
}

std::wstring Pattern(const korvo::test::TempDir& dir, const std::wstring& mask) {
  return dir.wpath() + korvo::kPathSeparator + mask;
}

class DirSortTest : public ::testing::Test {
 protected:
  DirSortTest() {
    for (const char* name : {"ABC.SND", "abc.tlk", "Abc.Prv", "ABCD.SND", "XABC.SND", "ABC"}) {
      dir.Write(name, "x");
    }
    std::filesystem::create_directory(dir.path() / "ABC.DIR");
  }
  korvo::test::TempDir dir;
};

TEST_F(DirSortTest, PointMaskFindsEveryCaseAndNoDirectory) {
  CDirSort list;
  EXPECT_EQ(list.Init(Pattern(dir, L"ABC.*").c_str(), 0, 1, 1, 0), 4);
  // The cursor waits on the first row.
  int n = 0;
  EXPECT_EQ(list.Where(&n), 1);
  EXPECT_EQ(n, 4);
  EXPECT_EQ(Rows(list), (std::vector<std::wstring>{L"ABC", L"Abc.Prv", L"ABC.SND", L"abc.tlk"}));
  // The lower-case mask finds the same files.
  EXPECT_EQ(list.Init(Pattern(dir, L"abc.*").c_str(), 0, 1, 1, 0), 4);
}

TEST_F(DirSortTest, StarDotStarListsAllRegularFilesAndInitStartsAfresh) {
  CDirSort list;
  list.Init(Pattern(dir, L"ABC.*").c_str(), 0, 1, 1, 0);
  EXPECT_EQ(list.Init(Pattern(dir, L"*.*").c_str(), 1, 0, 0, 0), 6);
  EXPECT_EQ(Rows(list), (std::vector<std::wstring>{L"ABC", L"Abc.Prv", L"ABC.SND", L"abc.tlk",
                                                   L"ABCD.SND", L"XABC.SND"}));
}

TEST_F(DirSortTest, MissingDirectoryOrNoMatchLeavesAnEmptyList) {
  CDirSort list;
  list.Init(Pattern(dir, L"*.*").c_str(), 1, 0, 0, 0);
  EXPECT_EQ(list.Init(Pattern(dir, L"nothere/*.*").c_str(), 1, 0, 0, 0), -1);
  EXPECT_EQ(list.Where(nullptr), -1);
  EXPECT_EQ(list.Init(Pattern(dir, L"Q*.*").c_str(), 1, 0, 0, 0), 0);
  EXPECT_EQ(list.Where(nullptr), -1);
}

TEST(MatchFileMaskTest, StarsQuestionMarksAndTheMissingExtension) {
  EXPECT_TRUE(korvo::MatchFileMask(L"*", L""));
  EXPECT_TRUE(korvo::MatchFileMask(L"*.*", L"README"));
  EXPECT_TRUE(korvo::MatchFileMask(L"A?C.S*", L"abc.snd"));
  EXPECT_FALSE(korvo::MatchFileMask(L"A?C.S*", L"ac.snd"));
  EXPECT_TRUE(korvo::MatchFileMask(L"*B*B*", L"aBxxbz"));
  EXPECT_FALSE(korvo::MatchFileMask(L"*B*B*", L"aBxxz"));
  EXPECT_FALSE(korvo::MatchFileMask(L"ABC.*", L"ABCD"));
  EXPECT_FALSE(korvo::MatchFileMask(L"ABC.SND", L"ABC.SNDX"));
  // Nordic letters of the code page fold too.
  EXPECT_TRUE(korvo::MatchFileMask(L"\u00c5S.*", L"\u00e5s.snd"));
}

}  // namespace
