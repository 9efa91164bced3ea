#include <gtest/gtest.h>

#include <cstring>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "korvo/context/proj_path.h"
#include "korvo/database/dbs_format.h"
#include "korvo/database/korvo_dbs.h"
#include "korvo/foundation/coding.h"
#include "korvo/platform/env.h"
#include "korvo/testutil/children.h"
#include "korvo/testutil/notices.h"
#include "korvo/testutil/temp_dir.h"

namespace {

using korvo::test::TempDir;
using Texts = std::vector<std::wstring>;

// Opens the protected file operations to the tests.
class TestDbs : public CKorvoDbs {
 public:
  using CKorvoDbs::CKorvoDbs;
  using CKorvoDbs::Dbs_rw;
  using CKorvoDbs::ReadHeader;
  using CKorvoDbs::ReadRecord;
  using CKorvoDbs::WriteHeader;
  using CKorvoDbs::WriteRecord;
};

template <size_t N>
void Fill(wchar_t (&field)[N], const wchar_t* text) {
  std::wmemset(field, L'\0', N);
  std::wcsncpy(field, text, N - 1);
}

class DbsFileTest : public ::testing::Test {
 protected:
  DbsFileTest() { proj.SetPath(dir.wpath().c_str()); }

  // A database made as a new project makes it: header only.
  void MakeNewDatabase(TestDbs* dbs) {
    dbs->ChangeReadWriteAccess(0);
    ASSERT_EQ(dbs->Dbs_rw(1002), 0);
    ASSERT_EQ(dbs->WriteHeader(), 0);
    ASSERT_EQ(dbs->Dbs_rw(1001), 0);
  }

  TempDir dir;
  CProjPath proj;
  korvo::test::Notices notices;
};

TEST_F(DbsFileTest, ANewDatabaseIsExactlyItsHeader) {
  TestDbs dbs(&proj);
  MakeNewDatabase(&dbs);
  const std::string file = dir.Read("Korvodal.dbs");
  std::string datum;
  for (int i = 0; i < 10; ++i) datum += static_cast<char>(dbs.prjdat.Datum[i]);
  std::string expected(408, '\0');
  expected.replace(0, 3, "3.0");
  expected.replace(86, 10, datum);
  expected.replace(211, 3, "LOK");
  expected.replace(324, 2, "\xF4\x01");  // slutpos 500
  EXPECT_EQ(file, expected);
  EXPECT_EQ(datum.substr(2, 1) + datum.substr(5, 1), "..");
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
  EXPECT_TRUE(notices.messages.empty());
}

TEST_F(DbsFileTest, AHeaderReadBackWholeOrShort) {
  {
    TestDbs dbs(&proj);
    Fill(dbs.prjdat.Prjnamn, L"Søndre Ålesund");
    dbs.prjdat.uppdnrfil = 17;
    dbs.prjdat.guid[10] = 0xFEDCBA98u;
    MakeNewDatabase(&dbs);
  }
  TestDbs other(&proj);
  ASSERT_EQ(other.Dbs_rw(1000), 0);
  EXPECT_EQ(other.ReadHeader(), 408);
  EXPECT_EQ(other.Dbs_rw(1001), 0);
  EXPECT_EQ(std::wstring(other.prjdat.Prjnamn), L"Søndre Ålesund");
  EXPECT_EQ(other.prjdat.uppdnrfil, 17);
  EXPECT_EQ(other.prjdat.guid[10], 0xFEDCBA98u);

  // A short header gives what came and zeros for the rest.
  dir.Write("Korvodal.dbs", std::string("4.0\0\0\0Vegves", 12));
  TestDbs dbs(&proj);
  Fill(dbs.prjdat.Uppdnamn, L"Statens vegvesen");
  ASSERT_EQ(dbs.Dbs_rw(1000), 0);
  EXPECT_EQ(dbs.ReadHeader(), 12);
  dbs.Dbs_rw(1001);
  EXPECT_EQ(std::wstring(dbs.prjdat.Dbsver) + L"|" + dbs.prjdat.Uppdnamn + L"|" + dbs.prjdat.Ksyst,
            L"4.0|Vegves|");
  EXPECT_EQ(dbs.prjdat.slutpos, 0);
}

bhdbstype Point(const wchar_t* id, float djup) {
  bhdbstype r{};
  Fill(r.id, id);
  r.bit.Set(bhbit::Bh);
  r.bit.Set(bhbit::Total);
  r.x = 100.5;
  r.sekt = CKorvoDbs::m_sek_noll;
  r.djup = djup;
  r.stopp = 91;
  r.symbol = 7;
  Fill(r.datum, L"24.12.2024");
  return r;
}

// Writes two records behind a new header, in the form `size`, and reads
// them back through the file; past the last one nothing is read.
std::vector<bhdbstype> WriteTwoAndReadBack(TestDbs* dbs, int size) {
  std::vector<bhdbstype> back(3);
  dbs->postlangd = size;
  dbs->ChangeReadWriteAccess(0);
  EXPECT_EQ(dbs->Dbs_rw(1000), 0);
  EXPECT_EQ(dbs->WriteRecord(Point(L"AB1", 5.5f), 500), 0);
  EXPECT_EQ(dbs->WriteRecord(Point(L"ÆØÅ", 12.25f), 500 + size), 0);
  dbs->dbsfil.Seek(500, CFile::begin);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(dbs->ReadRecord(&back[i]), i < 2 ? size : 0) << i;
  EXPECT_EQ(back[2].id[0], L'\0');
  EXPECT_EQ(dbs->Dbs_rw(1001), 0);
  return back;
}

// Short records lie at 500 and 562, long ones at 500 and 593.
TEST_F(DbsFileTest, RecordsFollowTheHeaderFrom500) {
  for (const int size : {62, 93}) {
    SCOPED_TRACE(size);
    std::filesystem::remove(dir.path() / "Korvodal.dbs");
    TestDbs dbs(&proj);
    MakeNewDatabase(&dbs);
    const std::vector<bhdbstype> back = WriteTwoAndReadBack(&dbs, size);
    const std::string file = dir.Read("Korvodal.dbs");
    ASSERT_EQ(file.size(), 500u + 2 * size);
    EXPECT_EQ(file.substr(408, 92), std::string(92, '\0'));
    EXPECT_EQ(file.substr(500, 9), std::string("AB1\0\0\0\0\0\0", 9));
    EXPECT_EQ(file.substr(500 + size, 9), std::string("\xC6\xD8\xC5\0\0\0\0\0\0", 9));
    const auto* second = reinterpret_cast<const uint8_t*>(file.data()) + 500 + size;
    EXPECT_EQ(korvo::DecodeFloat(second + 56), 12.25f);
    EXPECT_EQ(korvo::DecodeFixed16(second + 60), 91);
    EXPECT_EQ(back[0].pos, 500);
    EXPECT_EQ(back[1].pos, 500 + size);
    EXPECT_EQ(std::wstring(back[1].id), L"ÆØÅ");
    EXPECT_EQ(back[1].djup, 12.25f);
    EXPECT_EQ(back[1].sekt, 9999999.9);
    EXPECT_EQ(back[1].symbol, size == 93 ? 7 : -1);
    EXPECT_EQ(std::wstring(back[1].datum), size == 93 ? L"24.12.2024" : L"");
    if (size == 93) {
      EXPECT_EQ(file.substr(593 + 82, 11), std::string("24.12.2024\0", 11));
    }
  }
}

// The lock.

TEST_F(DbsFileTest, TheLockIsHeldFromOpenToClose) {
  TestDbs dbs(&proj);
  dbs.ChangeReadWriteAccess(0);
  ASSERT_EQ(dbs.Dbs_rw(1002), 0);
  EXPECT_TRUE(dbs.dbsfil.IsOpen());
  EXPECT_EQ(dir.Read("Korvodal.dbk"), "Database busy!");
  EXPECT_EQ(dbs.Dbs_rw(1001), 0);
  EXPECT_FALSE(dbs.dbsfil.IsOpen());
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
  EXPECT_EQ(dir.Read("Korvodal.dbs"), "");
  EXPECT_TRUE(dir.Exists("Korvodal.dbs"));
}

TEST_F(DbsFileTest, ALockThatStaysMakesTheOpenFailOneThatGoesLetsItOn) {
  dir.Write("Korvodal.dbs", std::string(408, '\0'));
  dir.Write("Korvodal.dbk", "someone else");
  TestDbs dbs(&proj);
  EXPECT_EQ(dbs.Dbs_rw(1000), -1);
  EXPECT_FALSE(dbs.dbsfil.IsOpen());
  EXPECT_EQ(dir.Read("Korvodal.dbk"), "someone else");  // not ours to remove
  EXPECT_TRUE(notices.messages.empty());

  std::thread other([this] {
    korvo::SleepMs(250);
    std::filesystem::remove(dir.path() / "Korvodal.dbk");
  });
  const int opened = dbs.Dbs_rw(1000);
  other.join();
  EXPECT_EQ(opened, 0);
  EXPECT_TRUE(dbs.dbsfil.IsOpen());
  EXPECT_EQ(dir.Read("Korvodal.dbk"), "Database busy!");
  EXPECT_EQ(dbs.Dbs_rw(1001), 0);
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
}

TEST_F(DbsFileTest, OpensThatFailLeaveNoLock) {
  TestDbs dbs(&proj);
  EXPECT_EQ(dbs.Dbs_rw(1000), -1);  // missing, without words
  EXPECT_EQ(dbs.Dbs_rw(1002), -1);  // read only makes none
  EXPECT_FALSE(dir.Exists("Korvodal.dbs"));
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
  EXPECT_TRUE(notices.messages.empty());

  dir.Write("Korvodal.dbs", "data");
  EXPECT_EQ(dbs.Dbs_rw(1003), -1);  // unknown modes
  EXPECT_EQ(dbs.Dbs_rw(0), -1);
  EXPECT_FALSE(dbs.dbsfil.IsOpen());
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
  EXPECT_EQ(dbs.Dbs_rw(1002), 0);  // read only opens an existing one
  char buf[8] = {};
  EXPECT_EQ(dbs.dbsfil.Read(buf, sizeof buf), 4u);
  EXPECT_EQ(dbs.Dbs_rw(1001), 0);
  EXPECT_TRUE(notices.messages.empty());

  dbs.ChangeReadWriteAccess(0);
  EXPECT_EQ(dbs.Dbs_rw(1002), -1);
  EXPECT_EQ(notices.messages, Texts{L"Databasen finns redan !"});
  EXPECT_FALSE(dbs.dbsfil.IsOpen());
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
  EXPECT_EQ(dir.Read("Korvodal.dbs"), "data");
}

TEST_F(DbsFileTest, ALockFileThatCannotBeMadeIsReported) {
  CProjPath nowhere;
  const std::wstring missing = dir.wpath() + korvo::kPathSeparator + L"missing";
  nowhere.SetPath(missing.c_str());
  TestDbs dbs(&nowhere);
  EXPECT_EQ(dbs.Dbs_rw(1000), -1);
  const std::wstring lock = missing + korvo::kPathSeparator + L"Korvodal.dbk";
  EXPECT_EQ(notices.messages, Texts{L"Failed to create a Lockfile " + lock +
                                    L"\nDo you have write access in this folder?"});
}

TEST_F(DbsFileTest, TheLockLiesInTheProjectAlsoForADatabaseElsewhere) {
  std::filesystem::create_directory(dir.path() / "sel");
  dir.Write("sel/Urval.dbs", std::string(408, '\0'));
  TestDbs dbs(&proj);
  const std::wstring selection =
      dir.wpath() + korvo::kPathSeparator + L"sel" + korvo::kPathSeparator + L"Urval.dbs";
  dbs.dbsfil.SetFilePath(selection.c_str());
  ASSERT_EQ(dbs.Dbs_rw(1000), 0);
  EXPECT_EQ(dbs.GetDbsFileName(), selection);
  EXPECT_TRUE(dir.Exists("Korvodal.dbk"));
  EXPECT_FALSE(dir.Exists("sel/Korvodal.dbk"));
  EXPECT_EQ(dbs.Dbs_rw(1001), 0);
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
}

// Several processes race for the lock at agreed moments; the losers then
// wake from their waits together and race again. Each holder writes "+" and
// then "-" to a shared log, so two holders at a time would show as "++".

constexpr int kChildren = 3;
constexpr int kRounds = 4;
constexpr int64_t kRoundMs = 400;  // room for the three to take turns
constexpr char kStartArg[] = "korvo-lock-start=";
constexpr char kDirArg[] = "korvo-lock-dir=";

void AppendToLog(const std::filesystem::path& log, const char* mark) {
  std::ofstream(log, std::ios::app | std::ios::binary) << mark << std::flush;
}

TEST(DbsLockRaceChild, HoldsTheLockAlone) {
  const std::string dir = korvo::test::ChildArgument(kDirArg);
  if (dir.empty()) GTEST_SKIP() << "started by DbsLockRace only";
  const int64_t start = std::stoll(korvo::test::ChildArgument(kStartArg));
  CProjPath proj;
  proj.SetPath(std::filesystem::path(dir).wstring().c_str());
  TestDbs dbs(&proj);
  const std::filesystem::path log = std::filesystem::path(dir) / "log.txt";
  int held = 0;
  for (int round = 0; round < kRounds; ++round) {
    korvo::test::WaitUntil(start + round * kRoundMs);
    if (dbs.Dbs_rw(1000) != 0) continue;
    AppendToLog(log, "+");
    korvo::SleepMs(2);
    AppendToLog(log, "-");
    ASSERT_EQ(dbs.Dbs_rw(1001), 0);
    ++held;
  }
  EXPECT_EQ(held, kRounds);
}

TEST(DbsLockRace, TwoProcessesNeverHoldItTogether) {
  TempDir dir;
  dir.Write("Korvodal.dbs", std::string(408, '\0'));
  // Time enough for every child to start, also under a sanitizer.
  const int64_t start = korvo::ClockMs() + 1500;
  const std::string args = kDirArg + dir.path().string() + " " + kStartArg + std::to_string(start);
  const std::vector<int> results = korvo::test::RunChildren(
      "DbsLockRaceChild.*", std::vector<std::string>(kChildren, args), dir.path());
  EXPECT_EQ(results, std::vector<int>(kChildren, 0));
  std::string pairs;
  for (int i = 0; i < kChildren * kRounds; ++i) pairs += "+-";
  EXPECT_EQ(dir.Read("log.txt"), pairs);
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
}

}  // namespace
