#include "korvo/database/dbs_guid.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "korvo/database/korvo_dbs.h"
#include "korvo/testutil/rows.h"

namespace {

using korvo::test::EachRow;

std::vector<std::wstring> Guids(CDbsGUID& reg) {
  return EachRow(reg, [](const auto& r) { return std::wstring(r.guid); });
}

TEST(ProjectGuid, TextGoesIntoTheElevenWordsAndComesBackInSmallLetters) {
  CKorvoDbs dbs;
  dbs.prjdat.harguid = 1;
  dbs.SetGuidString(L"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9");
  const uint32_t expected[11] = {0x0A1B2C3D, 0x4E5F, 0x6071, 0x82, 0x93, 0xA4,
                                 0xB5,       0xC6,   0xD7,   0xE8, 0xF9};
  for (int i = 0; i < 11; ++i) EXPECT_EQ(dbs.prjdat.guid[i], expected[i]) << "word " << i;
  EXPECT_EQ(dbs.GetGuidString(), L"0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9");
}

TEST(ProjectGuid, WithoutHarguidTheTextIsEmptyEvenAfterSetting) {
  CKorvoDbs dbs;
  dbs.SetGuidString(L"00000001-0002-0003-0405-060708090a0b");
  EXPECT_EQ(dbs.prjdat.harguid, 0);
  EXPECT_EQ(dbs.prjdat.guid[0], 1u);
  EXPECT_EQ(dbs.prjdat.guid[10], 11u);
  EXPECT_EQ(dbs.GetGuidString(), L"");
  dbs.prjdat.harguid = 2;
  EXPECT_EQ(dbs.GetGuidString(), L"");
  // Leading zeros are kept and wide words narrowed.
  dbs.prjdat.harguid = 1;
  const uint32_t words[11] = {5, 0x12340006, 7, 0x1FF, 0, 1, 2, 3, 4, 5, 0xABCDEF10};
  std::copy(words, words + 11, dbs.prjdat.guid);
  EXPECT_EQ(dbs.GetGuidString(), L"00000005-0006-0007-ff00-010203040510");
}

TEST(ProjectGuid, TextsThatAreNoGuidLeaveTheWordsAsTheyWere) {
  const wchar_t* bad[] = {
      L"",
      L"0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f",    // one digit short
      L"0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f90",  // one too many
      L"0a1b2c3d-4e5f-6071-8293a-4b5c6d7e8f9",   // hyphen misplaced
      L"0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8fg",   // not hexadecimal
      L"{0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8}",   // braces
      L"0a1b2c3d 4e5f 6071 8293 a4b5c6d7e8f9",   // blanks for hyphens
  };
  for (const wchar_t* text : bad) {
    CKorvoDbs dbs;
    dbs.prjdat.harguid = 1;
    dbs.SetGuidString(L"11111111-2222-3333-4444-555555555555");
    dbs.SetGuidString(text);
    EXPECT_EQ(dbs.GetGuidString(), L"11111111-2222-3333-4444-555555555555") << text;
  }
}

TEST(GuidRegister, EqualGuidsStandSideBySideAfterSortingWhateverTheirPoint) {
  CDbsGUID reg;
  korvo::RegisterGuid(reg, 21, L"5b0c-aaaa", L"P1");
  korvo::RegisterGuid(reg, 97, L"12ff-bbbb", L"P2");
  korvo::RegisterGuid(reg, 25, L"5b0c-aaaa", L"P3");
  korvo::RegisterGuid(reg, 22, L"5b0c-AAAB", L"P4");
  korvo::RegisterGuid(reg, 23, L"12ff-bbbb", L"P5");
  reg.Sortera(1);
  EXPECT_EQ(Guids(reg), (std::vector<std::wstring>{L"5b0c-aaaa", L"5b0c-aaaa", L"5b0c-AAAB",
                                                   L"12ff-bbbb", L"12ff-bbbb"}));
  // Equal GUIDs keep the order in which they were registered.
  EXPECT_EQ(EachRow(reg, [](const auto& r) { return std::wstring(r.id); }),
            (std::vector<std::wstring>{L"P1", L"P3", L"P4", L"P2", L"P5"}));
}

TEST(GuidRegister, GuidsBeginningWithALetterGoBehindThoseWithDigits) {
  CDbsGUID reg;
  for (const wchar_t* g : {L"e1000000-0", L"99999998-0", L"a0000000-0", L"00000123-0"}) {
    korvo::RegisterGuid(reg, 97, g, L"P");
  }
  reg.Sortera(1);
  EXPECT_EQ(Guids(reg), (std::vector<std::wstring>{L"00000123-0", L"99999998-0", L"a0000000-0",
                                                   L"e1000000-0"}));
  reg.Sortera(-1);
  EXPECT_EQ(Guids(reg), (std::vector<std::wstring>{L"e1000000-0", L"a0000000-0", L"99999998-0",
                                                   L"00000123-0"}));
  reg.Sortera(2);  // no order: rows stay
  EXPECT_EQ(Guids(reg).front(), L"e1000000-0");
}

TEST(GuidRegister, NameOrderIsNumberFirstThenText) {
  CDbsGUID reg;
  for (const wchar_t* name : {L"10", L"9", L"9A", L"ABC", L"AB", L"ab0"}) {
    korvo::RegisterGuid(reg, 97, name, L"");
  }
  reg.Sortera(1);
  // Compared in capitals, so "ab0" sorts as "AB0", between "AB" and "ABC".
  EXPECT_EQ(Guids(reg), (std::vector<std::wstring>{L"9", L"9A", L"10", L"AB", L"ab0", L"ABC"}));
  EXPECT_EQ(korvo::NameOrder(L"9", L"9", 1), 0);
  EXPECT_EQ(korvo::NameOrder(L"9", L"9", -1), 1);
  EXPECT_EQ(korvo::NameOrder(L"9", L"10", 3), 0);
}

TEST(GuidRegister, EntriesAreCutToTheirFieldsAndMethodsNamed) {
  CDbsGUID reg;
  korvo::RegisterGuid(reg, 45, std::wstring(40, L'f'), L"LONGNAME9");
  EXPECT_EQ(reg.pael->metod, 45);
  EXPECT_EQ(std::wstring(reg.pael->guid), std::wstring(36, L'f'));
  EXPECT_EQ(std::wstring(reg.pael->id), L"LONGNAME");
  std::wstring names;  // for the fault log
  for (int m : {0, 11, 20, 23, 45, 97, static_cast<int>(korvo::kGuidProject), 10, -1}) {
    names += korvo::GuidMethodName(m) + std::wstring(L"|");
  }
  EXPECT_EQ(names,
            L"HfA|JB-total|Wane test|Dreietrykk|Env investigation|Borehole|Unknown method|"
            L"Unknown method|Unknown method|");
}

}  // namespace
