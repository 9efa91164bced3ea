#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "korvo/context/proj_path.h"
#include "korvo/database/dbs_guid.h"
#include "korvo/database/dbs_records.h"
#include "korvo/database/korvo_dbs.h"
#include "korvo/foundation/field_text.h"
#include "korvo/foundation/messages.h"
#include "korvo/observations/korvo_tlk.h"
#include "korvo/soundings/basic_methods.h"
#include "korvo/soundings/korvo_cpt.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/soundings/rock_methods.h"
#include "korvo/testutil/point_project.h"

namespace {

template <class Block>
void AddRow(Block* block, float djup, const wchar_t* anm = L"") {
  block->Ny(1, nullptr);
  block->pael->djup = djup;
  korvo::CopyField(block->pael->anm, anm);
}

// A record as the database hands it over: zeros but for the name.
bhdbstype Record(const wchar_t* id) {
  bhdbstype rec{};
  korvo::CopyField(rec.id, id);
  return rec;
}

struct Entry {
  int metod;
  std::wstring guid;
  std::wstring id;
  bool operator==(const Entry&) const = default;
};

std::vector<Entry> Entries(CDbsGUID& reg) {
  std::vector<Entry> out;
  if (reg.Home() == 0) {
    do out.push_back({reg.pael->metod, reg.pael->guid, reg.pael->id});
    while (reg++);
  }
  return out;
}

// The "berg" rows of an interpretation as (level, kalla, kalla2).
struct Rock {
  float niva;
  int kalla;
  int kalla2;
};

std::vector<Rock> RockRows(CKorvoTlk* tlk) {
  std::vector<Rock> out;
  if (tlk != nullptr && tlk->Home() == 0) {
    do {
      if (std::wstring(tlk->pael->namn) == L"berg") {
        out.push_back({tlk->pael->niva, tlk->pael->kalla, tlk->pael->kalla2});
      }
    } while ((*tlk)++);
  }
  return out;
}

// A project with its field directory; documents named P1 in it.
class BoreholeStatusTest : public korvo::test::PointProjectTest {
 protected:
  // A new borehole document with no parts.
  std::unique_ptr<CKorvoSnd> NewDoc(CKorvoDbs* dbs = nullptr) {
    auto snd = std::make_unique<CKorvoSnd>(&proj_, dbs);
    korvo::CopyField(snd->id, L"P1");
    snd->typ = &CKorvoSnd::Bh;
    snd->z = 50.0;
    return snd;
  }

  // Saves `snd` and reads it back into a new document, whose Init fills the
  // status of the document.
  std::unique_ptr<CKorvoSnd> Reload(CKorvoSnd& snd) {
    EXPECT_EQ(snd.Uppdat(nullptr, nullptr), 0);
    auto back = std::make_unique<CKorvoSnd>(&proj_, nullptr);
    EXPECT_EQ(back->Init(L"P1", nullptr), 0);
    return back;
  }

  static ::bhbit DocBits(const CKorvoSnd& snd) {
    ::bhbit bits;
    std::copy(snd.bhbit, snd.bhbit + 7, bits.b);
    return bits;
  }

  std::filesystem::path TlkFile() const { return dir_.path() / "Dbf" / "P1.TLK"; }
};

TEST_F(BoreholeStatusTest, DocumentWithoutBlocks) {
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"P1", nullptr), 0);  // no files at all
  float djup = 0.0f;
  EXPECT_EQ(snd.GetMaxDjup(&djup), 0);
  EXPECT_EQ(djup, 0.0f);
  djup = 7.5f;  // the caller's start value stays when nothing is deeper
  snd.GetMaxDjup(&djup);
  EXPECT_EQ(djup, 7.5f);
  int stopp = 120;
  EXPECT_EQ(snd.GetMaxStopp(&stopp), 0);
  EXPECT_EQ(stopp, 90);
  EXPECT_EQ(snd.MyKod(), -1);
  double my = 3.0;
  EXPECT_EQ(snd.MyKod(&my), -1);
  EXPECT_EQ(my, 0.0);
  EXPECT_EQ(snd.IfDigitaliserad(), 0);
  for (unsigned char byte : snd.bhbit) EXPECT_EQ(byte, 0);

  snd.x = 1.5;
  snd.y = 2.5;
  snd.z = 3.5;
  snd.sek = 120.0;
  snd.avst = -4.0;
  korvo::CopyField(snd.datum, L"01.02.2023");
  bhdbstype rec = Record(L"P1");
  rec.symbol = 17;
  EXPECT_EQ(snd.Snd2Bhbit(&rec), 0);
  EXPECT_EQ(rec.x, 1.5);
  EXPECT_EQ(rec.y, 2.5);
  EXPECT_EQ(rec.z, 3.5);
  EXPECT_EQ(rec.sekt, 120.0);
  EXPECT_EQ(rec.avst, -4.0);
  EXPECT_EQ(rec.djup, 0.0f);
  EXPECT_EQ(rec.stopp, 90);
  EXPECT_EQ(rec.berg, 0.0);
  EXPECT_EQ(rec.symbol, -1);
  EXPECT_STREQ(rec.datum, L"01.02.2023");
  for (uint8_t byte : rec.bit.b) EXPECT_EQ(byte, 0);  // no kind: nothing was read
  EXPECT_FALSE(std::filesystem::exists(TlkFile()));
}

TEST_F(BoreholeStatusTest, CptBesideDreie) {
  CKorvoDbs dbs;
  CDbsGUID reg;
  dbs.guidreg = &reg;
  auto snd = NewDoc(&dbs);
  snd->guid = L"doc-guid";
  snd->text1 = L"Comment";
  snd->New(7);
  snd->New(21);
  snd->m_cpt->stopp = 93;
  snd->m_cpt->digit = 1;
  snd->m_cpt->guid = L"cpt-guid";
  AddRow(snd->m_cpt, 0.5f, L"MY");
  AddRow(snd->m_cpt, 8.25f);
  snd->m_dreie->stopp = 120;  // no stop code: counts as 90
  snd->m_dreie->guid = L"dreie-guid";
  AddRow(snd->m_dreie, 1.0f);
  AddRow(snd->m_dreie, 1.75f, L"MY");
  AddRow(snd->m_dreie, 6.0f);

  int stopp = 0;
  snd->GetMaxStopp(&stopp);
  EXPECT_EQ(stopp, 93);
  EXPECT_EQ(snd->IfDigitaliserad(), 1);
  // The Dreie is asked before the CPT.
  double my = 0.0;
  EXPECT_EQ(snd->MyKod(&my), 0);
  EXPECT_DOUBLE_EQ(my, 1.75);

  bhdbstype rec = Record(L"P1");
  ASSERT_EQ(snd->Snd2Bhbit(&rec), 0);
  EXPECT_EQ(rec.djup, 8.25f);
  EXPECT_EQ(rec.stopp, 93);
  EXPECT_DOUBLE_EQ(rec.mykod, 1.75);
  EXPECT_TRUE(rec.bit.Test(bhbit::Bh));
  EXPECT_TRUE(rec.bit.Test(bhbit::Cpt));
  EXPECT_TRUE(rec.bit.Test(bhbit::Dreie));
  EXPECT_TRUE(rec.bit.Test(bhbit::Mykod));
  EXPECT_TRUE(rec.bit.Test(bhbit::Kommentar));
  EXPECT_FALSE(rec.bit.Test(bhbit::Ram));
  EXPECT_FALSE(rec.bit.Test(bhbit::Lutande));
  EXPECT_FALSE(rec.bit.Test(bhbit::Tlk));
  EXPECT_EQ(rec.berg, 0.0);
  EXPECT_EQ(Entries(reg),
            (std::vector<Entry>{
                {97, L"doc-guid", L"P1"}, {7, L"cpt-guid", L"P1"}, {21, L"dreie-guid", L"P1"}}));

  // Flags that no part backs any longer are cleared.
  bhdbstype old = Record(L"P1");
  old.bit.Set(bhbit::Ram);
  old.bit.Set(bhbit::Mykod);
  old.bit.Set(bhbit::Startvarde);
  old.bit.Set(bhbit::Skv);
  old.bit.Set(bhbit::Prvtyp);
  old.bit.Set(bhbit::Dpt);
  snd->text1.clear();
  snd->m_cpt->Home();
  snd->m_cpt->pael->anm[0] = L'\0';
  snd->m_dreie->Home();
  (*snd->m_dreie)++;
  snd->m_dreie->pael->anm[0] = L'\0';
  snd->Snd2Bhbit(&old);
  EXPECT_EQ(old.bit.b[0], 0x01);  // Bh only
  EXPECT_EQ(old.bit.b[1], 0);
  EXPECT_EQ(old.bit.b[2], 0);
  EXPECT_EQ(old.bit.b[3], 0);
  EXPECT_EQ(old.bit.b[5], 0x01);  // Dreie only
  EXPECT_EQ(old.bit.b[6], 0);
  EXPECT_EQ(old.mykod, 0.0);

  // Read back, the document's own flags agree.
  snd->m_dbs = nullptr;
  auto back = Reload(*snd);
  const ::bhbit bits = DocBits(*back);
  EXPECT_EQ(bits.b[0], 0x01);
  EXPECT_EQ(bits.b[4], 0x01);
  EXPECT_EQ(bits.b[5], 0x01);
  EXPECT_FALSE(bits.Test(bhbit::Mykod));
}

TEST_F(BoreholeStatusTest, StopCodesOutsideTheirRangeCountAsOrdinary) {
  auto snd = NewDoc();
  snd->New(24);
  snd->New(25);
  snd->m_ram->stopp = 95;
  snd->m_total->stopp = 89;
  int stopp = 94;  // what the caller held does not count
  snd->GetMaxStopp(&stopp);
  EXPECT_EQ(stopp, 90);
  snd->m_ram->stopp = 94;
  snd->GetMaxStopp(&stopp);
  EXPECT_EQ(stopp, 94);
}

TEST_F(BoreholeStatusTest, StartDepthsAcrossBlocks) {
  auto snd = NewDoc();
  snd->startdjup = 2.0f;
  snd->New(21);
  snd->New(22);
  AddRow(snd->m_dreie, 1.98f);
  AddRow(snd->m_dreie, 10.0f);
  AddRow(snd->m_enkel, 10.0f);
  AddRow(snd->m_enkel, 12.0f);
  auto back = Reload(*snd);
  EXPECT_NEAR(back->m_dreie->startdjup, 1.98, 1e-6);
  EXPECT_NEAR(back->m_enkel->startdjup, 10.0, 1e-6);
  const ::bhbit bits = DocBits(*back);
  EXPECT_EQ(bits.b[0], 0x01);
  EXPECT_EQ(bits.b[5], 0x03);  // Dreie and Enkel
}

TEST_F(BoreholeStatusTest, FirstRowJustBelowThePointStartsTheBlockAtThePoint) {
  // From the maximum rule alone: the point starts at 2.0, the first row at 2.03.
  auto alone = NewDoc();
  alone->startdjup = 2.0f;
  alone->New(21);
  AddRow(alone->m_dreie, 2.03f);
  AddRow(alone->m_dreie, 5.0f);
  EXPECT_NEAR(Reload(*alone)->m_dreie->startdjup, 2.0, 1e-6);

  // Behind a CPT that went to 3.0: a first row at 2.03 is within the slack
  // of the point's start and starts there; one at 2.10 starts at itself.
  for (float first : {2.03f, 2.10f}) {
    auto snd = NewDoc();
    snd->startdjup = 2.0f;
    snd->New(7);
    snd->New(21);
    AddRow(snd->m_cpt, 2.5f);
    AddRow(snd->m_cpt, 3.0f);
    AddRow(snd->m_dreie, first);
    AddRow(snd->m_dreie, 8.0f);
    auto back = Reload(*snd);
    EXPECT_NEAR(back->m_cpt->startdjup, 2.0, 1e-6);
    EXPECT_NEAR(back->m_dreie->startdjup, first == 2.03f ? 2.0 : 2.10, 1e-6) << first;
  }

  // A block without rows starts where the blocks before it ended.
  auto empty = NewDoc();
  empty->startdjup = 1.0f;
  empty->New(7);
  empty->New(23);
  AddRow(empty->m_cpt, 4.0f);
  auto back = Reload(*empty);
  EXPECT_NEAR(back->m_dtrykk->startdjup, 4.0, 1e-6);
}

TEST_F(BoreholeStatusTest, InclinedHole) {
  for (double lutning : {89.6, 89.4, 60.0, 0.0}) {
    auto snd = NewDoc();
    snd->lutning = lutning;
    snd->New(21);
    AddRow(snd->m_dreie, 4.0f);
    const bool inclined = lutning != 89.6;
    EXPECT_EQ(DocBits(*Reload(*snd)).Test(bhbit::Lutande), inclined) << lutning;
    bhdbstype rec = Record(L"P1");
    snd->Snd2Bhbit(&rec);
    EXPECT_EQ(rec.bit.Test(bhbit::Lutande), inclined) << lutning;
  }

  // At 60 degrees, 10 metres along the hole are 8.66 in depth. An angle of 0
  // is what old files hold, and counts as vertical here.
  for (double lutning : {60.0, 0.0, 90.0}) {
    auto snd = NewDoc();
    snd->lutning = lutning;
    ASSERT_EQ(snd->TolkatBerg(10.0f), 0);
    const std::vector<Rock> rows = RockRows(snd->m_tlk);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_FLOAT_EQ(rows[0].niva, lutning == 60.0 ? 41.34f : 40.0f) << lutning;
  }
}

TEST_F(BoreholeStatusTest, RockInTotalWithTwoAndAHalfAndThreeMetresBelow) {
  for (float bottom : {12.5f, 13.0f}) {
    auto snd = NewDoc();
    snd->New(25);
    snd->m_total->stopp = 93;
    AddRow(snd->m_total, 2.0f);
    AddRow(snd->m_total, 10.0f, L"F");
    AddRow(snd->m_total, bottom);
    bhdbstype rec = Record(L"P1");
    ASSERT_EQ(snd->Snd2Bhbit(&rec), 0);
    EXPECT_DOUBLE_EQ(rec.berg, bottom - 10.0);
    EXPECT_TRUE(rec.bit.Test(bhbit::Total));
    EXPECT_TRUE(rec.bit.Test(bhbit::Tlk));
    const int kod = bottom >= 13.0f ? 5 : 4;
    const std::vector<Rock> rows = RockRows(snd->m_tlk);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_FLOAT_EQ(rows[0].niva, 40.0f);
    EXPECT_EQ(rows[0].kalla, kod);
    EXPECT_EQ(rows[0].kalla2, kod);
  }
}

TEST_F(BoreholeStatusTest, RockInFjellAndTheDeeperOfBoth) {
  auto snd = NewDoc();
  snd->New(26);
  snd->m_fjell->stopp = 94;
  AddRow(snd->m_fjell, 4.0f);
  AddRow(snd->m_fjell, 5.0f, L"F");
  AddRow(snd->m_fjell, 8.0f);
  bhdbstype rec = Record(L"P1");
  snd->Snd2Bhbit(&rec);
  EXPECT_DOUBLE_EQ(rec.berg, 3.0);
  EXPECT_TRUE(rec.bit.Test(bhbit::Fjell));
  std::vector<Rock> rows = RockRows(snd->m_tlk);
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_FLOAT_EQ(rows[0].niva, 45.0f);
  EXPECT_EQ(rows[0].kalla2, 5);

  // A Total that met rock deeper: the metres in rock are the larger of the
  // two, and the rock row moves to what the Fjell, asked last, says.
  snd->New(25);
  snd->m_total->stopp = 93;
  AddRow(snd->m_total, 6.0f, L"F");
  AddRow(snd->m_total, 6.5f);
  rec = Record(L"P1");
  snd->Snd2Bhbit(&rec);
  EXPECT_DOUBLE_EQ(rec.berg, 3.0);
  rows = RockRows(snd->m_tlk);
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_FLOAT_EQ(rows[0].niva, 45.0f);

  // A stop code that does not allow rock: no metres, no rock row.
  auto no_rock = NewDoc();
  no_rock->New(26);
  no_rock->m_fjell->stopp = 92;
  AddRow(no_rock->m_fjell, 5.0f, L"F");
  rec = Record(L"P1");
  no_rock->Snd2Bhbit(&rec);
  EXPECT_EQ(rec.berg, 0.0);
  EXPECT_EQ(no_rock->m_tlk, nullptr);
  EXPECT_FALSE(rec.bit.Test(bhbit::Tlk));
}

TEST_F(BoreholeStatusTest, RockLevelReachesTheTlkFileExactlyOnce) {
  auto snd = NewDoc();
  snd->New(25);
  snd->m_total->stopp = 93;
  AddRow(snd->m_total, 10.0f, L"F");
  AddRow(snd->m_total, 14.0f);
  bhdbstype rec = Record(L"P1");
  ASSERT_EQ(snd->Snd2Bhbit(&rec), 0);
  ASSERT_TRUE(std::filesystem::exists(TlkFile()));
  EXPECT_EQ(dir_.Read("Dbf/P1.TLK"),
            "berg 1 5 5\r\n  40.0000 \r\n  0.00   0.00   0.00   0.00   0.00   0.00\r\n*\r\n");

  // The second round (the database's, after the save) finds the rock in
  // place and does not save again.
  std::filesystem::remove(TlkFile());
  rec = Record(L"P1");
  ASSERT_EQ(snd->Snd2Bhbit(&rec), 0);
  EXPECT_FALSE(std::filesystem::exists(TlkFile()));
  EXPECT_DOUBLE_EQ(rec.berg, 4.0);
  EXPECT_TRUE(rec.bit.Test(bhbit::Tlk));

  // A document read back has the one rock row, and its status counts it.
  auto back = Reload(*snd);
  EXPECT_EQ(RockRows(back->m_tlk).size(), 1u);
  EXPECT_TRUE(DocBits(*back).Test(bhbit::Tlk));
  EXPECT_TRUE(notices_.messages.empty());
}

TEST_F(BoreholeStatusTest, RockGivenAsALevel) {
  auto snd = NewDoc();
  EXPECT_EQ(snd->TolkatZBerg(41.236), 0);
  EXPECT_EQ(snd->TolkatZBerg(41.24), -1);  // already there
  const std::vector<Rock> rows = RockRows(snd->m_tlk);
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_FLOAT_EQ(rows[0].niva, 41.24f);
  EXPECT_EQ(rows[0].kalla, 5);
  EXPECT_EQ(rows[0].kalla2, 5);
}

TEST_F(BoreholeStatusTest, GroundWaterLevelAloneCountsOnlyInTheRecord) {
  dir_.Write("Dbf/P1.TLK", "gvy\r\n   3.5000\r\n\r\n");
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"P1", nullptr), 0);
  ASSERT_NE(snd.m_tlk, nullptr);
  EXPECT_FALSE(DocBits(snd).Test(bhbit::Tlk));
  bhdbstype rec = Record(L"P1");
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
    snd->New(21);
    snd->New(25);
    AddRow(snd->m_dreie, 3.0f);
    ASSERT_EQ(snd->Snd2Bhbit(dbs.pael), 0);
    // A borehole with rotary and total sounding.
    EXPECT_EQ(dbs.pael->symbol, version[0] == L'4' ? 1073741889 : -1) << version;
  }
}

TEST_F(BoreholeStatusTest, KindOfTheDocument) {
  struct Case {
    const int* typ;
    uint8_t byte0, byte1, byte2;
  };
  const Case cases[] = {{&CKorvoSnd::Bh, 0x01, 0, 0},  {&CKorvoSnd::Gvr, 0, 0, 0x02},
                        {&CKorvoSnd::Mtn, 0, 0, 0x08}, {&CKorvoSnd::Avp, 0x02, 0, 0},
                        {&CKorvoSnd::Vb, 0, 0x80, 0},  {&CKorvoSnd::Stenlin, 0, 0, 0}};
  for (const Case& c : cases) {
    auto snd = NewDoc();
    snd->typ = c.typ;
    bhdbstype rec = Record(L"P1");
    snd->Snd2Bhbit(&rec);
    EXPECT_EQ(rec.bit.b[0], c.byte0) << *c.typ;
    EXPECT_EQ(rec.bit.b[1], c.byte1) << *c.typ;
    EXPECT_EQ(rec.bit.b[2], c.byte2) << *c.typ;
  }
}

}  // namespace
