#include "korvo/soundings/korvo_cpt.h"

#include <gtest/gtest.h>

#include <string>

#include "korvo/foundation/field_text.h"
#include "korvo/foundation/format.h"
#include "korvo/observations/korvo_tlk.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/testutil/code_settings.h"
#include "korvo/testutil/rows.h"
#include "korvo/testutil/temp_dir.h"

namespace {

using korvo::test::Texts;

// A point at ground level 10 with an empty interpretation. The code table is
// process-wide and a project setting changes it for good: it is put back when
// each test ends.
class AutoTolkTest : public testing::Test {
 protected:
  void SetUp() override {
    snd_.z = 10.0;
    ASSERT_EQ(snd_.New(60), 1);
  }

  // Opens a document of a project whose code setting is ALLA.
  void ProjectWithAllCodes() {
    korvo::test::CodeSettings project(dir_);
    project.Setting("ALLA");
    project.Open();
  }
  static void Row(CKorvoCpt& cpt, float djup, const wchar_t* anm) {
    cpttype row{};
    row.djup = djup;
    korvo::CopyField(row.anm, anm);
    cpt.Ny(1, &row);
  }
  void Row(float djup, const wchar_t* anm) { Row(cpt_, djup, anm); }
  // The interpretation's rows from the top as "name level".
  static Texts Interpreted(CKorvoSnd& snd) {
    return korvo::test::EachRow(
        *snd.m_tlk, [](const matetype& r) { return korvo::Format(L"%s %g", r.namn, r.niva); });
  }
  // Rows whose remarks mix materials, stretches without one, words that are
  // no codes and keys that the code table doesn't hold.
  void MixedRows() {
    Row(0.0f, L"");         // none, at the surface
    Row(1.0f, L"le");       // after a stretch at the surface: no unknown layer
    Row(2.0f, L"sa LE");    // LE comes before SA among the keys
    Row(3.0f, L"ABC 12");   // no codes
    Row(4.0f, L"Lerig");    // a word that only begins like a code
    Row(5.0f, L"SA");       // closes the stretch from 4 with an unknown layer
    Row(6.0f, L"GR F");     // F counts only where the code is valid for a CPT
    Row(7.0f, L"gy");       // a material in its coarse group
    Row(8.0f, L"MN B BL");  // keys that the code table doesn't hold
    Row(9.0f, L"ST");       // a code that is no material still names one
    Row(9.5f, L"SI,LE");    // the words behind the comma don't count
    Row(9.75f, L"gr");      // a material in its coarse group
  }

  korvo::test::TempDir dir_;
  CKorvoSnd snd_;
  CKorvoCpt cpt_{1, 0, 0};
  korvo::test::CodeTableGuard table_;
};

TEST_F(AutoTolkTest, MixedRemarksUnderTheBuiltInTable) {
  MixedRows();
  ASSERT_EQ(cpt_.AutoTolk(&snd_, 1.0, 0), 0);
  EXPECT_EQ(Interpreted(snd_), (Texts{L"lera 9", L"lera 8", L"X 6", L"sand 5", L"grus 4",
                                      L"gyttja 3", L"X 2", L"sten 1", L"silt 0.5", L"grus 0.25"}));
}

TEST_F(AutoTolkTest, MixedRemarksUnderAllaInCoarseGroups) {
  ProjectWithAllCodes();
  MixedRows();
  ASSERT_EQ(cpt_.AutoTolk(&snd_, 1.0, 1), 0);
  // F is now valid for a CPT and comes before GR; MN, B and BL still name
  // nothing, since the table has no such codes.
  EXPECT_EQ(Interpreted(snd_),
            (Texts{L"lera 9", L"lera 8", L"X 6", L"friktjord 5", L"fyllning 4", L"lera 3", L"X 2",
                   L"friktjord 1", L"lera 0.5", L"friktjord 0.25"}));
}

TEST_F(AutoTolkTest, StretchesWithoutMaterialAtTheEdges) {
  // A first row with a material gives no unknown layer, however deep.
  Row(2.0f, L"SA");
  Row(3.0f, L"");
  Row(3.5f, L"GR");
  ASSERT_EQ(cpt_.AutoTolk(&snd_, 0.5, 0), 0);
  // Depths become levels through the factor.
  EXPECT_EQ(Interpreted(snd_), (Texts{L"sand 9", L"X 8.5", L"grus 8.25"}));
  EXPECT_EQ(cpt_.Where(nullptr), 3);  // the cursor ends on the last row

  // Rows without material at the end leave nothing behind.
  CKorvoSnd other;
  other.z = 10.0;
  other.New(60);
  CKorvoCpt tail(1, 0, 0);
  Row(tail, 1.0f, L"SA");
  Row(tail, 2.0f, L"");
  ASSERT_EQ(tail.AutoTolk(&other, 1.0, 0), 0);
  EXPECT_EQ(Interpreted(other), Texts{L"sand 9"});
}

TEST_F(AutoTolkTest, NothingToInterpret) {
  EXPECT_EQ(cpt_.AutoTolk(&snd_, 1.0, 0), -1);
  EXPECT_TRUE(Interpreted(snd_).empty());
  Row(1.0f, L"SA");
  CKorvoSnd without_tlk;
  EXPECT_EQ(cpt_.AutoTolk(&without_tlk, 1.0, 0), -1);
  EXPECT_EQ(cpt_.AutoTolk(nullptr, 1.0, 0), -1);
}

}  // namespace
