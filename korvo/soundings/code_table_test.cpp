#include "korvo/soundings/code_table.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "korvo/platform/env.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/testutil/code_settings.h"
#include "korvo/testutil/notices.h"
#include "korvo/testutil/temp_dir.h"

namespace {

class CodeTableTest : public testing::Test {
 protected:
  // The number of the row found, 0 for none.
  static int Number(const kod* row) { return row ? row->nummer : 0; }
  static int Find(int metod, const wchar_t* text, int mod = 0, int* antal = nullptr,
                  const wchar_t* key = L"", int alla = 0) {
    int n = -99;
    const int found =
        Number(CKorvoSnd::Findkod(metod, text, mod, antal ? antal : &n, key, L"KRV", alla));
    // The other system's entry point answers alike, whatever the tag.
    int m = -99;
    EXPECT_EQ(Number(CKorvoSnd::FindkodSGF(metod, text, mod, &m, key, L"SGF", alla)), found);
    return found;
  }

  korvo::test::CodeTableGuard table_;
};

TEST_F(CodeTableTest, WordsAreUpperCasedAndEitherFormOfACodeFindsItsRow) {
  int antal = 0;
  EXPECT_EQ(Find(21, L"sa", 0, &antal), 34);
  EXPECT_EQ(antal, 1);
  EXPECT_EQ(Find(21, L"34"), 34);
  EXPECT_EQ(Find(21, L"t\u00d8"), 31);  // national letters are not upper-cased
  EXPECT_EQ(Find(21, L"t\u00f8"), 0);
  EXPECT_EQ(Find(21, L"Sten 40", 0, &antal), 40);
  EXPECT_EQ(antal, 2);
  EXPECT_EQ(Find(21, L"", 0, &antal), 0);
  EXPECT_EQ(antal, -1);
  EXPECT_EQ(Find(21, L"   ", 0, &antal), 0);
  EXPECT_EQ(antal, -1);
}

TEST_F(CodeTableTest, TableOrderDecidesOverWordOrder) {
  EXPECT_EQ(Find(21, L"LE GR"), 32);
  EXPECT_EQ(Find(21, L"GR LE"), 32);
  EXPECT_EQ(Find(21, L"LE GR", 2), 35);
  EXPECT_EQ(Find(21, L"GR LE", 1), 35);
  int antal = 0;
  EXPECT_EQ(Find(21, L"SA", 3, &antal), 0);
  EXPECT_EQ(antal, 1);
  // Five words are looked at, a sixth is not.
  EXPECT_EQ(Find(21, L"a b c d SA"), 34);
  EXPECT_EQ(Find(21, L"a b c d e SA", 0, &antal), 0);
  EXPECT_EQ(antal, 5);
}

TEST_F(CodeTableTest, TextIsCutAtTheFirstMark) {
  int antal = 0;
  EXPECT_EQ(Find(21, L"SA,GR", 2, &antal), 0);
  EXPECT_EQ(antal, 1);
  EXPECT_EQ(Find(21, L"GR<SA"), 35);
  EXPECT_EQ(Find(21, L"sa>gr LE"), 34);
  EXPECT_EQ(Find(21, L"<LE", 0, &antal), 0);
  EXPECT_EQ(antal, -1);
}

TEST_F(CodeTableTest, ValidityPerMethodAndAlla) {
  EXPECT_EQ(Find(21, L"R1"), 0);
  EXPECT_EQ(Find(23, L"R1"), 70);
  EXPECT_EQ(Find(25, L"R1"), 70);
  EXPECT_EQ(Find(21, L"R1", 0, nullptr, L"", 1), 70);
  EXPECT_EQ(Find(7, L"F"), 0);
  EXPECT_EQ(Find(26, L"F"), 43);
  // A method that no entry covers takes only what `alla` allows.
  EXPECT_EQ(Find(35, L"SA"), 0);
  EXPECT_EQ(Find(35, L"SA", 0, nullptr, L"", 1), 34);
  // A word valid for another method does not hide a later valid one.
  EXPECT_EQ(Find(21, L"R1 GV"), 61);
}

TEST_F(CodeTableTest, ModeMinusOneAsksForTheCodeOfTheKey) {
  EXPECT_EQ(Find(25, L"MY 3", -1, nullptr, L"MY"), 81);
  EXPECT_EQ(Find(25, L"3 81", -1, nullptr, L"MY"), 81);
  EXPECT_EQ(Find(25, L"SA", -1, nullptr, L"MY"), 0);
  EXPECT_EQ(Find(25, L"", -1, nullptr, L"MY"), 0);
  // The key's row in word order, not the first code row of the text.
  EXPECT_EQ(Find(21, L"LE GR", -1, nullptr, L"GR"), 35);
  EXPECT_EQ(Find(21, L"LE GR", -1, nullptr, L"35"), 35);
  // A key that names no row, or none valid for the method, finds nothing.
  EXPECT_EQ(Find(21, L"XX", -1, nullptr, L"XX"), 0);
  EXPECT_EQ(Find(21, L"F", -1, nullptr, L"F"), 0);
  EXPECT_EQ(Find(26, L"F", -1, nullptr, L"F"), 43);
}

TEST_F(CodeTableTest, ModeMinusTwoTakesMaterialsOnly) {
  EXPECT_EQ(Find(21, L"ST"), 40);
  EXPECT_EQ(Find(21, L"ST", -2), 0);
  EXPECT_EQ(Find(21, L"ST SA", -2), 34);
  EXPECT_EQ(Find(21, L"10 GY", -2), 38);
  EXPECT_EQ(Find(21, L"GY ST SA", -2), 34);
}

TEST_F(CodeTableTest, OrderNumberOfTheFirstWord) {
  CKorvoSnd snd;
  EXPECT_EQ(snd.FindkodOrderNo(21, L"sa", 0), 6);
  EXPECT_EQ(snd.FindkodOrderNo(21, L"LE GR", 0), 4);
  EXPECT_EQ(snd.FindkodOrderNo(21, L"GR LE", 0), 7);
  EXPECT_EQ(snd.FindkodOrderNo(21, L"R1", 0), -1);
  EXPECT_EQ(snd.FindkodOrderNo(21, L"R1", 1), 17);
  EXPECT_EQ(snd.FindkodOrderNo(21, L"", 0), -1);
  EXPECT_EQ(snd.FindkodOrderNo(21, L"x,SA", 0), -1);
}

TEST_F(CodeTableTest, LoadWordPlaces) {
  EXPECT_EQ(CKorvoSnd::Findvikt(L"sl"), 9);
  EXPECT_EQ(CKorvoSnd::Findvikt(L"5"), 1);
  EXPECT_EQ(CKorvoSnd::Findvikt(L"Sl1"), 7);
  EXPECT_EQ(CKorvoSnd::Findvikt(L"10"), 0);
  EXPECT_EQ(CKorvoSnd::Findvikt(L"SL "), 0);
  EXPECT_EQ(CKorvoSnd::Findvikt(L""), 0);
}

// A project with its settings: korvo.ini and Kodfil.dat in ParKat.
class ReadKodTest : public CodeTableTest {
 protected:
  void Setting(const char* value) { project_.Setting(value); }
  void Open() { project_.Open(); }

  bool Valid(int metod, const wchar_t* code) {
    int n = 0;
    return CKorvoSnd::Findkod(metod, code, 0, &n, L"", L"SGF", 0) != nullptr;
  }
  bool EverythingValid() {
    for (const kod& row : CKorvoSnd::Akod1) {
      for (int v : row.metoder) {
        if (v != 1) return false;
      }
    }
    return true;
  }

  korvo::test::TempDir dir_;
  korvo::test::CodeSettings project_{dir_};
  korvo::test::Notices notices_;
  std::vector<std::wstring>& status_ = notices_.status;
};

TEST_F(ReadKodTest, WithoutSettingsStandardOrACodeSetWithoutKodfilTheTableStays) {
  CKorvoSnd plain(&project_.proj(), nullptr, nullptr);
  for (const char* value : {"STANDARD", "EGEN"}) {
    Setting(value);
    Open();
  }
  EXPECT_FALSE(Valid(21, L"R1"));
  EXPECT_TRUE(table_.Unchanged());
  EXPECT_TRUE(status_.empty());
}

TEST_F(ReadKodTest, AllaAndAnEmptyOrMissingValueMakeEveryCodeValid) {
  for (const char* value : {"ALLA", "", static_cast<const char*>(nullptr)}) {
    table_.Restore();
    Setting(value);
    Open();
    EXPECT_TRUE(EverythingValid()) << (value ? value : "no korvo.ini");
  }
}

TEST_F(ReadKodTest, AChangeStaysForTheRestOfTheProcess) {
  Setting("ALLA");
  Open();
  // A later project on the built-in table, and documents without settings,
  // go on with what the first one set.
  Setting("STANDARD");
  Open();
  CKorvoSnd without_settings;
  EXPECT_TRUE(Valid(21, L"R1"));
  EXPECT_TRUE(Valid(7, L"B2"));
  EXPECT_TRUE(EverythingValid());
}

TEST_F(ReadKodTest, ACodeSetIsReadFromKodfil) {
  Setting("EGEN");
  dir_.Write("par/Kodfil.dat",
             "X 34 1 0 0 0 0 0 0 0 0 0\r\n"
             "\r\n"
             "ensam\r\n"
             "y GR 0 0\r\n"
             "a zz 1\r\n"
             "q sa 0 0 0 0 0 0 0 0 0 0\r\n"
             "k 340 0 0 0 0 0 0 0 0 0 0\n"
             "m R1 1 1 1 1 1 1 1 1 1 1\n"
             "*\r\n"
             "X 36 0 0 0 0 0 0 0 0 0 0\r\n");
  Open();
  // Row 34 by its digits: valid for CPT only.
  const int cpt_only[10] = {1, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(std::memcmp(CKorvoSnd::Akod1[6].metoder, cpt_only, sizeof cpt_only), 0);
  EXPECT_TRUE(Valid(7, L"SA"));
  EXPECT_FALSE(Valid(21, L"SA"));
  // A short line overwrites only the first entries.
  const int gravel[10] = {0, 0, 1, 1, 1, 1, 1, 1, 1, 1};
  EXPECT_EQ(std::memcmp(CKorvoSnd::Akod1[7].metoder, gravel, sizeof gravel), 0);
  EXPECT_TRUE(Valid(21, L"R1"));
  // Behind the marker nothing counts; rows the file does not name keep theirs.
  EXPECT_TRUE(Valid(21, L"MO"));
  EXPECT_FALSE(Valid(21, L"B1"));

  const std::wstring path = project_.ini().ParKat + korvo::kPathSeparator + L"Kodfil.dat";
  ASSERT_EQ(status_.size(), 3u);
  EXPECT_EQ(status_[0], L"Fel kod A zz i " + path);
  // Words are compared as written: no upper-casing, and three digits at most.
  EXPECT_EQ(status_[1], L"Fel kod Q sa i " + path);
  EXPECT_EQ(status_[2], L"Fel kod K 340 i " + path);
}

}  // namespace
