#include <csignal>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#ifdef __unix__
#include <sys/resource.h>
#endif

#include "korvo/context/proj_path.h"
#include "korvo/database/dbs_codec.h"
#include "korvo/database/dbs_format.h"
#include "korvo/database/korvo_dbs.h"
#include "korvo/foundation/messages.h"
#include "korvo/platform/env.h"
#include "korvo/testutil/notices.h"
#include "korvo/testutil/temp_dir.h"

namespace korvo {
namespace {

using test::Notices;
using test::TempDir;

bhdbstype Point(const wchar_t* id, bhbit::Flag kind, double x, double y, double z, float djup) {
  bhdbstype rec{};
  std::wcsncpy(rec.id, id, 8);
  rec.bit.Set(kind);
  rec.x = x;
  rec.y = y;
  rec.z = z;
  rec.sekt = CKorvoDbs::m_sek_noll;
  rec.djup = djup;
  return rec;
}

class DbsUpdateTest : public ::testing::Test {
 protected:
  // The notice `i` as "title|text".
  std::wstring Shown(size_t i) const {
    return notices.titles.at(i) + L"|" + notices.messages.at(i);
  }

  DbsUpdateTest() { proj.SetPath(dir.wpath().c_str()); }

  // An empty database in the project, written as SaveDbs makes a new one.
  void MakeDatabase(CKorvoDbs& dbs, const wchar_t* version = L"3.0") {
    dbs.ChangeReadWriteAccess(0);
    std::wcscpy(dbs.prjdat.Dbsver, version);
    ASSERT_EQ(dbs.SaveDbs(nullptr, 1), 0);
  }

  // Adds a point to the list and writes it as a document's save does.
  void Save(CKorvoDbs& dbs, const bhdbstype& rec) {
    bhdbstype copy = rec;
    ASSERT_EQ(dbs.Ny(1, &copy), 0);
    ASSERT_EQ(dbs.Uppdat(1, nullptr, 1), 0);
  }

  std::string File() const { return dir.Read("Korvodal.dbs"); }

  korvoprjdattype FileHeader() const {
    std::string bytes = File();
    bytes.resize(dbs::kHeaderSize);
    korvoprjdattype h{};
    DecodeDbsHeader(reinterpret_cast<const uint8_t*>(bytes.data()), &h);
    return h;
  }

  bhdbstype FileRecord(int pos, int size = dbs::kShortRecordSize) const {
    std::string bytes = File();
    bytes.resize(static_cast<size_t>(pos + size));
    bhdbstype rec{};
    DecodeDbsRecord(reinterpret_cast<const uint8_t*>(bytes.data()) + pos, size, &rec);
    return rec;
  }

  TempDir dir;
  CProjPath proj;
  Notices notices;
};

// antbh antavp antror antvb antlje antlad antmil antrader
std::vector<int> Counts(const korvoprjdattype& h) {
  return {h.antbh, h.antavp, h.antror, h.antvb, h.antlje, h.antlad, h.antmil, h.antrader};
}
// minx maxx miny maxy minz maxz minsekt maxsekt
std::vector<double> Bounds(const korvoprjdattype& h) {
  return {h.minx, h.maxx, h.miny, h.maxy, h.minz, h.maxz, h.minsekt, h.maxsekt};
}

TEST_F(DbsUpdateTest, NyZeroesAndMarksNoChainage) {
  CKorvoDbs dbs(&proj);
  ASSERT_EQ(dbs.Ny(1, nullptr), 0);
  EXPECT_EQ(dbs.pael->sekt, 9999999.9);
  bhdbstype zero{};
  zero.sekt = 9999999.9;
  EXPECT_EQ(std::memcmp(dbs.pael, &zero, sizeof zero), 0);
  bhdbstype rec = Point(L"P2", bhbit::Bh, 1, 2, 3, 4);
  rec.sekt = 12.5;
  ASSERT_EQ(dbs.Ny(0, &rec), 0);  // before the current one, a whole copy
  EXPECT_EQ(dbs.pael->sekt, 12.5);
  EXPECT_STREQ(dbs.pael->id, L"P2");
  dbs++;
  EXPECT_EQ(dbs.pael->sekt, 9999999.9);
}

TEST_F(DbsUpdateTest, SavingAnEmptyListWritesTheStartingBounds) {
  CKorvoDbs dbs(&proj);
  MakeDatabase(dbs);
  EXPECT_EQ(File().size(), 408u);
  const korvoprjdattype h = FileHeader();
  const double lo = 1.7976931348623157e308, hi = 2.2250738585072014e-308;
  EXPECT_EQ(Bounds(h), (std::vector<double>{lo, hi, lo, hi, lo, hi, lo, hi}));
  EXPECT_EQ(h.slutpos, 500);
  EXPECT_EQ(h.uppdnrfil, 0);
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
}

TEST_F(DbsUpdateTest, FirstPointOfAnEmptyDatabase) {
  CKorvoDbs dbs(&proj);
  MakeDatabase(dbs);
  Save(dbs, Point(L"ab1", bhbit::Bh, 6500100.5, 150200.25, 12.5, 7.5f));

  EXPECT_STREQ(dbs.pael->id, L"AB1");
  EXPECT_EQ(dbs.pael->pos, 500);
  const korvoprjdattype h = FileHeader();
  EXPECT_EQ(h.slutpos, 562);
  EXPECT_EQ(Counts(h), (std::vector<int>{1, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(h.uppdnrfil, 1);
  EXPECT_EQ(dbs.prjdat.uppdnrfil, 1);
  // minz is the bottom of the point
  EXPECT_EQ(Bounds(h), (std::vector<double>{6500100.5, 6500100.5, 150200.25, 150200.25, 5.0, 12.5,
                                            9999999.9, 9999999.9}));
  EXPECT_EQ(h.harguid, 1);
  EXPECT_NE(h.guid[0] | h.guid[1] | h.guid[2] | h.guid[10], 0u);
  const bhdbstype r = FileRecord(500);
  EXPECT_STREQ(r.id, L"AB1");
  EXPECT_TRUE(r.bit.Test(bhbit::Bh));
  EXPECT_EQ(r.djup, 7.5f);
  EXPECT_EQ(File().size(), 562u);
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
  EXPECT_TRUE(notices.messages.empty());
  // The guid is made once and kept.
  Save(dbs, Point(L"P2", bhbit::Bh, 2, 2, 2, 1));
  EXPECT_EQ(std::memcmp(h.guid, FileHeader().guid, sizeof h.guid), 0);
  EXPECT_EQ(FileHeader().uppdnrfil, 2);
}

TEST_F(DbsUpdateTest, CountsByKindAndBoundsOverAllPoints) {
  CKorvoDbs dbs(&proj);
  MakeDatabase(dbs);
  Save(dbs, Point(L"B1", bhbit::Bh, 10, 20, 5, 2));
  bhdbstype avp = Point(L"A1", bhbit::Avp, 30, 10, 1, 0);
  std::wcscpy(avp.kod, L"KP");  // no depth: its ground level counts
  avp.sekt = 100.0;
  Save(dbs, avp);
  bhdbstype pipe = Point(L"R1", bhbit::Dpt, 5, 25, 8, 9);
  pipe.bit.b[0] = 0;
  pipe.bit.SetValue(bhbit::Ror, bhbit::RorGv);
  pipe.bit.Set(bhbit::Mil);
  Save(dbs, pipe);
  Save(dbs, Point(L"V1", bhbit::Vb, 12, 12, 4, 0));
  Save(dbs, Point(L"L1", bhbit::Lje, 12, 12, 4, 0));
  Save(dbs, Point(L"S1", bhbit::Lad, 12, 12, 4, 0));

  const korvoprjdattype h = FileHeader();
  EXPECT_EQ(Counts(h), (std::vector<int>{1, 1, 1, 1, 1, 1, 1, 0}));
  EXPECT_EQ(h.slutpos, 500 + 6 * 62);
  EXPECT_EQ(h.uppdnrfil, 6);
  // minz from the pipe: 8 - 9
  EXPECT_EQ(Bounds(h), (std::vector<double>{5, 30, 10, 25, -1, 8, 100, 9999999.9}));
  EXPECT_STREQ(FileRecord(562).kod, L"KP");
}

TEST_F(DbsUpdateTest, LongRecordsFromVersionFour) {
  CKorvoDbs dbs(&proj);
  MakeDatabase(dbs, L"4.0");
  bhdbstype rec = Point(L"P1", bhbit::Bh, 1, 2, 3, 4);
  rec.symbol = 1073741889;
  std::wcscpy(rec.datum, L"01.02.2024");
  Save(dbs, rec);
  Save(dbs, Point(L"P2", bhbit::Bh, 1, 2, 3, 4));
  EXPECT_EQ(dbs.postlangd, 93);
  EXPECT_EQ(FileHeader().slutpos, 500 + 2 * 93);
  const bhdbstype r = FileRecord(500, 93);
  EXPECT_EQ(r.symbol, 1073741889);
  EXPECT_STREQ(r.datum, L"01.02.2024");
  EXPECT_STREQ(FileRecord(593, 93).id, L"P2");
}

TEST_F(DbsUpdateTest, ModesWriteTheRecordOrTheHeaderOrBoth) {
  CKorvoDbs dbs(&proj);
  MakeDatabase(dbs);
  Save(dbs, Point(L"P1", bhbit::Bh, 1, 2, 3, 4));
  dbs.pael->x = 99.0;
  ASSERT_EQ(dbs.Uppdat(0, nullptr, 1), 0);  // the record only
  EXPECT_EQ(dbs.prjdat.uppdnrfil, 2);
  EXPECT_EQ(FileHeader().uppdnrfil, 1);
  EXPECT_EQ(FileRecord(500).x, 99.0);
  EXPECT_EQ(FileHeader().maxx, 1.0);
  dbs.pael->x = 50.0;
  std::wcscpy(dbs.prjdat.Prjnamn, L"Vägen");
  ASSERT_EQ(dbs.Uppdat(4, nullptr, 1), 0);  // the header only
  EXPECT_STREQ(FileHeader().Prjnamn, L"Vägen");
  EXPECT_EQ(FileHeader().maxx, 1.0);
  EXPECT_EQ(FileRecord(500).x, 99.0);
  ASSERT_EQ(dbs.Uppdat(2, nullptr, 1), 0);  // bounds and header
  EXPECT_EQ(FileHeader().maxx, 50.0);
  EXPECT_EQ(FileRecord(500).x, 99.0);
  EXPECT_EQ(FileHeader().uppdnrfil, 4);
}

TEST_F(DbsUpdateTest, MissingReadOnlyOrExistingFilesAreRefusedWithTheirReasons) {
  CKorvoDbs dbs(&proj);
  dbs.ChangeReadWriteAccess(0);
  dbs.Ny(1, nullptr);
  EXPECT_EQ(dbs.Uppdat(1, nullptr, 1), -3);
  const std::wstring cannot = L"Uppdatering av Brenmark - databas|Kan ikke opne database : ";
  ASSERT_EQ(notices.messages.size(), 1u);
  EXPECT_EQ(Shown(0), cannot + dir.File("Korvodal.dbs"));
  EXPECT_EQ(dbs.pael->pos, 0);
  EXPECT_FALSE(dir.Exists("Korvodal.dbs"));
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));

  MakeDatabase(dbs);
  const std::string before = File();
  EXPECT_EQ(dbs.SaveDbs(nullptr, 1), -1);
  ASSERT_EQ(notices.messages.size(), 3u);
  EXPECT_EQ(Shown(1), L"Korvo|Databasen finns redan !");
  EXPECT_EQ(Shown(2), L"Uppdatering av ABrenmark - databas|Kan ikke opne database : " +
                          dir.File("Korvodal.dbs") + L"\n");

  dbs.ChangeReadWriteAccess(1);
  EXPECT_EQ(dbs.Uppdat(1, nullptr, 1), -3);
  EXPECT_EQ(File(), before);
  ASSERT_EQ(notices.messages.size(), 4u);
  EXPECT_EQ(Shown(3), cannot + dir.File("Korvodal.dbs") + L"\nBehörighet: Read only !");
  EXPECT_EQ(dbs.Delete(), -1);
  EXPECT_EQ(dbs.antal, 1);
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
}

#ifdef __unix__
// Files may not grow beyond `bytes` while it lives; the signal that the
// system sends at the limit is ignored, so that the write just fails.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &old_);
    rlimit limit = old_;
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
    old_handler_ = std::signal(SIGXFSZ, SIG_IGN);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &old_);
    std::signal(SIGXFSZ, old_handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit old_;
  void (*old_handler_)(int);
};

TEST_F(DbsUpdateTest, AFailedWriteIsReportedAndUndone) {
  CKorvoDbs dbs(&proj);
  MakeDatabase(dbs);
  bhdbstype rec = Point(L"P1", bhbit::Bh, 1, 2, 3, 4);
  dbs.Ny(1, &rec);
  {
    FileSizeLimit full(450);  // the header fits, a record at 500 does not
    EXPECT_EQ(dbs.Uppdat(1, nullptr, 1), -3);
  }
  ASSERT_EQ(notices.messages.size(), 1u);
  EXPECT_EQ(Shown(0).rfind(L"Uppdatering av Brenmark - databas|Kan ikke skrive database : " +
                               dir.File("Korvodal.dbs") + L"\n",
                           0),
            0u)
      << Shown(0);
  EXPECT_EQ(dbs.pael->pos, 0);  // still new
  EXPECT_EQ(dbs.prjdat.slutpos, 500);
  EXPECT_EQ(dbs.prjdat.antbh, 0);
  EXPECT_EQ(dbs.prjdat.uppdnrfil, 0);
  EXPECT_EQ(FileHeader().uppdnrfil, 0);
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
  // Once there is room again the same record goes where it was meant to.
  EXPECT_EQ(dbs.Uppdat(1, nullptr, 1), 0);
  EXPECT_EQ(dbs.pael->pos, 500);
  EXPECT_EQ(FileHeader().uppdnrfil, 1);
}
#endif

TEST_F(DbsUpdateTest, ManyWritesUnderOneLock) {
  CKorvoDbs dbs(&proj);
  MakeDatabase(dbs);
  ASSERT_EQ(dbs.BeginUpdate(), 0);
  EXPECT_TRUE(dir.Exists("Korvodal.dbk"));
  EXPECT_EQ(dbs.uppdaterar, 1);
  Save(dbs, Point(L"P1", bhbit::Bh, 1, 2, 3, 4));
  Save(dbs, Point(L"P2", bhbit::Bh, 1, 2, 3, 4));
  EXPECT_TRUE(dir.Exists("Korvodal.dbk"));
  EXPECT_EQ(dbs.EndUpdate(), 0);
  EXPECT_EQ(dbs.uppdaterar, 0);
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
  EXPECT_EQ(FileHeader().uppdnrfil, 2);
  EXPECT_EQ(FileHeader().slutpos, 624);
  EXPECT_STREQ(FileRecord(562).id, L"P2");
}

TEST_F(DbsUpdateTest, ASelectionHeldOpenTakesRecordsWithoutHeaders) {
  CKorvoDbs dbs(&proj);
  MakeDatabase(dbs);
  const std::wstring path = dir.File("Korvodal.dbs");
  EXPECT_EQ(dbs.SaveSelection(1000, path.c_str()), 1);
  EXPECT_EQ(dbs.uppdaterar, 1);
  bhdbstype rec = Point(L"P1", bhbit::Bh, 1, 2, 3, 4);
  dbs.Ny(1, &rec);
  EXPECT_EQ(dbs.Uppdat(1, nullptr, 0), 0);
  EXPECT_EQ(dbs.SaveSelection(1001, path.c_str()), 1);
  EXPECT_EQ(dbs.uppdaterar, 0);
  EXPECT_STREQ(FileRecord(500).id, L"P1");
  EXPECT_EQ(FileHeader().slutpos, 500);  // the header is the caller's business
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
}

// Deleting.

class DbsDeleteTest : public DbsUpdateTest {
 protected:
  void SetUp() override {
    MakeDatabase(dbs);
    Save(dbs, Point(L"P1", bhbit::Bh, 1, 2, 3, 4));
    bhdbstype pipe = Point(L"P2", bhbit::Dpt, 1, 2, 3, 4);
    pipe.bit.b[0] = 0;
    pipe.bit.SetValue(bhbit::Ror, bhbit::RorPz);
    pipe.bit.Set(bhbit::Mil);
    Save(dbs, pipe);
    Save(dbs, Point(L"P3", bhbit::Vb, 1, 2, 3, 4));
  }

  // Makes the record named `id` current.
  void Go(const wchar_t* id) {
    wchar_t name[9];
    std::wcscpy(name, id);
    ASSERT_EQ(dbs.Findid(name, -1), 0);
  }

  CKorvoDbs dbs{&proj};
};

TEST_F(DbsDeleteTest, TheLastRecordGivesItsPlaceBack) {
  Go(L"P3");
  EXPECT_EQ(dbs.Delete(), 0);  // the cursor goes back to P2
  EXPECT_STREQ(dbs.pael->id, L"P2");
  const korvoprjdattype h = FileHeader();
  EXPECT_EQ(h.slutpos, 624);
  EXPECT_EQ(Counts(h), (std::vector<int>{1, 0, 1, 0, 0, 0, 1, 0}));
  EXPECT_EQ(h.uppdnrfil, 4);
  const bhdbstype r = FileRecord(624);
  EXPECT_STREQ(r.id, L"");
  EXPECT_TRUE(r.bit.Test(bhbit::Vb));  // the other bytes stay
  EXPECT_EQ(dbs.antal, 2);
}

TEST_F(DbsDeleteTest, AnyOtherLeavesAHole) {
  Go(L"P2");
  EXPECT_EQ(dbs.Delete(), 0);
  EXPECT_STREQ(dbs.pael->id, L"P3");
  const korvoprjdattype h = FileHeader();
  EXPECT_EQ(h.slutpos, 686);
  EXPECT_EQ(Counts(h), (std::vector<int>{1, 0, 0, 1, 0, 0, 0, 1}));
  EXPECT_STREQ(FileRecord(562).id, L"");
  EXPECT_STREQ(FileRecord(624).id, L"P3");
}

TEST_F(DbsDeleteTest, ARecordNeverWrittenTouchesNeitherFileNorCounts) {
  const std::string before = File();
  dbs.Ny(1, nullptr);
  std::wcscpy(dbs.pael->id, L"NEW");
  const korvoprjdattype header = dbs.prjdat;
  EXPECT_EQ(dbs.Delete(), 0);
  EXPECT_EQ(File(), before);
  EXPECT_EQ(std::memcmp(&header, &dbs.prjdat, sizeof header), 0);
  EXPECT_EQ(dbs.antal, 3);
  Go(L"P1");  // DeletePost leaves the file alone
  EXPECT_EQ(dbs.DeletePost(), 0);
  EXPECT_EQ(File(), before);
  EXPECT_EQ(dbs.antal, 2);
}

TEST_F(DbsDeleteTest, DeleteIdRemovesThePointsFilesUnlessReadOnly) {
  std::filesystem::create_directory(dir.path() / "Dbf");
  for (const char* name :
       {"Dbf/P1.SND", "Dbf/p1.tlk", "Dbf/P1", "Dbf/P11.SND", "Dbf/P2.SND", "Dbf/P3.SND"}) {
    dir.Write(name, "x");
  }
  Go(L"P3");
  dbs.ChangeReadWriteAccess(1);
  EXPECT_EQ(dbs.DeleteId(), -1);
  EXPECT_TRUE(dir.Exists("Dbf/P3.SND"));
  EXPECT_EQ(dbs.antal, 3);
  dbs.ChangeReadWriteAccess(0);
  Go(L"P1");
  EXPECT_EQ(dbs.DeleteId(), 0);
  for (const char* gone : {"Dbf/P1.SND", "Dbf/p1.tlk", "Dbf/P1"}) EXPECT_FALSE(dir.Exists(gone));
  EXPECT_TRUE(dir.Exists("Dbf/P11.SND"));
  EXPECT_TRUE(dir.Exists("Dbf/P2.SND"));
  EXPECT_EQ(FileHeader().antrader, 1);
  // The only record left has its files removed all the same.
  Go(L"P2");
  dbs.DeletePost();
  Go(L"P3");
  EXPECT_EQ(dbs.DeleteId(), 0);
  EXPECT_EQ(dbs.antal, 0);
  EXPECT_FALSE(dir.Exists("Dbf/P3.SND"));
}

TEST_F(DbsDeleteTest, DeleteIdOfAnAvpPointRewritesTheAvpFile) {
  bhdbstype avp = Point(L"A1", bhbit::Avp, 6500000.1234, 150000.5, -2.25, 0);
  std::wcscpy(avp.kod, L"KP");
  avp.sekt = 1200.0;
  avp.avst = -3.5;
  Save(dbs, avp);
  Save(dbs, Point(L"A2", bhbit::Avp, 1, 2, 3, 0));
  Go(L"A2");
  EXPECT_EQ(dbs.DeleteId(), 0);
  EXPECT_EQ(dir.Read("Avp.txt"),
            "A1  6500000.123   150000.500       -2.250     1200.000       -3.500 KP\r\n*\r\n");
}

// Rewriting whole files.

TEST_F(DbsDeleteTest, SaveDbsOfAShorterList) {
  Go(L"P1");
  dbs.DeletePost();
  ASSERT_EQ(dbs.SaveDbs(nullptr, 0), 0);
  const korvoprjdattype h = FileHeader();
  EXPECT_EQ(h.slutpos, 624);
  EXPECT_EQ(Counts(h), (std::vector<int>{0, 0, 1, 1, 0, 0, 1, 0}));
  EXPECT_EQ(h.uppdnrfil, 4);
  EXPECT_STREQ(FileRecord(500).id, L"P2");
  EXPECT_STREQ(FileRecord(562).id, L"P3");
  EXPECT_STREQ(FileRecord(624).id, L"P3");  // the old tail stays behind slutpos
  EXPECT_EQ(File().size(), 686u);
  dbs.Home();
  EXPECT_EQ(dbs.pael->pos, 500);
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
}

TEST_F(DbsDeleteTest, SaveDbsRefusesAFileThatChangedSinceItWasRead) {
  CKorvoDbs other(&proj);
  other.ChangeReadWriteAccess(0);
  other.prjdat = dbs.prjdat;
  Save(other, Point(L"X1", bhbit::Bh, 1, 2, 3, 4));
  const std::string before = File();
  EXPECT_EQ(dbs.SaveDbs(nullptr, 0), -1);
  EXPECT_EQ(File(), before);
  ASSERT_FALSE(notices.messages.empty());
  EXPECT_EQ(Shown(notices.messages.size() - 1),
            L"Innlesning av Brenmark - databas|Fel vid uppdatering av databasen (uppdnr=4/3)");
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
}

}  // namespace
}  // namespace korvo
