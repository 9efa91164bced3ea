#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>

#include "korvo/context/proj_path.h"
#include "korvo/database/dbs_guid.h"
#include "korvo/database/dbs_records.h"
#include "korvo/database/korvo_dbs.h"
#include "korvo/foundation/field_text.h"
#include "korvo/foundation/format.h"
#include "korvo/observations/korvo_tlk.h"
#include "korvo/soundings/basic_methods.h"
#include "korvo/soundings/korvo_cpt.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/soundings/rock_methods.h"
#include "korvo/testutil/point_project.h"
#include "korvo/testutil/rows.h"

namespace {

using korvo::test::Texts;

struct Row {
  float djup;
  const wchar_t* anm = L"";
};

// Makes the block `code` of `snd`, which `member` then points to, with the
// stop code `stopp` and `rows`.
template <class Block>
Block* AddBlock(CKorvoSnd& snd, Block* CKorvoSnd::*member, int code, int stopp,
                std::initializer_list<Row> rows) {
  snd.New(code);
  Block* block = snd.*member;
  block->stopp = stopp;
  for (const Row& row : rows) {
    block->Ny(1, nullptr);
    block->pael->djup = row.djup;
    korvo::CopyField(block->pael->anm, row.anm);
  }
  return block;
}

// A record as the database hands it over: zeros but for the name.
bhdbstype Record() {
  bhdbstype rec{};
  korvo::CopyField(rec.id, L"P1");
  return rec;
}

// The seven flag bytes in hex, such as "01 00 00 00 00 00 00".
std::string Hex(const uint8_t* b) {
  std::string out;
  for (int i = 0; i < 7; ++i) {
    static const char digits[] = "0123456789abcdef";
    out += std::string(i ? " " : "") + digits[b[i] >> 4] + digits[b[i] & 15];
  }
  return out;
}

// The "berg" rows of an interpretation as "level kalla kalla2".
Texts Rocks(CKorvoTlk* tlk) {
  Texts out;
  if (tlk != nullptr && tlk->Home() == 0) {
    do {
      const matetype& r = *tlk->pael;
      if (std::wstring(r.namn) == L"berg") {
        out.push_back(korvo::Format(L"%.2f %d %d", r.niva, r.kalla, r.kalla2));
      }
    } while ((*tlk)++);
  }
  return out;
}

class BoreholeStatusTest : public korvo::test::PointProjectTest {
 protected:
  // A new borehole document P1 at level 50 with no parts.
  std::unique_ptr<CKorvoSnd> NewDoc(CKorvoDbs* dbs = nullptr, double lutning = 90.0) {
    auto snd = std::make_unique<CKorvoSnd>(&proj_, dbs);
    korvo::CopyField(snd->id, L"P1");
    snd->typ = &CKorvoSnd::Bh;
    snd->z = 50.0;
    snd->lutning = lutning;
    return snd;
  }
  // Saves `snd` and reads it back into a new document, whose Init fills its
  // status.
  std::unique_ptr<CKorvoSnd> Reload(CKorvoSnd& snd) {
    EXPECT_EQ(snd.Uppdat(nullptr, nullptr), 0);
    auto back = std::make_unique<CKorvoSnd>(&proj_, nullptr);
    EXPECT_EQ(back->Init(L"P1", nullptr), 0);
    return back;
  }
  static std::string DocBits(const CKorvoSnd& snd) { return Hex(snd.bhbit); }
  // The record's flags after Snd2Bhbit.
  static std::string RecBits(CKorvoSnd& snd, bhdbstype& rec) {
    EXPECT_EQ(snd.Snd2Bhbit(&rec), 0);
    return Hex(rec.bit.b);
  }
};

TEST_F(BoreholeStatusTest, DocumentWithoutBlocks) {
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"P1", nullptr), 0);  // no files at all
  float djup = 7.5f;                       // the caller's start value stays
  EXPECT_EQ(snd.GetMaxDjup(&djup), 0);
  EXPECT_EQ(djup, 7.5f);
  int stopp = 120;
  EXPECT_EQ(snd.GetMaxStopp(&stopp), 0);
  EXPECT_EQ(stopp, 90);
  double my = 3.0;
  EXPECT_EQ(snd.MyKod(&my), -1);
  EXPECT_EQ(my, 0.0);
  EXPECT_EQ(snd.IfDigitaliserad(), 0);
  EXPECT_EQ(DocBits(snd), "00 00 00 00 00 00 00");

  snd.x = 1.5;
  snd.y = 2.5;
  snd.z = 3.5;
  snd.sek = 120.0;
  snd.avst = -4.0;
  korvo::CopyField(snd.datum, L"01.02.2023");
  bhdbstype rec = Record();
  rec.symbol = 17;
  EXPECT_EQ(RecBits(snd, rec), "00 00 00 00 00 00 00");  // no kind: nothing was read
  EXPECT_EQ(korvo::Format(L"%g %g %g %g %g %g %d %g %d %s", rec.x, rec.y, rec.z, rec.sekt, rec.avst,
                          rec.djup, rec.stopp, rec.berg, rec.symbol, rec.datum),
            L"1.5 2.5 3.5 120 -4 0 90 0 -1 01.02.2023");
  EXPECT_FALSE(dir_.Exists("Dbf/P1.TLK"));
}

TEST_F(BoreholeStatusTest, CptBesideDreie) {
  CKorvoDbs dbs;
  CDbsGUID reg;
  dbs.guidreg = &reg;
  auto snd = NewDoc(&dbs);
  snd->guid = L"doc-guid";
  snd->text1 = L"Comment";
  AddBlock(*snd, &CKorvoSnd::m_cpt, 7, 93, {{0.5f, L"MY"}, {8.25f}})->digit = 1;
  snd->m_cpt->guid = L"cpt-guid";
  // 120 is no stop code: it counts as 90.
  AddBlock(*snd, &CKorvoSnd::m_dreie, 21, 120, {{1.0f}, {1.75f, L"MY"}, {6.0f}})->guid =
      L"dreie-guid";

  EXPECT_EQ(snd->IfDigitaliserad(), 1);
  double my = 0.0;  // the Dreie is asked before the CPT
  EXPECT_EQ(snd->MyKod(&my), 0);
  EXPECT_DOUBLE_EQ(my, 1.75);
  bhdbstype rec = Record();
  EXPECT_EQ(RecBits(*snd, rec), "01 00 00 80 01 01 20");
  EXPECT_EQ(rec.djup, 8.25f);
  EXPECT_EQ(rec.stopp, 93);
  EXPECT_DOUBLE_EQ(rec.mykod, 1.75);
  EXPECT_EQ(rec.berg, 0.0);
  EXPECT_EQ(
      korvo::test::EachRow(
          reg, [](const auto& r) { return korvo::Format(L"%d %s %s", r.metod, r.guid, r.id); }),
      (Texts{L"97 doc-guid P1", L"7 cpt-guid P1", L"21 dreie-guid P1"}));

  // Flags that no part backs any longer are cleared.
  bhdbstype old = Record();
  for (auto flag :
       {bhbit::Ram, bhbit::Mykod, bhbit::Startvarde, bhbit::Skv, bhbit::Prvtyp, bhbit::Dpt}) {
    old.bit.Set(flag);
  }
  snd->text1.clear();
  snd->m_cpt->Home();
  snd->m_cpt->pael->anm[0] = L'\0';
  snd->m_dreie->Home();
  (*snd->m_dreie)++;
  snd->m_dreie->pael->anm[0] = L'\0';
  EXPECT_EQ(RecBits(*snd, old), "01 00 00 00 01 01 00");
  EXPECT_EQ(old.mykod, 0.0);

  snd->m_dbs = nullptr;
  EXPECT_EQ(DocBits(*Reload(*snd)), "01 00 00 00 01 01 00");
}

TEST_F(BoreholeStatusTest, StopCodesOutsideTheirRangeCountAsOrdinary) {
  auto snd = NewDoc();
  AddBlock(*snd, &CKorvoSnd::m_ram, 24, 95, {});
  AddBlock(*snd, &CKorvoSnd::m_total, 25, 89, {});
  int stopp = 94;  // what the caller held does not count
  snd->GetMaxStopp(&stopp);
  EXPECT_EQ(stopp, 90);
  snd->m_ram->stopp = 94;
  snd->GetMaxStopp(&stopp);
  EXPECT_EQ(stopp, 94);
}

// Each block starts where the blocks before it ended (CPT, Dreie, Ram, Enkel,
// Dtrykk, ...), or at its first row when that is shallower. A first row within
// the slack below the point's start (2.0) starts the block there, alone or
// behind a CPT that went deeper.
TEST_F(BoreholeStatusTest, StartDepthsOfTheBlocks) {
  struct Case {
    bool behind_cpt;
    float first;
    double start;
  };
  for (const Case& c : {Case{false, 1.98f, 1.98}, Case{false, 2.03f, 2.0}, Case{true, 2.03f, 2.0},
                        Case{true, 2.10f, 2.10}}) {
    SCOPED_TRACE(c.first);
    auto snd = NewDoc();
    snd->startdjup = 2.0f;
    if (c.behind_cpt) AddBlock(*snd, &CKorvoSnd::m_cpt, 7, 0, {{2.5f}, {3.0f}});
    AddBlock(*snd, &CKorvoSnd::m_dreie, 21, 0, {{c.first}, {8.0f}});
    AddBlock(*snd, &CKorvoSnd::m_enkel, 22, 0, {{8.0f}, {12.0f}});
    AddBlock(*snd, &CKorvoSnd::m_dtrykk, 23, 0, {});
    auto back = Reload(*snd);
    EXPECT_EQ(DocBits(*back), c.behind_cpt ? "01 00 00 00 01 07 00" : "01 00 00 00 00 07 00");
    if (c.behind_cpt) {
      EXPECT_NEAR(back->m_cpt->startdjup, 2.0, 1e-6);
    }
    EXPECT_NEAR(back->m_dreie->startdjup, c.start, 1e-6);
    EXPECT_NEAR(back->m_enkel->startdjup, 8.0, 1e-6);
    EXPECT_NEAR(back->m_dtrykk->startdjup, 12.0, 1e-6);
  }
}

TEST_F(BoreholeStatusTest, InclinedHole) {
  for (double lutning : {89.6, 89.4, 60.0, 0.0}) {
    auto snd = NewDoc(nullptr, lutning);
    AddBlock(*snd, &CKorvoSnd::m_dreie, 21, 0, {{4.0f}});
    const bool inclined = lutning != 89.6;
    EXPECT_EQ(Reload(*snd)->bhbit[6], inclined ? 0x40 : 0) << lutning;
    bhdbstype rec = Record();
    snd->Snd2Bhbit(&rec);
    EXPECT_EQ(rec.bit.Test(bhbit::Lutande), inclined) << lutning;
  }
  // At 60 degrees, 10 metres along the hole are 8.66 in depth. An angle of 0
  // is what old files hold, and counts as vertical here.
  for (double lutning : {60.0, 0.0, 90.0}) {
    auto snd = NewDoc(nullptr, lutning);
    ASSERT_EQ(snd->TolkatBerg(10.0f), 0);
    EXPECT_EQ(Rocks(snd->m_tlk), Texts{lutning == 60.0 ? L"41.34 4 4" : L"40.00 4 4"}) << lutning;
  }
}

TEST_F(BoreholeStatusTest, RockInTotalWithTwoAndAHalfAndThreeMetresBelow) {
  for (float bottom : {12.5f, 13.0f}) {
    auto snd = NewDoc();
    AddBlock(*snd, &CKorvoSnd::m_total, 25, 93, {{2.0f}, {10.0f, L"F"}, {bottom}});
    bhdbstype rec = Record();
    EXPECT_EQ(RecBits(*snd, rec), "01 00 80 00 00 10 00");
    EXPECT_DOUBLE_EQ(rec.berg, bottom - 10.0);
    EXPECT_EQ(Rocks(snd->m_tlk), Texts{bottom >= 13.0f ? L"40.00 5 5" : L"40.00 4 4"});
  }
}

TEST_F(BoreholeStatusTest, RockInFjellAndTheDeeperOfBoth) {
  auto snd = NewDoc();
  AddBlock(*snd, &CKorvoSnd::m_fjell, 26, 94, {{4.0f}, {5.0f, L"F"}, {8.0f}});
  bhdbstype rec = Record();
  EXPECT_EQ(RecBits(*snd, rec), "01 00 80 00 00 20 00");
  EXPECT_DOUBLE_EQ(rec.berg, 3.0);
  EXPECT_EQ(Rocks(snd->m_tlk), Texts{L"45.00 5 5"});

  // A Total that met rock deeper: the metres in rock are the larger of the
  // two, and the rock row stays where the Fjell, asked last, puts it.
  AddBlock(*snd, &CKorvoSnd::m_total, 25, 93, {{6.0f, L"F"}, {6.5f}});
  rec = Record();
  snd->Snd2Bhbit(&rec);
  EXPECT_DOUBLE_EQ(rec.berg, 3.0);
  EXPECT_EQ(Rocks(snd->m_tlk), Texts{L"45.00 5 5"});

  // A stop code that does not allow rock: no metres, no rock row.
  auto no_rock = NewDoc();
  AddBlock(*no_rock, &CKorvoSnd::m_fjell, 26, 92, {{5.0f, L"F"}});
  rec = Record();
  EXPECT_EQ(RecBits(*no_rock, rec), "01 00 00 00 00 20 00");
  EXPECT_EQ(rec.berg, 0.0);
  EXPECT_EQ(no_rock->m_tlk, nullptr);
}

TEST_F(BoreholeStatusTest, RockLevelReachesTheTlkFileExactlyOnce) {
  auto snd = NewDoc();
  AddBlock(*snd, &CKorvoSnd::m_total, 25, 93, {{10.0f, L"F"}, {14.0f}});
  bhdbstype rec = Record();
  ASSERT_EQ(snd->Snd2Bhbit(&rec), 0);
  EXPECT_EQ(dir_.Read("Dbf/P1.TLK"),
            "berg 1 5 5\r\n  40.0000 \r\n  0.00   0.00   0.00   0.00   0.00   0.00\r\n*\r\n");

  // The second round (the database's, after the save) finds the rock in
  // place and does not save again.
  std::filesystem::remove(dir_.path() / "Dbf" / "P1.TLK");
  rec = Record();
  ASSERT_EQ(snd->Snd2Bhbit(&rec), 0);
  EXPECT_FALSE(dir_.Exists("Dbf/P1.TLK"));
  EXPECT_DOUBLE_EQ(rec.berg, 4.0);
  EXPECT_TRUE(rec.bit.Test(bhbit::Tlk));

  auto back = Reload(*snd);
  EXPECT_EQ(Rocks(back->m_tlk), Texts{L"40.00 5 5"});
  EXPECT_TRUE(back->bhbit[2] & 0x80);
  EXPECT_TRUE(notices_.messages.empty());

  // Given as a level, it is not added twice.
  auto level = NewDoc();
  EXPECT_EQ(level->TolkatZBerg(41.236), 0);
  EXPECT_EQ(level->TolkatZBerg(41.24), -1);
  EXPECT_EQ(Rocks(level->m_tlk), Texts{L"41.24 5 5"});
}

TEST_F(BoreholeStatusTest, GroundWaterLevelAloneCountsOnlyInTheRecord) {
  dir_.Write("Dbf/P1.TLK", "gvy\r\n   3.5000\r\n\r\n");
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"P1", nullptr), 0);
  ASSERT_NE(snd.m_tlk, nullptr);
  EXPECT_EQ(snd.bhbit[2] & 0x80, 0);
  bhdbstype rec = Record();
  snd.Snd2Bhbit(&rec);
  EXPECT_TRUE(rec.bit.Test(bhbit::Tlk));
}

TEST_F(BoreholeStatusTest, MapSymbolOnlyInVersionFourDatabases) {
  for (const wchar_t* version : {L"4.0", L"3.0"}) {
    CKorvoDbs dbs;
    korvo::CopyField(dbs.prjdat.Dbsver, version);
    dbs.Ny(1, nullptr);  // the record the database is saving, current
    korvo::CopyField(dbs.pael->id, L"P1");
    auto snd = NewDoc(&dbs);
    AddBlock(*snd, &CKorvoSnd::m_dreie, 21, 0, {{3.0f}});
    AddBlock(*snd, &CKorvoSnd::m_total, 25, 0, {});
    ASSERT_EQ(snd->Snd2Bhbit(dbs.pael), 0);
    // A borehole with rotary and total sounding.
    EXPECT_EQ(dbs.pael->symbol, version[0] == L'4' ? 1073741889 : -1) << version;
  }
}

TEST_F(BoreholeStatusTest, KindOfTheDocument) {
  const std::pair<const int*, const char*> cases[] = {
      {&CKorvoSnd::Bh, "01 00 00"},  {&CKorvoSnd::Gvr, "00 00 02"},
      {&CKorvoSnd::Mtn, "00 00 08"}, {&CKorvoSnd::Avp, "02 00 00"},
      {&CKorvoSnd::Vb, "00 80 00"},  {&CKorvoSnd::Stenlin, "00 00 00"}};
  for (const auto& [typ, bytes] : cases) {
    auto snd = NewDoc();
    snd->typ = typ;
    bhdbstype rec = Record();
    snd->Snd2Bhbit(&rec);
    EXPECT_EQ(Hex(rec.bit.b).substr(0, 8), bytes) << *typ;
  }
}

}  // namespace
