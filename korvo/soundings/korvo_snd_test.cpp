#include "korvo/soundings/korvo_snd.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "korvo/context/proj_path.h"
#include "korvo/foundation/format.h"
#include "korvo/foundation/messages.h"
#include "korvo/testutil/point_project.h"

namespace {

using Texts = std::vector<std::wstring>;

constexpr const char* kGuid = "0f8fad5b-d9cb-469f-a165-70867728950e";

std::string Head() {
  return "6500100.250000\r\n1500200.750000\r\n12.340000\r\n9999999.900000\r\n0.000000\r\n"
         "1.500000 0 90.000000\r\n";
}

std::string Identity() {
  return std::string("*\r\n97\r\n40 0\r\n*\r\n99\r\nGUID ") + kGuid + "\r\n";
}

// The head of a document: "x y z sek avst startdjup hdrtal lutning orgnamn guid".
std::wstring HeadOf(const CKorvoSnd& s) {
  return korvo::Format(L"%g %g %g %g %g %g %d %g %s %s", s.x, s.y, s.z, s.sek, s.avst, s.startdjup,
                       s.hdrtal, s.lutning, s.orgnamn, s.guid);
}

class KorvoSndTest : public korvo::test::PointProjectTest {
 protected:
  // Reads `bytes` as the point P, with the notices of earlier reads cleared.
  std::unique_ptr<CKorvoSnd> Open(const std::string& bytes) {
    notices_.Clear();
    WriteField("P.SND", bytes);
    auto snd = std::make_unique<CKorvoSnd>(&proj_, nullptr);
    EXPECT_EQ(snd->Init(L"P", nullptr), 0);
    return snd;
  }
};

TEST_F(KorvoSndTest, FileAsTheWriterWritesItComesBackByteIdentical) {
  const std::string file = Head() + "First line\r\n\xc5re gr\xe4vning \x80\r\n\r\nLast\r\n" +
                           Identity() + "extra one\r\nextra two\r\n";
  auto snd = Open(file);
  EXPECT_EQ(HeadOf(*snd), L"6.5001e+06 1.5002e+06 12.34 1e+07 0 1.5 0 90 GUID " +
                              std::wstring(kGuid, kGuid + 36));
  EXPECT_DOUBLE_EQ(snd->x, 6500100.25);
  EXPECT_EQ(snd->sek, CKorvoSnd::Seknoll);
  EXPECT_EQ(snd->text2, L"\u00c5re gr\u00e4vning \u20ac");
  EXPECT_EQ(snd->text3, L"");
  EXPECT_EQ(snd->guidrad2, L"extra two");
  EXPECT_EQ(snd->typ, &CKorvoSnd::Bh);
  EXPECT_EQ(std::wstring(snd->skapad).size(), 10u);

  WriteField("P.SND", "");
  ASSERT_EQ(snd->Uppdat(nullptr, nullptr), 0);
  EXPECT_EQ(ReadField("P.SND"), file);
  EXPECT_TRUE(notices_.status.empty() && notices_.messages.empty());

  // Three text lines are written as four.
  Open(Head() + "one\r\ntwo\r\nthree\r\n" + Identity())->Uppdat(nullptr, nullptr);
  EXPECT_EQ(ReadField("P.SND"), Head() + "one\r\ntwo\r\nthree\r\n\r\n" + Identity());
}

// A marker in the head reads as a zero there; the head goes on behind it, and
// the blocks start at the first marker.
TEST_F(KorvoSndTest, ShortOrOddHeadsFallBackAndTheBlocksAreStillFound) {
  const struct {
    std::string bytes;
    const wchar_t* head;
    Texts status;
  } cases[] = {
      {std::string("1.5\n2.5\n*\n99\nGUID ") + kGuid + "\n",
       L"1.5 2.5 0 99 0 0 0 90 GUID 0f8fad5b-d9cb-469f-a165-70867728950e",
       {}},
      // "4" is read as a code line too.
      {"1\n2\n*\n4\n5\n6 7 8\n*\n99\nGUID g\n",
       L"1 2 0 4 5 6 7 8 GUID g",
       {L"Okänd metodkod (4) för Id: P"}},
      {"1\n2\n3\n4\n5\n2.5 3\n*\n", L"1 2 3 4 5 2.5 0 90  ", {}},
      {std::string("*\n99\nGUID ") + kGuid + "\n",
       L"0 99 0 1e+07 0 0 0 90 GUID 0f8fad5b-d9cb-469f-a165-70867728950e",
       {}},
  };
  for (const auto& c : cases) {
    auto snd = Open(c.bytes);
    EXPECT_EQ(HeadOf(*snd), c.head) << c.bytes;
    EXPECT_EQ(notices_.status, c.status) << c.bytes;
  }
}

// Each case: the status texts and "datum samlagring orgnamn guid" after reading.
TEST_F(KorvoSndTest, OddBlocksCostAStatusText) {
  const struct {
    std::string body;
    Texts status;
    const wchar_t* after;
  } cases[] = {
      // A marker with text, two in a row, a block 97 that is not read back.
      {"*with text\n55 2014-03-09\nrow\n*\n*\n97\n40 1\n*junk\n99\nGUID g\n",
       {L"Okänd metodkod (55) för Id: P"},
       L"09.03.2014 0 GUID g"},
      // A code line without number repeats the code before.
      {"*\n55\n*\nabc\n*\n",
       {L"Okänd metodkod (55) för Id: P", L"Okänd metodkod (55) för Id: P"},
       L" 0  "},
      {"*\n35 01.02.2020\n*\n",
       {L"Kan inte skapa klassinformation för DPT (Id=P)"},
       L"01.02.2020 0  "},
      {"*\n99\n\n", {L"Originalnamnet saknas (id=P)!"}, L" 0 P "},
  };
  for (const auto& c : cases) {
    auto snd = Open(Head() + c.body);
    EXPECT_EQ(notices_.status, c.status) << c.body;
    EXPECT_EQ(korvo::Format(L"%s %d %s %s", snd->datum, snd->samlagring, snd->orgnamn, snd->guid),
              c.after)
        << c.body;
  }
  // The classes the library does not carry cannot be made.
  auto snd = Open(Head());
  EXPECT_EQ(snd->New(35), 0);
  EXPECT_EQ(snd->New(12), 0);
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

TEST_F(KorvoSndTest, IdentityWithAnotherFirstWordGetsANewGuidAtEachSave) {
  auto snd = Open(Head() + "*\n99\nORIGNAME oldid\nx1\n");
  EXPECT_EQ(HeadOf(*snd), L"6.5001e+06 1.5002e+06 12.34 1e+07 0 1.5 0 90 ORIGNAME oldid");
  EXPECT_EQ(snd->guidrad1, L"x1");
  snd->Uppdat(nullptr, nullptr);
  const std::wstring first = snd->guid;
  ASSERT_EQ(first.size(), 36u);
  EXPECT_EQ(ReadField("P.SND"), Head() + "*\r\n97\r\n40 0\r\n*\r\n99\r\nGUID " +
                                    std::string(first.begin(), first.end()) + "\r\n");
  snd->Uppdat(nullptr, nullptr);
  EXPECT_NE(snd->guid, first);

  CKorvoSnd again(&proj_, nullptr);
  again.Init(L"P", nullptr);
  again.Uppdat(nullptr, nullptr);
  EXPECT_EQ(again.guid, snd->guid);
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
  snd.SetFilePath(L"abc", nullptr);
  EXPECT_EQ(snd.m_snd.GetFilePath(), base + L"SND.TMP");
  EXPECT_EQ(snd.m_milfil.GetFilePath(), base + L"MIL.TMP");
}

TEST_F(KorvoSndTest, ReadsAndWritesAFileWhateverTheCaseOfItsName) {
  WriteField("low.snd", Head() + Identity());
  CKorvoSnd snd(&proj_, nullptr);
  ASSERT_EQ(snd.Init(L"LOW", nullptr), 0);
  EXPECT_DOUBLE_EQ(snd.x, 6500100.25);
  snd.Uppdat(nullptr, nullptr);
  EXPECT_EQ(ReadField("low.snd"), Head() + Identity());
  EXPECT_FALSE(dir_.Exists("Dbf/LOW.SND"));
}

TEST_F(KorvoSndTest, MemoryModeWritesSectionsAndTrailerAndNoFile) {
  auto snd = Open(Head() + Identity());
  snd->SetMemFile(1);
  ASSERT_EQ(snd->Uppdat(nullptr, nullptr), 0);
  CMemFile* mem = snd->MemFile();
  ASSERT_NE(mem, nullptr);
  std::string bytes(mem->GetLength(), '\0');
  mem->Read(bytes.data(), static_cast<unsigned>(bytes.size()));
  std::string text;  // every other byte, since all of it is ASCII
  for (size_t i = 0; i < bytes.size(); i += 2) text += bytes[i];
  std::string expected = "#snd#\n" + Head() + Identity();
  std::erase(expected, '\r');  // CR only in the trailer
  EXPECT_EQ(text, expected + "EOF\r\n");
  EXPECT_FALSE(dir_.Exists("Dbf/SND.TMP"));
  // The real names come back after the save.
  EXPECT_EQ(snd->m_snd.GetFilePath(), proj_.DbfKat + L"/P.SND");

  CKorvoSnd without_project;  // saves in the temporary directory
  without_project.SetMemFile(1);
  EXPECT_EQ(without_project.Uppdat(nullptr, nullptr), 0);
  ASSERT_NE(without_project.m_proj, nullptr);
  EXPECT_STREQ(without_project.id, L"x");
  EXPECT_GT(without_project.MemFile()->GetLength(), 0u);
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
  EXPECT_EQ(snd.DeleteFil(21), 1);
  EXPECT_TRUE(dir_.Exists("Dbf/NONE.PRV"));
}

TEST_F(KorvoSndTest, AnyBytesGiveADocument) {
  std::mt19937 rng(20261123);
  const std::string valid = Head() + "t1\r\n" + Identity() + "*\r\n55 x\r\n1 2\r\n*\r\n";
  const char alphabet[] = "*\r\n 0123456789.-GUID9";
  for (int round = 0; round < 300; ++round) {
    std::string bytes = valid.substr(0, rng() % (valid.size() + 1));
    if (round % 3 != 0) {
      bytes.clear();
      for (size_t n = rng() % 400; n > 0; --n) {
        bytes += round % 3 == 1 ? static_cast<char>(rng() & 0xFF)
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
