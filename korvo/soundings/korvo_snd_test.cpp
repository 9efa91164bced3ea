#include "korvo/soundings/korvo_snd.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "korvo/context/proj_path.h"
#include "korvo/foundation/messages.h"
#include "korvo/testutil/point_project.h"

namespace {

constexpr const char* kGuid = "0f8fad5b-d9cb-469f-a165-70867728950e";

using KorvoSndTest = korvo::test::PointProjectTest;

std::string Head() {
  return "6500100.250000\r\n1500200.750000\r\n12.340000\r\n9999999.900000\r\n0.000000\r\n"
         "1.500000 0 90.000000\r\n";
}

std::string Identity() {
  return std::string("*\r\n97\r\n40 0\r\n*\r\n99\r\nGUID ") + kGuid + "\r\n";
}

TEST_F(KorvoSndTest, FileAsTheWriterWritesItComesBackByteIdentical) {
  const std::string file = Head() + "First line\r\n\xc5re gr\xe4vning \x80\r\n\r\nLast\r\n" +
                           Identity() + "extra one\r\nextra two\r\n";
  WriteField("P101.SND", file);
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"P101", nullptr), 0);
  EXPECT_DOUBLE_EQ(snd.x, 6500100.25);
  EXPECT_DOUBLE_EQ(snd.z, 12.34);
  EXPECT_EQ(snd.sek, CKorvoSnd::Seknoll);
  EXPECT_FLOAT_EQ(snd.startdjup, 1.5f);
  EXPECT_EQ(snd.text2, L"\u00c5re gr\u00e4vning \u20ac");
  EXPECT_EQ(snd.text3, L"");
  EXPECT_STREQ(snd.orgnamn, L"GUID");
  EXPECT_EQ(snd.guid, L"0f8fad5b-d9cb-469f-a165-70867728950e");
  EXPECT_EQ(snd.guidrad2, L"extra two");
  EXPECT_EQ(snd.typ, &CKorvoSnd::Bh);
  EXPECT_EQ(std::wstring(snd.skapad).size(), 10u);

  WriteField("P101.SND", "");
  ASSERT_EQ(snd.Uppdat(nullptr, nullptr), 0);
  EXPECT_EQ(ReadField("P101.SND"), file);
  EXPECT_TRUE(notices_.status.empty());
  EXPECT_TRUE(notices_.messages.empty());
}

TEST_F(KorvoSndTest, ThreeTextLinesAreWrittenAsFour) {
  WriteField("A.SND", Head() + "one\r\ntwo\r\nthree\r\n" + Identity());
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"A", nullptr), 0);
  EXPECT_EQ(snd.text4, L"");
  snd.Uppdat(nullptr, nullptr);
  EXPECT_EQ(ReadField("A.SND"), Head() + "one\r\ntwo\r\nthree\r\n\r\n" + Identity());
}

TEST_F(KorvoSndTest, ShortHeadFallsBackAndBlocksAreStillFound) {
  WriteField("S.SND", std::string("1.5\n2.5\n*\n99\nGUID ") + kGuid + "\n");
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"S", nullptr), 0);
  EXPECT_EQ(snd.x, 1.5);
  EXPECT_EQ(snd.y, 2.5);
  EXPECT_EQ(snd.z, 0.0);
  EXPECT_EQ(snd.lutning, 90.0);
  EXPECT_EQ(snd.guid, L"0f8fad5b-d9cb-469f-a165-70867728950e");
  EXPECT_TRUE(notices_.status.empty());
}

TEST_F(KorvoSndTest, MarkerInTheHeadIsPassedOverThenTheBlocksStartThere) {
  WriteField("M.SND", std::string("1\n2\n*\n4\n5\n6 7 8\n*\n99\nGUID g\n"));
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"M", nullptr), 0);
  EXPECT_EQ(snd.z, 0.0);
  EXPECT_EQ(snd.sek, 4.0);
  EXPECT_EQ(snd.avst, 5.0);
  EXPECT_EQ(snd.startdjup, 6.0f);
  EXPECT_EQ(snd.hdrtal, 7);
  EXPECT_EQ(snd.lutning, 8.0);
  // The first marker is line 3, so "4" is read as a code line.
  ASSERT_EQ(notices_.status.size(), 1u);
  EXPECT_EQ(notices_.status[0], L"Okänd metodkod (4) för Id: M");
  EXPECT_EQ(snd.guid, L"g");
}

TEST_F(KorvoSndTest, LineSixWithFewFieldsAndNoHeadAtAll) {
  WriteField("L.SND", "1\n2\n3\n4\n5\n2.5 3\n*\n");
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"L", nullptr), 0);
  EXPECT_EQ(snd.startdjup, 2.5f);
  EXPECT_EQ(snd.hdrtal, 0);
  EXPECT_EQ(snd.lutning, 90.0);

  WriteField("N.SND", std::string("*\n99\nGUID ") + kGuid + "\n");
  CKorvoSnd none(&proj_, nullptr);
  ASSERT_EQ(none.Init(L"N", nullptr), 0);
  EXPECT_EQ(none.x, 0.0);
  EXPECT_EQ(none.lutning, 90.0);
  EXPECT_STREQ(none.orgnamn, L"GUID");
}

TEST_F(KorvoSndTest, MarkersWithTextAndTwoInARowAndUnknownCodes) {
  WriteField("U.SND", Head() + "*with text\n55 2014-03-09\nrow\n*\n*\n97\n40 1\n*junk\n99\nGUID " +
                          kGuid + "\n");
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"U", nullptr), 0);
  ASSERT_EQ(notices_.status.size(), 1u);
  EXPECT_EQ(notices_.status[0], L"Okänd metodkod (55) för Id: U");
  EXPECT_STREQ(snd.datum, L"09.03.2014");
  EXPECT_EQ(snd.samlagring, 0);  // block 97 is not read back
  EXPECT_EQ(snd.guid, L"0f8fad5b-d9cb-469f-a165-70867728950e");
}

TEST_F(KorvoSndTest, DatesOfCodeLinesInAnyForm) {
  struct {
    const char* code_line;
    const wchar_t* datum;
  } cases[] = {{"30 2014/3/9", L"09.03.2014"},
               {"5 9/3-14", L"9/3-14"},
               {"30 09.03.2014", L"09.03.2014"},
               {"30", L""},
               {"45 2014-03-09", L"keep"}};
  for (const auto& c : cases) {
    WriteField("D.SND", Head() + "*\n" + c.code_line + "\n*\n");
    CKorvoSnd snd(&proj_, nullptr);
    wcscpy(snd.datum, L"keep");
    snd.Init(L"D", nullptr);
    EXPECT_STREQ(snd.datum, c.datum) << c.code_line;
  }
}

TEST_F(KorvoSndTest, CodeLineWithoutNumberRepeatsTheCodeBefore) {
  WriteField("C.SND", Head() + "*\n55\n*\nabc\n*\n");
  CKorvoSnd snd(&proj_, nullptr);
  snd.Init(L"C", nullptr);
  ASSERT_EQ(notices_.status.size(), 2u);
  EXPECT_EQ(notices_.status[1], L"Okänd metodkod (55) för Id: C");
}

TEST_F(KorvoSndTest, MethodBlockWithoutItsClassCostsAStatusText) {
  WriteField("R.SND", Head() + "*\n35 01.02.2020\n*\n");
  CKorvoSnd snd(&proj_, nullptr);
  snd.Init(L"R", nullptr);
  ASSERT_FALSE(notices_.status.empty());
  EXPECT_EQ(notices_.status[0], L"Kan inte skapa klassinformation för DPT (Id=R)");
  EXPECT_EQ(snd.New(35), 0);
  EXPECT_EQ(snd.New(12), 0);
}

TEST_F(KorvoSndTest, IdentityWithAnotherFirstWordGetsANewGuidAtEachSave) {
  WriteField("O.SND", Head() + "*\n99\nORIGNAME oldid\nx1\n");
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"O", nullptr), 0);
  EXPECT_STREQ(snd.orgnamn, L"ORIGNAME");
  EXPECT_EQ(snd.guid, L"oldid");
  EXPECT_EQ(snd.guidrad1, L"x1");
  snd.Uppdat(nullptr, nullptr);
  const std::wstring first = snd.guid;
  ASSERT_EQ(first.size(), 36u);
  EXPECT_EQ(ReadField("O.SND"), Head() + "*\r\n97\r\n40 0\r\n*\r\n99\r\nGUID " +
                                    std::string(first.begin(), first.end()) + "\r\n");
  snd.Uppdat(nullptr, nullptr);
  EXPECT_NE(snd.guid, first);

  CKorvoSnd again(&proj_, nullptr);
  again.Init(L"O", nullptr);
  again.Uppdat(nullptr, nullptr);
  EXPECT_EQ(again.guid, snd.guid);
}

TEST_F(KorvoSndTest, IdentityLineWithoutWordIsReported) {
  WriteField("W.SND", Head() + "*\n99\n\n");
  CKorvoSnd snd(&proj_, nullptr);
  snd.Init(L"W", nullptr);
  ASSERT_EQ(notices_.status.size(), 1u);
  EXPECT_EQ(notices_.status[0], L"Originalnamnet saknas (id=W)!");
  EXPECT_STREQ(snd.orgnamn, L"W");
}

TEST_F(KorvoSndTest, NewDocumentIsWrittenWithItsDefaultsAndAGuid) {
  CKorvoSnd snd(&proj_, nullptr);
  wcscpy(snd.id, L"new1");
  snd.x = 1.0;
  ASSERT_EQ(snd.Uppdat(nullptr, nullptr), 0);
  ASSERT_EQ(snd.guid.size(), 36u);
  EXPECT_EQ(ReadField("NEW1.SND"),
            "1.000000\r\n0.000000\r\n0.000000\r\n9999999.900000\r\n0.000000\r\n"
            "0.000000 0 90.000000\r\n*\r\n97\r\n40 0\r\n*\r\n99\r\nGUID " +
                std::string(snd.guid.begin(), snd.guid.end()) + "\r\n");
}

TEST_F(KorvoSndTest, FileNamesFromAnyNameOfThePoint) {
  CKorvoSnd snd(&proj_, nullptr);
  snd.SetFilePath(L"abc", nullptr);
  const std::wstring base = proj_.DbfKat + L"/";
  EXPECT_EQ(snd.m_snd.GetFilePath(), base + L"ABC.SND");
  EXPECT_EQ(snd.m_tlkfil.GetFilePath(), base + L"ABC.TLK");
  EXPECT_EQ(snd.m_vbfil.GetFilePath(), base + L"ABC.VB");

  snd.SetFilePath(nullptr, L"/data/proj.a/abc.gvr");
  EXPECT_EQ(snd.m_snd.GetFilePath(), L"/data/proj.a/ABC.SND");
  EXPECT_EQ(snd.m_gvrfil.GetFilePath(), L"/data/proj.a/ABC.GVR");
  snd.SetFilePath(nullptr, L"/d/abc.vb");
  EXPECT_EQ(snd.m_mtnfil.GetFilePath(), L"/d/ABC.MTN");
  snd.SetFilePath(nullptr, L"/d/abc");
  EXPECT_EQ(snd.m_snd.GetFilePath(), L"/d/ABC.SND");

  snd.SetMemFile(1);
  EXPECT_EQ(snd.tempfiler, 1);
  snd.SetFilePath(L"abc", nullptr);
  EXPECT_EQ(snd.m_snd.GetFilePath(), base + L"SND.TMP");
  EXPECT_EQ(snd.m_milfil.GetFilePath(), base + L"MIL.TMP");
}

TEST_F(KorvoSndTest, ReadsAFileWhateverTheCaseOfItsName) {
  WriteField("low.snd", Head() + Identity());
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"LOW", nullptr), 0);
  EXPECT_DOUBLE_EQ(snd.x, 6500100.25);
  // Writing back goes to the file that is there, not to a second one.
  snd.Uppdat(nullptr, nullptr);
  EXPECT_EQ(ReadField("low.snd"), Head() + Identity());
  EXPECT_FALSE(dir_.Exists("Dbf/LOW.SND"));
}

TEST_F(KorvoSndTest, MemoryModeWritesSectionsAndTrailerAndNoFile) {
  WriteField("MEM.SND", Head() + Identity());
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"MEM", nullptr), 0);
  snd.SetMemFile(1);
  ASSERT_EQ(snd.Uppdat(nullptr, nullptr), 0);
  CMemFile* mem = snd.MemFile();
  ASSERT_NE(mem, nullptr);
  std::string bytes(mem->GetLength(), '\0');
  mem->Read(bytes.data(), static_cast<unsigned>(bytes.size()));
  std::string text;  // every other byte, since all of it is ASCII
  for (size_t i = 0; i < bytes.size(); i += 2) text += bytes[i];
  std::string plain = "#snd#\n" + Head() + Identity() + "EOF\r\n";
  std::string expected;
  for (size_t i = 0; i < plain.size(); ++i) {
    if (plain[i] == '\r' && i + 5 < plain.size()) continue;  // CR only in the trailer
    expected += plain[i];
  }
  EXPECT_EQ(text, expected);
  EXPECT_FALSE(dir_.Exists("Dbf/SND.TMP"));
  // The real names come back after the save.
  EXPECT_EQ(snd.m_snd.GetFilePath(), proj_.DbfKat + L"/MEM.SND");
}

TEST_F(KorvoSndTest, DocumentWithoutProjectSavesInTheTemporaryDirectory) {
  CKorvoSnd snd;
  snd.SetMemFile(1);
  EXPECT_EQ(snd.Uppdat(nullptr, nullptr), 0);
  ASSERT_NE(snd.m_proj, nullptr);
  EXPECT_STREQ(snd.id, L"x");
  EXPECT_GT(snd.MemFile()->GetLength(), 0u);
}

TEST_F(KorvoSndTest, MissingFileGivesAnEmptyDocumentAndDeleteFilRemovesOnlyItsKind) {
  CKorvoSnd snd(&proj_, nullptr);
  EXPECT_EQ(snd.Init(L"NONE", nullptr), 0);
  EXPECT_EQ(snd.typ, nullptr);
  EXPECT_STREQ(snd.skapad, L"");

  WriteField("NONE.MIL", "x");
  WriteField("NONE.PRV", "x");
  EXPECT_EQ(snd.DeleteFil(45), 1);
  EXPECT_FALSE(dir_.Exists("Dbf/NONE.MIL"));
  EXPECT_TRUE(dir_.Exists("Dbf/NONE.PRV"));
  EXPECT_EQ(snd.DeleteFil(21), 1);
  EXPECT_TRUE(dir_.Exists("Dbf/NONE.PRV"));
}

TEST_F(KorvoSndTest, AnyBytesGiveADocument) {
  std::mt19937 rng(20261123);
  const std::string valid = Head() + "t1\r\n" + Identity() + "*\r\n55 x\r\n1 2\r\n*\r\n";
  for (int round = 0; round < 300; ++round) {
    std::string bytes;
    if (round % 3 == 0) {
      bytes = valid.substr(0, rng() % (valid.size() + 1));
    } else {
      const size_t n = rng() % 400;
      const char alphabet[] = "*\r\n 0123456789.-GUID9";
      for (size_t i = 0; i < n; ++i) {
        bytes += (round % 3 == 1) ? static_cast<char>(rng() & 0xFF)
                                  : alphabet[rng() % (sizeof alphabet - 1)];
      }
    }
    WriteField("F.SND", bytes);
    CKorvoSnd snd(&proj_, nullptr);
    EXPECT_EQ(snd.Init(L"F", nullptr), 0);
    EXPECT_EQ(snd.Uppdat(nullptr, nullptr), 0);
  }
}

}  // namespace
