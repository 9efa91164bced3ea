#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <cwchar>
#include <string>
#include <utility>
#include <vector>

#include "korvo/context/proj_path.h"
#include "korvo/database/korvo_dbs.h"
#include "korvo/foundation/coding.h"
#include "korvo/foundation/messages.h"
#include "korvo/testutil/notices.h"
#include "korvo/testutil/temp_dir.h"

namespace {

using korvo::test::TempDir;

class TestDbs : public CKorvoDbs {
 public:
  using CKorvoDbs::CKorvoDbs;
  using CKorvoDbs::Dbs_rw;
  using CKorvoDbs::DbsSync;
};

using Texts = std::vector<std::wstring>;

using Bits = std::array<uint8_t, 7>;
constexpr Bits kBh{0x01, 0, 0, 0, 0, 0, 0};
constexpr Bits kAvp{0x02, 0, 0, 0, 0, 0, 0};
constexpr Bits kPipe{0, 0, 0x04, 0, 0, 0, 0};
constexpr Bits kVb{0, 0x80, 0, 0, 0, 0, 0};
constexpr Bits kBhLje{0x09, 0, 0, 0, 0, 0, 0};
constexpr Bits kBhAvp{0x03, 0, 0, 0, 0, 0, 0};
constexpr Bits kNone{0, 0, 0, 0, 0, 0, 0};

// A database file put together byte by byte: the header fields that opening
// looks at, and records in the form of `record_size` bytes from offset 500.
// Records added with Add count in the header's antbh, antror and antvb and
// move slutpos; the others lie in the file without the header knowing.
class DbsBytes {
 public:
  explicit DbsBytes(const std::string& version, int record_size = 62, double verdel = 0.0)
      : bytes_(500, '\0'), size_(record_size) {
    std::memcpy(&bytes_[0], version.data(), version.size());
    SetF64(292, verdel);
    SetI32(324, 500);
  }

  DbsBytes& Add(const std::string& id, const Bits& bits, double x = 0.0) {
    Append(id, bits, x);
    SetI32(324, static_cast<int>(bytes_.size()));
    if (bits[0] & 0x01) SetI16(216, I16(216) + 1);
    if (bits[2] & 0x0E) SetI16(224, I16(224) + 1);
    if (bits[1] & 0x80) SetI16(226, I16(226) + 1);
    return *this;
  }
  // A slot of a deleted record inside the records: zeros, or a name cleared.
  DbsBytes& AddDeleted() {
    Append("", kBh, 1.0);
    SetI32(324, static_cast<int>(bytes_.size()));
    return *this;
  }
  // A record that the header does not count.
  DbsBytes& AddUncounted(const std::string& id, const Bits& bits, bool inside = true) {
    Append(id, bits, 2.0);
    if (inside) SetI32(324, static_cast<int>(bytes_.size()));
    return *this;
  }
  DbsBytes& Tail(const std::string& bytes) {
    bytes_ += bytes;
    return *this;
  }

  void SetI16(int at, int v) { korvo::EncodeFixed16(Data(at), static_cast<uint16_t>(v)); }
  void SetI32(int at, int v) { korvo::EncodeFixed32(Data(at), static_cast<uint32_t>(v)); }
  void SetF64(int at, double v) { korvo::EncodeDouble(Data(at), v); }
  int I16(int at) { return static_cast<int16_t>(korvo::DecodeFixed16(Data(at))); }

  const std::string& bytes() const { return bytes_; }

 private:
  uint8_t* Data(int at) { return reinterpret_cast<uint8_t*>(&bytes_[static_cast<size_t>(at)]); }
  void Append(const std::string& id, const Bits& bits, double x) {
    const size_t at = bytes_.size();
    bytes_.resize(at + static_cast<size_t>(size_), '\0');
    std::memcpy(&bytes_[at], id.data(), id.size());
    std::memcpy(&bytes_[at + 9], bits.data(), bits.size());
    SetF64(static_cast<int>(at) + 16, x);
    // A depth of 7.5 in every record, so that a moved record can be told.
    korvo::EncodeFloat(Data(static_cast<int>(at) + 56), 7.5f);
  }

  std::string bytes_;
  int size_;
};

struct Row {
  std::wstring id;
  int pos;
  bool operator==(const Row&) const = default;
};

std::vector<Row> Rows(CKorvoDbs& dbs) {
  std::vector<Row> rows;
  if (dbs.Home() == 0) {
    do {
      rows.push_back({dbs.pael->id, dbs.pael->pos});
    } while (dbs++);
  }
  return rows;
}

class DbsOpenTest : public ::testing::Test {
 protected:
  DbsOpenTest() { proj.SetPath(dir.wpath().c_str()); }

  void WriteDbs(const DbsBytes& b) { dir.Write("Korvodal.dbs", b.bytes()); }
  std::string FileBytes() { return dir.Read("Korvodal.dbs"); }
  int Open(CKorvoDbs* dbs, int behorighet) { return dbs->Init(behorighet, 0, nullptr, nullptr); }

  TempDir dir;
  CProjPath proj;
  korvo::test::Notices notices;
};

// --- Versions ---------------------------------------------------------------

std::wstring Wide(const char* text) {
  return std::wstring(text, text + std::strlen(text));
}

// A version that is no number is told as 0.0; a refused one of the long
// records is told that 4.0 holds.
TEST_F(DbsOpenTest, OpensOrRefusesByTheVersion) {
  const struct {
    const char* text;
    double verdel;
    int record_size;
    bool opens;
  } cases[] = {{"3.0", 0.0, 62, true},  {"2.9", 0.0, 62, true},  {"3.1", 0.0, 62, true},
               {"3.0", 0.1, 62, true},  {"3.2", 0.0, 62, false}, {"2.5", 0.0, 62, false},
               {"1.9", 0.0, 62, false}, {"4.0", 0.0, 93, true},  {"4.1", 0.0, 93, true},
               {"4.2", 0.0, 93, false}, {"x.y", 0.0, 62, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.text) + " " + std::to_string(c.verdel));
    notices.Clear();
    DbsBytes b(c.text, c.record_size, c.verdel);
    b.Add("P1", kBh, 11.0).Add("P2", kBh, 22.0);
    WriteDbs(b);
    CKorvoDbs dbs(&proj);
    EXPECT_EQ(Open(&dbs, 0), c.opens ? 0 : -1);
    EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
    EXPECT_EQ(FileBytes(), b.bytes());
    if (c.opens) {
      EXPECT_TRUE(notices.messages.empty());
      EXPECT_EQ(dbs.postlangd, c.record_size);
      ASSERT_EQ(Rows(dbs), (std::vector<Row>{{L"P1", 500}, {L"P2", 500 + c.record_size}}));
      EXPECT_EQ(dbs.pael->x, 22.0);
      EXPECT_EQ(dbs.pael->djup, 7.5f);
      continue;
    }
    EXPECT_EQ(Rows(dbs).size(), 0u);
    ASSERT_EQ(notices.messages.size(), 1u);
    EXPECT_EQ(notices.titles[0], L"Innlesning av Brenmark - databas");
    EXPECT_EQ(notices.messages[0],
              L"Feil vid innlesning av databas : " + dir.File("Korvodal.dbs") +
                  L"\nFelaktig version: " + (c.text[0] == 'x' ? L"0.0" : Wide(c.text)) +
                  L"\nNu gäller version: " + (c.record_size == 93 ? L"4.0" : L"3.0") +
                  L"\nVälj Konvertera i Arkiv !");
    EXPECT_EQ(notices.icons[0], korvo::MB_ICONWARNING);
  }
}

TEST_F(DbsOpenTest, AnOldVersionIsTheCurrentOneInMemoryOnly) {
  DbsBytes b("2.2");
  b.Add("P1", kBh);
  WriteDbs(b);
  CKorvoDbs dbs(&proj);
  ASSERT_EQ(Open(&dbs, 0), 0);
  EXPECT_EQ(std::wstring(dbs.prjdat.Dbsver), L"3.0");
  EXPECT_EQ(dbs.prjdat.verdel, 0.0);
  EXPECT_EQ(dbs.postlangd, 62);
  EXPECT_EQ(Rows(dbs), (std::vector<Row>{{L"P1", 500}}));
  EXPECT_EQ(FileBytes(), b.bytes());
}

// --- Opening, new databases, failures ----------------------------------------

TEST_F(DbsOpenTest, ANewDatabaseIsItsHeaderAndAnExistingOneIsNotOverwritten) {
  CKorvoDbs made(&proj);
  made.prjdat.uppdnrfil = 5;
  ASSERT_EQ(made.Init(0, 1, nullptr, nullptr), 0);
  const std::string file = FileBytes();
  ASSERT_EQ(file.size(), 408u);
  EXPECT_EQ(file.substr(0, 4), std::string("3.0\0", 4));
  EXPECT_EQ(korvo::DecodeFixed32(reinterpret_cast<const uint8_t*>(&file[300])), 5u);
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));

  CKorvoDbs again(&proj);
  EXPECT_EQ(again.Init(0, 1, nullptr, nullptr), -1);
  EXPECT_EQ(FileBytes(), file);
  EXPECT_EQ(notices.messages, (Texts{L"Databasen finns redan !",
                                     L"Kan ikke opne database: " + dir.File("Korvodal.dbs")}));
}

TEST_F(DbsOpenTest, ANamedFileWithoutProjectPathsGetsPathsOfItsOwn) {
  CKorvoDbs made;
  const std::wstring path = dir.File("Korvodal.dbs");
  ASSERT_EQ(made.Init(path, 0, 1, nullptr), 0);
  ASSERT_NE(made.proj, nullptr);
  EXPECT_EQ(made.proj->ProjKat, dir.wpath());
  EXPECT_EQ(FileBytes().substr(0, 3), "3.0");  // a header of the current version, not zeros

  CKorvoDbs read;
  EXPECT_EQ(read.Init(path, 1, 0, nullptr), 0);
  EXPECT_EQ(read.proj->DbfKat, dir.wpath() + L"/Dbf");
  EXPECT_TRUE(notices.messages.empty());
}

TEST_F(DbsOpenTest, FailuresToOpenSayWhyAndLeaveNoLock) {
  CKorvoDbs missing(&proj);
  EXPECT_EQ(Open(&missing, 0), -1);
  EXPECT_EQ(notices.messages, Texts{L"Kan ikke opne database: " + dir.File("Korvodal.dbs")});

  dir.Write("Korvodal.dbs", std::string(407, '\0'));
  CKorvoDbs shrt(&proj);
  EXPECT_EQ(Open(&shrt, 1), -4);
  EXPECT_EQ(notices.messages.back(),
            L"Feil vid innlesning av databas : " + dir.File("Korvodal.dbs"));
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));

  DbsBytes b("3.0");
  b.Add("P1", kBh);
  WriteDbs(b);
  CKorvoDbs full(&proj);
  ASSERT_EQ(Open(&full, 1), 0);
  EXPECT_EQ(full.Init(dir.File("Korvodal.dbs").c_str(), 1, 0, nullptr), -1);
  EXPECT_EQ(notices.messages.back(),
            L"Kan ikke lese database: " + dir.File("Korvodal.dbs") + L"\nListe ej tom!");
  // Without a name the records are added to those already held.
  EXPECT_EQ(Open(&full, 1), 0);
  EXPECT_EQ(Rows(full).size(), 2u);
}

TEST_F(DbsOpenTest, AFileTheCallerHoldsIsReadAndLeftOpenAndLocked) {
  DbsBytes b("3.0");
  b.Add("P1", kBh).AddDeleted().Add("P3", kBh);
  b.SetI16(222, 1);  // antrader
  WriteDbs(b);
  TestDbs owner(&proj);
  owner.ChangeReadWriteAccess(0);
  ASSERT_EQ(owner.Dbs_rw(1000), 0);

  CKorvoDbs reader(&proj);
  ASSERT_EQ(reader.Init(0, 0, nullptr, &owner.dbsfil), 0);
  EXPECT_EQ(Rows(reader), (std::vector<Row>{{L"P1", 500}, {L"P3", 624}}));
  EXPECT_TRUE(owner.dbsfil.IsOpen());
  EXPECT_TRUE(dir.Exists("Korvodal.dbk"));
  EXPECT_EQ(reader.prjdat.antrader, 1);  // not packed
  owner.Dbs_rw(1001);
  EXPECT_EQ(FileBytes(), b.bytes());
}

// --- Records that are not points ----------------------------------------------

TEST_F(DbsOpenTest, EmptySlotsAreSkippedSilentlyAndJunkBehindTheEndIsCleared) {
  DbsBytes b("3.0");
  b.Add("P1", kBh).AddUncounted("ABC", kNone).Add("P3", kPipe);
  b.AddUncounted("OLD", kNone, /*inside=*/false).Tail(std::string(62, '\0'));
  WriteDbs(b);
  {
    CKorvoDbs reader(&proj);
    ASSERT_EQ(Open(&reader, 1), 0);
    EXPECT_EQ(FileBytes(), b.bytes());
  }
  CKorvoDbs dbs(&proj);
  ASSERT_EQ(Open(&dbs, 0), 0);
  EXPECT_TRUE(notices.messages.empty());
  EXPECT_EQ(Rows(dbs), (std::vector<Row>{{L"P1", 500}, {L"P3", 624}}));
  std::string expected = b.bytes();
  expected.replace(686, 62, std::string(62, '\0'));  // OLD behind slutpos
  EXPECT_EQ(FileBytes(), expected);
}

TEST_F(DbsOpenTest, ARecordOfTwoKindsIsLeftOutWithAWarning) {
  DbsBytes b("3.0");
  b.Add("P1", kBh).Add("ABC", kBhAvp).Add("P3", kVb).Add("P4", kAvp);
  WriteDbs(b);
  CKorvoDbs dbs(&proj);
  ASSERT_EQ(Open(&dbs, 0), 0);
  EXPECT_EQ(Rows(dbs), (std::vector<Row>{{L"P1", 500}, {L"P3", 624}, {L"P4", 686}}));
  ASSERT_EQ(notices.messages.size(), 1u);
  EXPECT_EQ(notices.titles[0], L"Innlesning av Brenmark - databas");
  EXPECT_EQ(notices.messages[0], L"Feil i database: id      ABC är feilaktig");
  EXPECT_EQ(FileBytes(), b.bytes());
}

TEST_F(DbsOpenTest, LineInformationIsAskedAboutOnceForAll) {
  DbsBytes b("3.0");
  b.Add("L1", kBhLje).Add("P2", kBh).Add("L3", kBhLje);
  WriteDbs(b);
  {
    notices.answer = korvo::IDYES;
    CKorvoDbs dbs(&proj);
    ASSERT_EQ(Open(&dbs, 0), 0);
    ASSERT_EQ(notices.messages.size(), 1u);
    EXPECT_EQ(notices.titles[0], L"Kontroll av databas");
    EXPECT_EQ(notices.messages[0],
              L"Fel i databas: id       L1 har också linjeinformation. Ta bort detta för "
              L"samtliga felaktiga?");
    EXPECT_EQ(notices.buttons[0], korvo::MB_YESNO);
    ASSERT_EQ(Rows(dbs).size(), 3u);
    dbs.Home();
    EXPECT_FALSE(dbs.pael->bit.Test(bhbit::Lje));
    EXPECT_TRUE(dbs.pael->bit.Test(bhbit::Bh));
    EXPECT_EQ(FileBytes(), b.bytes());  // repaired in memory, not in the file
  }
  notices.Clear();
  notices.answer = korvo::IDNO;
  CKorvoDbs dbs(&proj);
  ASSERT_EQ(Open(&dbs, 0), 0);
  EXPECT_EQ(notices.messages.size(), 1u);
  EXPECT_EQ(Rows(dbs), (std::vector<Row>{{L"P2", 562}}));
}

TEST_F(DbsOpenTest, ARecordBehindTheEndStopsTheProjectsReadingOnly) {
  DbsBytes b("3.0");
  b.Add("P1", kBh).AddUncounted("P2", kBh, /*inside=*/false).AddUncounted("P3", kBh, false);
  b.Tail(std::string(30, 'x'));  // a short last record
  WriteDbs(b);
  CKorvoDbs project(&proj);
  ASSERT_EQ(Open(&project, 1), 0);
  EXPECT_EQ(Rows(project), (std::vector<Row>{{L"P1", 500}}));
  EXPECT_EQ(notices.messages, Texts{L"Kontroll av database: stopp på id       P2"});

  notices.Clear();
  CKorvoDbs named(&proj);
  ASSERT_EQ(named.Init(1, 0, dir.File("Korvodal.dbs").data(), nullptr), 0);
  EXPECT_EQ(Rows(named), (std::vector<Row>{{L"P1", 500}, {L"P2", 562}, {L"P3", 624}}));
  EXPECT_TRUE(notices.messages.empty());
}

// --- Counts and packing ---------------------------------------------------------

TEST_F(DbsOpenTest, WrongCountsAreCorrectedInTheFileWhenWriting) {
  DbsBytes b("3.0");
  b.Add("P1", kBh).Add("P2", kPipe).Add("P3", kVb);
  b.SetI16(216, 4);  // antbh
  b.SetI16(226, 0);  // antvb
  WriteDbs(b);
  {
    CKorvoDbs reader(&proj);
    ASSERT_EQ(Open(&reader, 1), 0);
    EXPECT_EQ(reader.prjdat.antbh, 4);
    EXPECT_TRUE(notices.messages.empty());
    EXPECT_EQ(FileBytes(), b.bytes());
  }
  CKorvoDbs dbs(&proj);
  ASSERT_EQ(Open(&dbs, 0), 0);
  EXPECT_EQ(notices.messages, Texts{L"Infomation i prosjektdata ej lika med inläst4 1 1 1 0 1 "
                                    L"Projektdata har korrigerats enligt inlästa värden"});
  EXPECT_EQ(notices.icons[0], korvo::MB_ICONWARNING);
  DbsBytes fixed = b;
  fixed.SetI16(216, 1);
  fixed.SetI16(226, 1);
  EXPECT_EQ(FileBytes(), fixed.bytes());
  EXPECT_EQ(dbs.prjdat.antbh, 1);
  EXPECT_EQ(dbs.prjdat.antvb, 1);
}

// Five points and three deleted slots between them.
DbsBytes FileWithHoles() {
  DbsBytes b("3.0");
  b.Add("P1", kBh, 1).AddDeleted().Add("P2", kBh, 2).AddDeleted().AddDeleted();
  b.Add("P3", kBh, 3).Add("P4", kBh, 4).Add("P5", kBh, 5);
  b.SetI16(222, 3);  // antrader
  b.SetI32(300, 9);  // uppdnrfil
  return b;
}

TEST_F(DbsOpenTest, DeletedRecordsArePackedOutWhenOpenedForWriting) {
  const DbsBytes b = FileWithHoles();
  WriteDbs(b);
  CKorvoDbs dbs(&proj);
  ASSERT_EQ(Open(&dbs, 0), 0);
  EXPECT_TRUE(notices.messages.empty());
  EXPECT_EQ(Rows(dbs), (std::vector<Row>{
                           {L"P1", 500}, {L"P2", 562}, {L"P3", 624}, {L"P4", 686}, {L"P5", 748}}));
  EXPECT_EQ(dbs.prjdat.antrader, 0);
  EXPECT_EQ(dbs.prjdat.slutpos, 810);
  EXPECT_EQ(dbs.prjdat.uppdnrfil, 10);

  const std::string file = FileBytes();
  ASSERT_EQ(file.size(), b.bytes().size());
  DbsBytes expected("3.0");
  expected.Add("P1", kBh, 1).Add("P2", kBh, 2).Add("P3", kBh, 3).Add("P4", kBh, 4);
  expected.Add("P5", kBh, 5).Tail(std::string(3 * 62, '\0'));
  expected.SetI32(300, 10);
  EXPECT_EQ(file, expected.bytes());
}

TEST_F(DbsOpenTest, PackingReportsACountThatDiffersAndRewritesRepairedFlags) {
  DbsBytes b("3.0");
  b.Add("P1", kBh).AddDeleted().Add("L1", kBhLje);
  b.SetI16(222, 2);
  WriteDbs(b);
  notices.answer = korvo::IDYES;
  CKorvoDbs dbs(&proj);
  ASSERT_EQ(Open(&dbs, 0), 0);
  ASSERT_EQ(notices.messages.size(), 2u);
  EXPECT_EQ(notices.messages[1], L"Fel vid packning !\nPackade =1\nRaderade=2");
  EXPECT_EQ(Rows(dbs), (std::vector<Row>{{L"P1", 500}, {L"L1", 562}}));
  const std::string file = FileBytes();
  EXPECT_EQ(file.substr(562, 3), std::string("L1\0", 3));
  EXPECT_EQ(file[562 + 9], '\x01');  // Bh without Lje
  EXPECT_EQ(file.substr(624), std::string(62, '\0'));
  EXPECT_EQ(dbs.prjdat.slutpos, 624);
}

TEST_F(DbsOpenTest, AReadOnlyOpenNeverChangesAByte) {
  DbsBytes b = FileWithHoles();
  b.Add("L1", kBhLje).Add("BAD", kBhAvp).AddUncounted("X", kNone, false);
  b.SetI16(224, 5);  // antror wrong too
  WriteDbs(b);
  notices.answer = korvo::IDYES;
  CKorvoDbs dbs(&proj);
  ASSERT_EQ(Open(&dbs, 1), 0);
  EXPECT_EQ(FileBytes(), b.bytes());
  EXPECT_EQ(
      Rows(dbs),
      (std::vector<Row>{
          {L"P1", 500}, {L"P2", 624}, {L"P3", 810}, {L"P4", 872}, {L"P5", 934}, {L"L1", 996}}));
  EXPECT_EQ(dbs.prjdat.antrader, 3);
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
}

// --- Another user's writes --------------------------------------------------------

TEST_F(DbsOpenTest, DbsKollComparesTheUpdateNumbers) {
  CKorvoDbs none(&proj);
  EXPECT_EQ(none.DbsKoll(), -2);
  DbsBytes b("3.0");
  b.SetI32(300, 7);
  WriteDbs(b);
  CKorvoDbs dbs(&proj);
  ASSERT_EQ(Open(&dbs, 1), 0);
  EXPECT_EQ(dbs.DbsKoll(), 0);
  b.SetI32(300, 8);
  WriteDbs(b);
  EXPECT_EQ(dbs.DbsKoll(), 1);
  b.SetI32(300, 6);
  WriteDbs(b);
  EXPECT_EQ(dbs.DbsKoll(), -1);
  EXPECT_EQ(dbs.prjdat.uppdnrfil, 7);
  dir.Write("Korvodal.dbs", std::string(100, '\0'));
  EXPECT_EQ(dbs.DbsKoll(), -2);
  EXPECT_FALSE(dir.Exists("Korvodal.dbk"));
}

class DbsSyncTest : public DbsOpenTest {
 protected:
  // The list is read from A, B, C, D; then the other user deletes B, renames
  // C to C2, packs (D moves to B's place) and adds E.
  void SetUp() override {
    DbsBytes first("3.0");
    first.Add("A", kBh).Add("B", kBh).Add("C", kBh).Add("D", kBh);
    first.SetI32(300, 4);
    WriteDbs(first);
    ASSERT_EQ(Open(&dbs, 0), 0);
    DbsBytes later("3.0");
    later.Add("A", kBh).Add("D", kBh).Add("C2", kBh).Add("E", kPipe);
    later.SetI32(300, 6);
    WriteDbs(later);
  }

  void Sync() {
    ASSERT_EQ(dbs.Dbs_rw(1000), 0);
    EXPECT_EQ(dbs.DbsSync(&dbs.dbsfil), 0);
    dbs.Dbs_rw(1001);
  }

  // Makes the record `id` current.
  void Select(const wchar_t* id) {
    dbs.Home();
    while (std::wcscmp(dbs.pael->id, id) != 0) ASSERT_NE(dbs++, nullptr);
  }

  TestDbs dbs{&proj};
};

TEST_F(DbsSyncTest, ANewRecordMeetsAddedRemovedAndMovedPoints) {
  bhdbstype fresh{};
  std::wcscpy(fresh.id, L"F");
  fresh.bit.Set(bhbit::Bh);
  dbs.End();
  dbs.Ny(1, &fresh);
  Sync();
  EXPECT_EQ(std::wstring(dbs.pael->id), L"F");
  EXPECT_EQ(dbs.pmael, dbs.pael);
  EXPECT_EQ(Rows(dbs),
            (std::vector<Row>{{L"A", 500}, {L"D", 562}, {L"F", 0}, {L"C2", 624}, {L"E", 686}}));
  EXPECT_EQ(dbs.prjdat.uppdnrfil, 6);
  EXPECT_EQ(dbs.prjdat.slutpos, 748);
  EXPECT_EQ(dbs.prjdat.antror, 1);
  EXPECT_TRUE(notices.messages.empty());
}

TEST_F(DbsSyncTest, ARenamedRecordIsFollowedWhenTheUserSaysSo) {
  Select(L"C");
  notices.answer = korvo::IDYES;
  Sync();
  ASSERT_EQ(notices.messages.size(), 1u);
  EXPECT_EQ(notices.titles[0], L"Kontroll av databas");
  EXPECT_EQ(notices.messages[0],
            L"Hittar inte Id C!\nDet tycks vara omdöpt till C2.\nSka Id ändras från C till C2?");
  EXPECT_EQ(Rows(dbs), (std::vector<Row>{{L"A", 500}, {L"C2", 624}, {L"D", 562}, {L"E", 686}}));
  dbs.Goto_mark();
  EXPECT_EQ(std::wstring(dbs.pael->id), L"C2");
}

TEST_F(DbsSyncTest, ARenamedRecordKeepsItsNameWhenTheUserSaysNo) {
  Select(L"C");
  Sync();
  EXPECT_EQ(Rows(dbs),
            (std::vector<Row>{{L"A", 500}, {L"C", 624}, {L"D", 562}, {L"C2", 624}, {L"E", 686}}));
  dbs.Goto_mark();
  EXPECT_EQ(std::wstring(dbs.pael->id), L"C");
}

TEST_F(DbsSyncTest, ARecordWhosePlaceIsGoneBecomesNew) {
  Select(L"B");
  dbs.pael->pos = 748;  // behind everything the file holds now
  Sync();
  EXPECT_EQ(Rows(dbs),
            (std::vector<Row>{{L"A", 500}, {L"B", 0}, {L"D", 562}, {L"C2", 624}, {L"E", 686}}));
  EXPECT_TRUE(notices.messages.empty());
}

TEST_F(DbsSyncTest, AnUnchangedFileLeavesTheHeaderInMemory) {
  DbsBytes same("3.0");
  same.Add("A", kBh).Add("B", kBh).Add("C", kBh).Add("D", kBh);
  same.SetI32(300, 6);
  WriteDbs(same);
  dbs.prjdat.slutpos = 1000;
  Select(L"C");
  Sync();
  EXPECT_EQ(dbs.prjdat.uppdnrfil, 4);
  EXPECT_EQ(dbs.prjdat.slutpos, 1000);
  EXPECT_EQ(std::wstring(dbs.pael->id), L"C");
  EXPECT_EQ(Rows(dbs).size(), 4u);
}

TEST_F(DbsSyncTest, ManyPointsSyncInOnePass) {
  DbsBytes big("3.0");
  for (int i = 0; i < 3000; ++i) big.Add("P" + std::to_string(i), kBh);
  WriteDbs(big);
  Select(L"A");
  Sync();
  // A is kept as the record about to be written; B, C, D leave.
  EXPECT_EQ(Rows(dbs).size(), 3001u);
  EXPECT_EQ(dbs.prjdat.antbh, 3000);
}

// --- Small helpers ------------------------------------------------------------------

TEST(DbsHelpersTest, KollaPaelComparesWithinAMillimetre) {
  CKorvoDbs dbs;
  bhdbstype rec{};
  std::wcscpy(rec.id, L"P1");
  rec.bit.Set(bhbit::Bh);
  rec.x = 100.0;
  rec.djup = 5.0f;
  rec.stopp = 91;
  EXPECT_EQ(dbs.KollaPael(&rec), 1);  // no current record
  dbs.Ny(1, &rec);
  const auto changed = [&](auto change) {
    bhdbstype other = *dbs.pael;
    change(other);
    return dbs.KollaPael(&other);
  };
  EXPECT_EQ(changed([](bhdbstype& o) { o.x += 0.0009, o.djup = 5.0009f; }), 0);
  EXPECT_EQ(changed([](bhdbstype& o) { o.avst = 0.002; }), 1);
  EXPECT_EQ(changed([](bhdbstype& o) { o.bit.Set(bhbit::Tlk); }), 1);
  EXPECT_EQ(changed([](bhdbstype& o) { o.stopp = 92; }), 1);
  EXPECT_EQ(changed([](bhdbstype& o) { std::wcscpy(o.id, L"P2"); }), 1);

  bhdbstype avp{};
  std::wcscpy(avp.id, L"A1");
  avp.bit.Set(bhbit::Avp);
  std::wcscpy(avp.kod, L"KP");
  dbs.Ny(1, &avp);
  EXPECT_EQ(changed([](bhdbstype& o) { std::wcscpy(o.kod, L"KQ"); }), 1);
  EXPECT_EQ(changed([](bhdbstype&) {}), 0);
}

TEST(DbsHelpersTest, DatumFixTurnsTheKnownFormsOfADate) {
  const std::vector<std::pair<std::wstring, std::wstring>> cases = {
      {L"12/31/1999", L"31.12.1999"},
      {L"19991231", L"31.12.1999"},
      {L"991231", L"31.12.1999"},
      {L"131231", L"31.12.2013"},
      {L"140101", L"01.01.1914"},
      {L"1.2.2003", L"1.2.2003"},
      {L"  20240229 ", L"29.02.2024"},
      {L"2024-02-29 12:00", L"2024-02-29"},
      {L"1/2", L"1"},
      {L"31.12.1999xyz", L"31.12.1999"},
      {L"1234567.90123", L"1234567.90"}};
  for (const auto& [in, out] : cases) {
    wchar_t datum[32] = {};
    std::wcscpy(datum, in.c_str());
    EXPECT_EQ(CKorvoDbs::DatumFix(datum), 0) << in;
    EXPECT_EQ(std::wstring(datum), out) << in;
  }
  for (const wchar_t* empty : {L"7", L"", L"   ", L"abc"}) {
    wchar_t datum[11] = {};
    std::wcscpy(datum, empty);
    EXPECT_EQ(CKorvoDbs::DatumFix(datum), -1) << empty;
    EXPECT_EQ(datum[0], L'\0');
  }
}

TEST(DbsHelpersTest, ValidIdNamnTakesEightCharactersOfTheNameAlphabet) {
  CKorvoDbs dbs;
  for (const wchar_t* good : {L"ab-1", L"A+", L"12345678", L"X_Y", L"-"}) {
    EXPECT_EQ(dbs.ValidIdNamn(good), 0) << good;
  }
  for (const wchar_t* bad : {L"A+B", L"\u00c5S1", L"123456789", L"", L"A B", L"A.1", L"+A"}) {
    EXPECT_EQ(dbs.ValidIdNamn(bad), -1) << bad;
  }
}

}  // namespace
