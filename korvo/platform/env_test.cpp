#include "korvo/platform/env.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>

#ifndef _WIN32
#include <unistd.h>
#endif

#include "korvo/platform/platform_internal.h"
#include "korvo/testutil/temp_dir.h"

namespace korvo {
namespace {

TEST(FindExistingPath, FindsAFileWhateverTheCaseOfItsName) {
  test::TempDir dir;
  dir.Write("abc.snd", "x");
  EXPECT_EQ(FindExistingPath(dir.File("ABC.SND")), dir.File("abc.snd"));
  EXPECT_EQ(FindExistingPath(dir.File("Abc.Snd")), dir.File("abc.snd"));
  EXPECT_TRUE(FileExists(dir.File("ABC.SND")));
  // A name that is not there comes back as it was formed.
  EXPECT_EQ(FindExistingPath(dir.File("ABD.SND")), dir.File("ABD.SND"));
  EXPECT_FALSE(FileExists(dir.File("ABD.SND")));
}

TEST(FindExistingPath, ExactMatchWinsAndLatin1LettersFold) {
  test::TempDir dir;
  dir.Write("a.snd", "1");
  dir.Write("A.SND", "2");
  EXPECT_EQ(FindExistingPath(dir.File("A.SND")), dir.File("A.SND"));
  EXPECT_EQ(FindExistingPath(dir.File("a.snd")), dir.File("a.snd"));
  // Without an exact match the choice does not depend on the directory order.
  EXPECT_EQ(FindExistingPath(dir.File("a.SND")), dir.File("A.SND"));
  dir.Write("\xC3\xA5sa\xC3\xB8.tlk", "3");  // "åsaø.tlk" in UTF-8
  EXPECT_EQ(FindExistingPath(dir.wpath() + L"/\x00C5SA\x00D8.TLK"),
            dir.wpath() + L"/\x00E5sa\x00F8.tlk");
  EXPECT_FALSE(FileExists(dir.wpath() + L"/\x00C5SA\x00D9.TLK"));
}

TEST(Files, DirectoriesAreNotFiles) {
  test::TempDir dir;
  EXPECT_TRUE(MakeDirectories(dir.wpath() + L"/Dbf/sub"));
  EXPECT_TRUE(DirectoryExists(dir.wpath() + L"/Dbf/sub"));
  EXPECT_TRUE(DirectoryExists(dir.wpath() + L"/DBF"));
  EXPECT_FALSE(FileExists(dir.wpath() + L"/Dbf"));
  EXPECT_FALSE(RemoveFile(dir.wpath() + L"/Dbf"));
  EXPECT_TRUE(DirectoryExists(dir.wpath() + L"/Dbf"));
  dir.Write("plain", "");
  EXPECT_FALSE(DirectoryExists(dir.File("plain")));
  EXPECT_FALSE(MakeDirectories(dir.File("plain")));
  // A file is removed by its name in any case, once.
  EXPECT_TRUE(RemoveFile(dir.File("PLAIN")));
  EXPECT_FALSE(dir.Exists("plain"));
  EXPECT_FALSE(RemoveFile(dir.File("PLAIN")));
}

TEST(Files, CreateFileExclusiveSucceedsOnce) {
  test::TempDir dir;
  EXPECT_EQ(CreateFileExclusive(dir.File("Korvodal.dbk")), Created::kCreated);
  EXPECT_EQ(dir.Read("Korvodal.dbk"), "");
  EXPECT_EQ(CreateFileExclusive(dir.File("Korvodal.dbk")), Created::kExists);
  // The same lock spelt in another case is still held.
  EXPECT_EQ(CreateFileExclusive(dir.File("KORVODAL.DBK")), Created::kExists);
  EXPECT_FALSE(dir.Exists("KORVODAL.DBK"));
  ASSERT_TRUE(RemoveFile(dir.File("Korvodal.dbk")));
  // The mark goes in with the creation, and a failed second try keeps it.
  EXPECT_EQ(CreateFileExclusive(dir.File("Korvodal.dbk"), "Database busy!"), Created::kCreated);
  EXPECT_EQ(CreateFileExclusive(dir.File("Korvodal.dbk"), "other"), Created::kExists);
  EXPECT_EQ(dir.Read("Korvodal.dbk"), "Database busy!");
  // Where nothing can be made, that is no lock held by anybody.
  EXPECT_EQ(CreateFileExclusive(dir.wpath() + L"/missing/x.dbk"), Created::kFailed);
}

TEST(Files, CanReadWriteWantsAnExistingFile) {
  test::TempDir dir;
  dir.Write("Korvodal.dbs", "x");
  EXPECT_TRUE(CanReadWrite(dir.File("Korvodal.dbs")));
  EXPECT_TRUE(CanReadWrite(dir.File("KORVODAL.DBS")));
  EXPECT_FALSE(CanReadWrite(dir.File("missing.dbs")));
  EXPECT_FALSE(CanReadWrite(dir.wpath()));
#ifndef _WIN32
  if (::geteuid() != 0) {  // the superuser may write anything
    std::filesystem::permissions(dir.path() / "Korvodal.dbs", std::filesystem::perms::owner_read);
    EXPECT_FALSE(CanReadWrite(dir.File("Korvodal.dbs")));
  }
#endif
}

TEST(Files, ListFilesGivesRegularFilesOnly) {
  test::TempDir dir;
  dir.Write("B1.SND", "");
  dir.Write("b2.tlk", "");
  ASSERT_TRUE(MakeDirectories(dir.wpath() + L"/sub.snd"));
  std::vector<std::wstring> names = ListFiles(dir.wpath());
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::wstring>{L"B1.SND", L"b2.tlk"}));
  EXPECT_TRUE(ListFiles(dir.wpath() + L"/none").empty());
}

TEST(Files, TimesOfAFileJustWrittenAreToday) {
  test::TempDir dir;
  const LocalTime before = NowLocal();
  dir.Write("t.snd", "x");
  const LocalTime after = NowLocal();
  LocalTime created, written;
  ASSERT_TRUE(GetLocalFileTimes(dir.File("T.SND"), &created, &written));
  for (const LocalTime& t : {created, written}) {
    const bool same_day =
        (t.year == before.year && t.month == before.month && t.day == before.day) ||
        (t.year == after.year && t.month == after.month && t.day == after.day);
    EXPECT_TRUE(same_day) << t.year << "-" << t.month << "-" << t.day;
  }
  EXPECT_FALSE(GetLocalFileTimes(dir.File("none"), &created, &written));
}

TEST(TempDirectory, FollowsTmpdirWithATrailingSeparator) {
  const char* old = std::getenv("TMPDIR");
  const std::string saved = old ? old : "";
  setenv("TMPDIR", "/var/tmp", 1);
  EXPECT_EQ(TempDirectory(), L"/var/tmp/");
  unsetenv("TMPDIR");
  EXPECT_EQ(TempDirectory(), L"/tmp/");
  if (old) setenv("TMPDIR", saved.c_str(), 1);
}

TEST(NewUuid, IsARandomVersionFourUuidInLowerCase) {
  const std::wstring a = NewUuid();
  const std::wstring b = NewUuid();
  EXPECT_NE(a, b);
  for (const std::wstring& id : {a, b}) {
    ASSERT_EQ(id.size(), 36u) << id.size();
    for (size_t i = 0; i < id.size(); ++i) {
      if (i == 8 || i == 13 || i == 18 || i == 23) {
        EXPECT_EQ(id[i], L'-');
      } else {
        EXPECT_TRUE((id[i] >= L'0' && id[i] <= L'9') || (id[i] >= L'a' && id[i] <= L'f'));
      }
    }
    EXPECT_EQ(id[14], L'4');
    EXPECT_NE(std::wstring(L"89ab").find(id[19]), std::wstring::npos);
  }
}

TEST(Clock, IsMonotonicAcrossASleep) {
  const int64_t start = ClockMs();
  SleepMs(20);
  EXPECT_GE(ClockMs() - start, 20);
}

TEST(NativePath, Utf8BothWaysAndRawBytesSurvive) {
  EXPECT_EQ(NativePath(L"/p/\x00E5\x20AC"), "/p/\xC3\xA5\xE2\x82\xAC");
  EXPECT_EQ(FromNativePath("/p/\xC3\xA5\xE2\x82\xAC"), L"/p/\x00E5\x20AC");
  const std::string latin1 = "/p/\xE5\xC3";  // not UTF-8
  EXPECT_EQ(NativePath(FromNativePath(latin1)), latin1);
  EXPECT_EQ(FromNativePath("\xF0\x9F\x98\x80").size(), sizeof(wchar_t) == 2 ? 2u : 1u);
  EXPECT_EQ(NativePath(FromNativePath("\xF0\x9F\x98\x80")), "\xF0\x9F\x98\x80");
  EXPECT_EQ(NativePath(FromNativePath("\xC0\xAF")), "\xC0\xAF");  // overlong stays raw
}

TEST(ErrorText, DescribesAnErrorNumber) {
  EXPECT_EQ(ErrorText(2), L"No such file or directory");
}

}  // namespace
}  // namespace korvo
