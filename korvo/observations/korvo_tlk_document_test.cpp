// The interpretation as a part of the point document: read from the .TLK file
// beside the .SND file, and written back beside it.
#include <gtest/gtest.h>

#include <string>

#include "korvo/observations/korvo_tlk.h"
#include "korvo/platform/file.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/testutil/point_project.h"

namespace {

const std::string kSnd = korvo::test::PointHead();
constexpr const char* kTlk =
    "gvy\r\n   1.2500\r\n\r\n"
    "lera 11 2 0\r\n  11.0000 torrskorpa\r\n"
    "  0.00   0.00   0.00   0.00   0.00   0.00\r\n"
    "berg 1 4 26\r\n   3.5000 \r\n"
    "  0.00   0.00   0.00   0.00   0.00   0.00\r\n*\r\n";

using TlkDocumentTest = korvo::test::PointProjectTest;

TEST_F(TlkDocumentTest, ReadsTheTlkBesideTheSndAndWritesItBack) {
  WriteField("P1.SND", kSnd);
  WriteField("P1.TLK", kTlk);
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"P1", nullptr), 0);
  ASSERT_NE(snd.m_tlk, nullptr);
  EXPECT_EQ(snd.m_tlk->antal, 2);
  EXPECT_FLOAT_EQ(snd.m_tlk->gvy, 1.25f);
  EXPECT_EQ(snd.m_tlk->konvflagga, 1);
  EXPECT_EQ(snd.m_tlkfil.strom, nullptr);  // closed after reading

  WriteField("P1.TLK", "");
  ASSERT_EQ(snd.Uppdat(nullptr, nullptr), 0);
  EXPECT_EQ(ReadField("P1.TLK"), kTlk);
  EXPECT_EQ(ReadField("P1.SND"), kSnd);
  EXPECT_TRUE(notices_.messages.empty());
}

TEST_F(TlkDocumentTest, FindsATlkWhateverTheCaseOfItsName) {
  WriteField("P2.SND", kSnd);
  WriteField("p2.tlk", kTlk);
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"P2", nullptr), 0);
  ASSERT_NE(snd.m_tlk, nullptr);
  EXPECT_EQ(snd.m_tlk->antal, 2);
}

TEST_F(TlkDocumentTest, ATlkThatHoldsNothingIsNoPart) {
  WriteField("E.SND", kSnd);
  WriteField("E.TLK", "");
  CKorvoSnd empty(&proj_, nullptr);
  ASSERT_EQ(empty.Init(L"E", nullptr), 0);
  EXPECT_EQ(empty.m_tlk, nullptr);

  WriteField("M.SND", kSnd);
  WriteField("M.TLK", "*\r\n60\r\n");
  CKorvoSnd marker(&proj_, nullptr);
  ASSERT_EQ(marker.Init(L"M", nullptr), 0);
  EXPECT_EQ(marker.m_tlk, nullptr);

  // Without a .TLK nothing is written, and an existing one is left alone.
  marker.Uppdat(nullptr, nullptr);
  EXPECT_EQ(ReadField("M.TLK"), "*\r\n60\r\n");
}

TEST_F(TlkDocumentTest, NewMakesTheInterpretationWithTheDocumentsFlags) {
  CKorvoSnd snd(&proj_, nullptr);
  snd.rensa = 1;
  ASSERT_EQ(snd.New(60), 1);
  ASSERT_NE(snd.m_tlk, nullptr);
  EXPECT_EQ(snd.m_tlk->rensa, 1);
  EXPECT_EQ(snd.m_tlk->samlagring, 0);
  EXPECT_EQ(snd.m_tlk->kandamaterial.size(), 14u);
  snd.m_tlk->AddTolkNiva(L"sand", 2.0f);
  ASSERT_EQ(snd.New(60), 1);  // a new one replaces it
  EXPECT_EQ(snd.m_tlk->antal, 0);
}

TEST_F(TlkDocumentTest, ANewPointGetsItsTlkOnSave) {
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.New(60), 1);
  snd.m_tlk->InsertBerg(2.0f, 4);
  ASSERT_EQ(snd.Uppdat(L"NEW1", nullptr), 0);
  EXPECT_EQ(ReadField("NEW1.TLK"),
            "berg 1 4 4\r\n   2.0000 \r\n  0.00   0.00   0.00   0.00   0.00   0.00\r\n*\r\n");
}

TEST_F(TlkDocumentTest, MemoryModeWritesTheTlkToItsTemporaryFile) {
  WriteField("P3.SND", kSnd);
  WriteField("P3.TLK", kTlk);
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"P3", nullptr), 0);
  snd.SetMemFile(1);
  ASSERT_EQ(snd.Uppdat(nullptr, nullptr), 0);
  EXPECT_EQ(ReadField("TLK.TMP"), kTlk);
  EXPECT_EQ(ReadField("P3.TLK"), kTlk);

  // The buffer holds the .SND section alone: no row of the interpretation.
  CMemFile* mem = snd.MemFile();
  ASSERT_NE(mem, nullptr);
  std::wstring units;
  for (uint64_t i = 0; i + 1 < mem->GetLength(); i += 2) {
    units += static_cast<wchar_t>(mem->Data()[i] | (mem->Data()[i + 1] << 8));
  }
  EXPECT_EQ(units.find(L"lera"), std::wstring::npos);
  EXPECT_EQ(units.substr(0, 6), L"#snd#\n");
}

TEST_F(TlkDocumentTest, ACombinedSaveWritesNoTlk) {
  WriteField("P4.SND", kSnd);
  WriteField("P4.TLK", kTlk);
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"P4", nullptr), 0);
  ASSERT_NE(snd.m_tlk, nullptr);
  WriteField("P4.TLK", "left alone");
  snd.samlagring = 1;
  ASSERT_EQ(snd.Uppdat(nullptr, nullptr), 0);
  EXPECT_EQ(ReadField("P4.TLK"), "left alone");
  EXPECT_TRUE(notices_.messages.empty());
}

}  // namespace
