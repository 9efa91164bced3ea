#include "korvo/soundings/code_table.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "korvo/foundation/format.h"
#include "korvo/platform/env.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/testutil/code_settings.h"
#include "korvo/testutil/notices.h"
#include "korvo/testutil/temp_dir.h"

namespace {

// The number of the row found, 0 for none.
int Number(const kod* row) {
  return row ? row->nummer : 0;
}

class CodeTableTest : public testing::Test {
 protected:
  korvo::test::CodeTableGuard table_;
};

TEST_F(CodeTableTest, FindkodUnderTheBuiltInTable) {
  constexpr int kAny = -99;  // the count of words is not looked at
  const struct {
    int metod;
    const wchar_t* text;
    int mod;
    const wchar_t* key;
    int alla;
    int found;
    int antal;
  } cases[] = {
      // Words are upper-cased, national letters not; either form of a code
      // finds its row.
      {21, L"sa", 0, L"", 0, 34, 1},
      {21, L"34", 0, L"", 0, 34, kAny},
      {21, L"t\u00d8", 0, L"", 0, 31, kAny},
      {21, L"t\u00f8", 0, L"", 0, 0, kAny},
      {21, L"Sten 40", 0, L"", 0, 40, 2},
      {21, L"", 0, L"", 0, 0, -1},
      {21, L"   ", 0, L"", 0, 0, -1},
      // Table order decides over word order; `mod` skips that many found.
      {21, L"LE GR", 0, L"", 0, 32, kAny},
      {21, L"GR LE", 0, L"", 0, 32, kAny},
      {21, L"LE GR", 2, L"", 0, 35, kAny},
      {21, L"GR LE", 1, L"", 0, 35, kAny},
      {21, L"SA", 3, L"", 0, 0, 1},
      // Five words are looked at, a sixth is not.
      {21, L"a b c d SA", 0, L"", 0, 34, kAny},
      {21, L"a b c d e SA", 0, L"", 0, 0, 5},
      // The text is cut at the first mark.
      {21, L"SA,GR", 2, L"", 0, 0, 1},
      {21, L"GR<SA", 0, L"", 0, 35, kAny},
      {21, L"sa>gr LE", 0, L"", 0, 34, kAny},
      {21, L"<LE", 0, L"", 0, 0, -1},
      // Validity per method; `alla` takes every code, also for a method that
      // no entry covers. A word valid for another method does not hide a
      // later valid one.
      {21, L"R1", 0, L"", 0, 0, kAny},
      {23, L"R1", 0, L"", 0, 70, kAny},
      {25, L"R1", 0, L"", 0, 70, kAny},
      {21, L"R1", 0, L"", 1, 70, kAny},
      {7, L"F", 0, L"", 0, 0, kAny},
      {26, L"F", 0, L"", 0, 43, kAny},
      {35, L"SA", 0, L"", 0, 0, kAny},
      {35, L"SA", 0, L"", 1, 34, kAny},
      {21, L"R1 GV", 0, L"", 0, 61, kAny},
      // Mode -1 asks for the code of the key, in word order; a key that names
      // no row, or none valid for the method, finds nothing.
      {25, L"MY 3", -1, L"MY", 0, 81, kAny},
      {25, L"3 81", -1, L"MY", 0, 81, kAny},
      {25, L"SA", -1, L"MY", 0, 0, kAny},
      {25, L"", -1, L"MY", 0, 0, kAny},
      {21, L"LE GR", -1, L"GR", 0, 35, kAny},
      {21, L"LE GR", -1, L"35", 0, 35, kAny},
      {21, L"XX", -1, L"XX", 0, 0, kAny},
      {21, L"F", -1, L"F", 0, 0, kAny},
      {26, L"F", -1, L"F", 0, 43, kAny},
      // Mode -2 takes materials only.
      {21, L"ST", 0, L"", 0, 40, kAny},
      {21, L"ST", -2, L"", 0, 0, kAny},
      {21, L"ST SA", -2, L"", 0, 34, kAny},
      {21, L"10 GY", -2, L"", 0, 38, kAny},
      {21, L"GY ST SA", -2, L"", 0, 34, kAny},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(korvo::Format(L"%d [%s] %d [%s]", c.metod, c.text, c.mod, c.key));
    int antal = kAny;
    EXPECT_EQ(Number(CKorvoSnd::Findkod(c.metod, c.text, c.mod, &antal, c.key, L"KRV", c.alla)),
              c.found);
    if (c.antal != kAny) {
      EXPECT_EQ(antal, c.antal);
    }
    // The other system's entry point answers alike, whatever the tag.
    EXPECT_EQ(Number(CKorvoSnd::FindkodSGF(c.metod, c.text, c.mod, &antal, c.key, L"SGF", c.alla)),
              c.found);
  }
}

TEST_F(CodeTableTest, OrderNumberOfTheFirstWordAndLoadWordPlaces) {
  CKorvoSnd snd;
  EXPECT_EQ(snd.FindkodOrderNo(21, L"sa", 0), 6);
  EXPECT_EQ(snd.FindkodOrderNo(21, L"LE GR", 0), 4);
  EXPECT_EQ(snd.FindkodOrderNo(21, L"GR LE", 0), 7);
  EXPECT_EQ(snd.FindkodOrderNo(21, L"R1", 0), -1);
  EXPECT_EQ(snd.FindkodOrderNo(21, L"R1", 1), 17);
  EXPECT_EQ(snd.FindkodOrderNo(21, L"", 0), -1);
  EXPECT_EQ(snd.FindkodOrderNo(21, L"x,SA", 0), -1);

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
  static bool Valid(int metod, const wchar_t* code) {
    int n = 0;
    return CKorvoSnd::Findkod(metod, code, 0, &n, L"", L"SGF", 0) != nullptr;
  }
  static bool EverythingValid() {
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
};

TEST_F(ReadKodTest, OnlyAllaOrNoValueChangesTheTableAndTheChangeStays) {
  // Without settings, STANDARD, or a code set without Kodfil: the table stays.
  CKorvoSnd plain(&project_.proj(), nullptr, nullptr);
  for (const char* value : {"STANDARD", "EGEN"}) {
    project_.Setting(value);
    project_.Open();
  }
  EXPECT_TRUE(table_.Unchanged());
  EXPECT_TRUE(notices_.status.empty());

  for (const char* value : {"", static_cast<const char*>(nullptr), "ALLA"}) {
    table_.Restore();
    project_.Setting(value);
    project_.Open();
    EXPECT_TRUE(EverythingValid()) << (value ? value : "no korvo.ini");
  }
  // A later project on the built-in table, and documents without settings,
  // go on with what the first one set.
  project_.Setting("STANDARD");
  project_.Open();
  CKorvoSnd without_settings;
  EXPECT_TRUE(EverythingValid());
}

TEST_F(ReadKodTest, ACodeSetIsReadFromKodfil) {
  project_.Setting("EGEN");
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
  project_.Open();
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

  // Words are compared as written: no upper-casing, and three digits at most.
  const std::wstring path = project_.ini().ParKat + korvo::kPathSeparator + L"Kodfil.dat";
  EXPECT_EQ(notices_.status,
            (std::vector<std::wstring>{L"Fel kod A zz i " + path, L"Fel kod Q sa i " + path,
                                       L"Fel kod K 340 i " + path}));
}

}  // namespace
