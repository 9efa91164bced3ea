// The road of a change from end to end: a document saved, its record in a
// fresh open; two users writing one project; a selection kept up to date.
#include <algorithm>
#include <cstring>
#include <cwchar>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "korvo/context/proj_path.h"
#include "korvo/database/korvo_dbs.h"
#include "korvo/foundation/messages.h"
#include "korvo/platform/env.h"
#include "korvo/soundings/basic_methods.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/testutil/children.h"
#include "korvo/testutil/notices.h"
#include "korvo/testutil/temp_dir.h"

namespace korvo {
namespace {

using test::ChildArgument;
using test::Notices;
using test::TempDir;

// Opens the project's database afresh for reading and writing.
int Open(CKorvoDbs& dbs) {
  return dbs.Init(std::wstring(), 0, 0, nullptr);
}

// Makes the project's database, empty.
void Create(CProjPath& proj) {
  CKorvoDbs dbs(&proj);
  ASSERT_EQ(dbs.Init(std::wstring(), 0, 1, nullptr), 0);
}

bhdbstype* Find(CKorvoDbs& dbs, const wchar_t* id) {
  wchar_t name[9];
  std::wcsncpy(name, id, 8);
  name[8] = L'\0';
  return dbs.Findid(name, -1) == 0 ? dbs.pael : nullptr;
}

// Adds a borehole to the list and writes it, as a document's save does.
int SavePoint(CKorvoDbs& dbs, const wchar_t* id, double x) {
  if (dbs.Ny(1, nullptr) != 0) return -1;
  std::wcsncpy(dbs.pael->id, id, 8);
  dbs.pael->bit.Set(bhbit::Bh);
  dbs.pael->x = x;
  return dbs.Uppdat(1, nullptr, 1);
}

class DbsFlowTest : public ::testing::Test {
 protected:
  DbsFlowTest() {
    proj.SetPath(dir.wpath().c_str());
    std::filesystem::create_directory(dir.path() / "Dbf");
    Create(proj);
  }

  TempDir dir;
  CProjPath proj;
  Notices notices;
};

TEST_F(DbsFlowTest, ASavedDocumentShowsInAFreshOpen) {
  CKorvoDbs dbs(&proj);
  ASSERT_EQ(Open(dbs), 0);
  {
    CKorvoSnd snd(&proj, &dbs);
    std::wcscpy(snd.id, L"bh7");
    snd.x = 6500100.0;
    snd.y = 150200.0;
    snd.z = 21.5;
    ASSERT_EQ(snd.New(21), 1);
    snd.m_dreie->stopp = 93;
    for (float djup : {1.0f, 4.5f, 8.25f}) {
      dreietype row{};
      row.djup = djup;
      snd.m_dreie->Ny(1, &row);
    }
    ASSERT_EQ(snd.Uppdat(nullptr, nullptr), 0);
  }
  EXPECT_TRUE(dir.Exists("Dbf/BH7.SND"));

  CKorvoDbs fresh(&proj);
  ASSERT_EQ(Open(fresh), 0);
  ASSERT_EQ(fresh.antal, 1);
  const bhdbstype* rec = Find(fresh, L"BH7");
  ASSERT_NE(rec, nullptr);
  EXPECT_TRUE(rec->bit.Test(bhbit::Bh) && rec->bit.Test(bhbit::Dreie));
  EXPECT_FALSE(rec->bit.Test(bhbit::Total));
  EXPECT_EQ(rec->djup, 8.25f);
  EXPECT_EQ(rec->stopp, 93);
  EXPECT_EQ(rec->x, 6500100.0);
  EXPECT_EQ(rec->pos, 500);
  EXPECT_EQ(fresh.prjdat.antbh, 1);
  EXPECT_EQ(fresh.prjdat.uppdnrfil, 1);
  EXPECT_EQ(fresh.prjdat.slutpos, 562);
  EXPECT_EQ(fresh.prjdat.minz, 21.5 - 8.25);
  EXPECT_EQ(fresh.prjdat.harguid, 1);
  EXPECT_TRUE(notices.messages.empty());
}

TEST_F(DbsFlowTest, AWriterMergesWhatAnotherUserWroteFirst) {
  CKorvoDbs first(&proj);
  CKorvoDbs second(&proj);
  ASSERT_EQ(Open(first), 0);
  ASSERT_EQ(Open(second), 0);
  ASSERT_EQ(SavePoint(first, L"A1", 1.0), 0);
  ASSERT_EQ(SavePoint(second, L"B1", 2.0), 0);  // sees number 1 against its 0
  ASSERT_EQ(notices.messages.size(), 1u);
  EXPECT_EQ(notices.messages[0], L"Fel vid uppdatering av databasen (uppdnr=1/0)");
  EXPECT_EQ(second.antal, 2);  // A1 came in with the merge
  EXPECT_EQ(second.prjdat.uppdnrfil, 2);

  CKorvoDbs fresh(&proj);
  ASSERT_EQ(Open(fresh), 0);
  EXPECT_EQ(fresh.antal, 2);
  ASSERT_NE(Find(fresh, L"A1"), nullptr);
  EXPECT_EQ(fresh.pael->pos, 500);
  ASSERT_NE(Find(fresh, L"B1"), nullptr);
  EXPECT_EQ(fresh.pael->pos, 562);
  EXPECT_EQ(fresh.prjdat.antbh, 2);
  EXPECT_EQ(fresh.prjdat.uppdnrfil, 2);
}

// Two processes save points into one project at the same moments. Each
// writes its own points; the lock and the update number must keep every one.

constexpr int kWriters = 2;
constexpr int kPointsEach = 6;
constexpr int64_t kRoundMs = 150;
constexpr char kDirArg[] = "korvo-writer-dir=";
constexpr char kStartArg[] = "korvo-writer-start=";
constexpr char kNameArg[] = "korvo-writer-name=";

TEST(DbsWriterChild, SavesItsPoints) {
  const std::string dir = ChildArgument(kDirArg);
  if (dir.empty()) GTEST_SKIP() << "started by DbsTwoWriters only";
  const int64_t start = std::stoll(ChildArgument(kStartArg));
  const std::wstring name = std::filesystem::path(ChildArgument(kNameArg)).wstring();
  Notices quiet;
  CProjPath proj;
  proj.SetPath(std::filesystem::path(dir).wstring().c_str());
  CKorvoDbs dbs(&proj);
  test::WaitUntil(start);
  ASSERT_EQ(Open(dbs), 0);
  for (int i = 0; i < kPointsEach; ++i) {
    test::WaitUntil(start + (i + 1) * kRoundMs);
    const std::wstring id = name + std::to_wstring(i);
    EXPECT_EQ(SavePoint(dbs, id.c_str(), i), 0) << i;
  }
}

TEST(DbsTwoWriters, SavingIntoOneProjectAtOnceLosesNothing) {
  TempDir dir;
  CProjPath proj;
  proj.SetPath(dir.wpath().c_str());
  Create(proj);
  const int64_t start = ClockMs() + 1500;  // every child is running by then
  const std::string args =
      kDirArg + dir.path().string() + " " + kStartArg + std::to_string(start) + " " + kNameArg;
  EXPECT_EQ(test::RunChildren("DbsWriterChild.*", {args + "A", args + "B"}, dir.path()),
            std::vector<int>(kWriters, 0));

  CKorvoDbs dbs(&proj);
  ASSERT_EQ(Open(dbs), 0);
  EXPECT_EQ(dbs.antal, kWriters * kPointsEach);
  std::vector<int32_t> places;
  for (const wchar_t* name : {L"A", L"B"}) {
    for (int i = 0; i < kPointsEach; ++i) {
      const std::wstring id = name + std::to_wstring(i);
      const bhdbstype* rec = Find(dbs, id.c_str());
      ASSERT_NE(rec, nullptr) << "lost " << std::string(id.begin(), id.end());
      places.push_back(rec->pos);
    }
  }
  std::sort(places.begin(), places.end());
  for (size_t i = 0; i < places.size(); ++i) EXPECT_EQ(places[i], 500 + 62 * static_cast<int>(i));
  EXPECT_EQ(dbs.prjdat.antbh, kWriters * kPointsEach);
  EXPECT_EQ(dbs.prjdat.uppdnrfil, kWriters * kPointsEach);
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
}

// Selections.

class DbsSelectionTest : public DbsFlowTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(Open(project), 0);
    for (const wchar_t* id : {L"P1", L"P2", L"P3", L"P4"}) {
      ASSERT_EQ(SavePoint(project, id, 10.0), 0);
    }
    // The selection: a copy of the project's file with P2 and P3 only.
    CKorvoDbs all(&proj);
    ASSERT_EQ(Open(all), 0);
    Find(all, L"P1");
    all.DeletePost();
    Find(all, L"P4");
    all.DeletePost();
    ASSERT_EQ(all.SaveDbs(selection.data(), 1), 0);
  }

  // The selection as a fresh open shows it.
  void ReadSelection(CKorvoDbs& s) { ASSERT_EQ(s.Init(selection, 1, 0, nullptr), 0); }

  CKorvoDbs project{&proj};
  std::wstring selection = dir.File("URVAL.DBS");
};

TEST_F(DbsSelectionTest, NothingChangedLeavesTheFileUnwritten) {
  // The selection was made from the same header: it has the GUID already.
  CKorvoDbs s(&proj);
  ReadSelection(s);
  const std::string before = dir.Read("URVAL.DBS");
  EXPECT_EQ(project.UppdUrval(selection), 0);
  EXPECT_EQ(dir.Read("URVAL.DBS"), before);
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
  // A missing selection is left alone.
  EXPECT_EQ(project.UppdUrval(dir.File("NONE.DBS")), 0);
  EXPECT_FALSE(dir.Exists("NONE.DBS"));
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
}

TEST_F(DbsSelectionTest, ChangedPointsAreCopiedAndLostOnesLeave) {
  Find(project, L"P2");
  project.pael->x = 77.0;
  project.pael->djup = 3.5f;
  ASSERT_EQ(project.Uppdat(1, nullptr, 1), 0);
  Find(project, L"P3");
  ASSERT_EQ(project.Delete(), 0);

  EXPECT_EQ(project.UppdUrval(selection), 0);
  CKorvoDbs s(&proj);
  ReadSelection(s);
  EXPECT_EQ(s.antal, 1);
  const bhdbstype* p2 = Find(s, L"P2");
  ASSERT_NE(p2, nullptr);
  EXPECT_EQ(p2->x, 77.0);
  EXPECT_EQ(p2->djup, 3.5f);
  EXPECT_EQ(p2->pos, 500);
  EXPECT_EQ(Find(s, L"P3"), nullptr);
  EXPECT_EQ(s.prjdat.antbh, 1);
  EXPECT_EQ(std::memcmp(s.prjdat.guid, project.prjdat.guid, sizeof s.prjdat.guid), 0);
  EXPECT_TRUE(notices.messages.empty());
}

}  // namespace
}  // namespace korvo
