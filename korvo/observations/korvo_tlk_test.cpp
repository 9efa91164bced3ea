#include "korvo/observations/korvo_tlk.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "korvo/foundation/format.h"
#include "korvo/platform/datetime.h"
#include "korvo/testutil/notices.h"
#include "korvo/testutil/rows.h"
#include "korvo/testutil/temp_dir.h"

namespace {

constexpr const char* kZeros = "  0.00   0.00   0.00   0.00   0.00   0.00\r\n";

// A fresh directory, and every notice the library gives while a test runs.
class KorvoTlkTest : public testing::Test {
 protected:
  // Reads the file `name` into `tlk` through a stream of the object's own.
  int Read(CKorvoTlk& tlk, const std::string& name) {
    return tlk.Init(nullptr, L"P1", dir_.File(name).c_str());
  }
  int Write(CKorvoTlk& tlk, const std::string& name) {
    return tlk.Uppdat(nullptr, dir_.File(name).c_str());
  }

  korvo::test::TempDir dir_;
  CKorvoTlk tlk_{1, 0, 0};
  korvo::test::Notices notices_;
  std::vector<std::wstring>& messages_ = notices_.messages;
};

// The rows as "name level", top to bottom.
std::vector<std::wstring> Rows(CKorvoTlk& tlk) {
  std::vector<std::wstring> rows;
  if (tlk.Home() != 0) return rows;
  do {
    rows.push_back(korvo::Format(L"%s %.2f", tlk.pael->namn, tlk.pael->niva));
  } while (tlk++);
  return rows;
}

// Every field of each row: name, level, index, sources, [remark], [comment]
// and the six values.
std::vector<std::wstring> Details(CKorvoTlk& tlk) {
  return korvo::test::EachRow(tlk, [](const matetype& r) {
    return korvo::Format(L"%s %.2f %d %d %d [%s] [%s] %g %g %g %g %g %g", r.namn, r.niva, r.index,
                         r.kalla, r.kalla2, r.anmarkning, r.kommentar, r.varde1, r.varde2, r.varde3,
                         r.varde4, r.varde5, r.varde6);
  });
}

void Append(CKorvoTlk& tlk, std::initializer_list<std::pair<const wchar_t*, float>> rows) {
  for (const auto& [namn, niva] : rows) {
    matetype row{};
    std::wcsncpy(row.namn, namn, 11);
    row.niva = niva;
    tlk.Ny(1, &row);
  }
}

using Names = std::vector<std::wstring>;

// ---- The file -------------------------------------------------------------

TEST_F(KorvoTlkTest, FileAsWrittenComesBackByteIdentical) {
  const std::string file =
      "gvy\r\n  -2.5000\r\n\r\n"
      "fyllning 13 1 0\r\n  12.3400 \r\n" +
      std::string(kZeros) + "lera 11 2 7" + std::string(14, ' ') +
      "Sensitive, see lab\r\n"
      "   8.5000 Upper part silty\r\n"
      "  1.50  -2.25  10.00   0.00   0.00 123.46\r\n"
      "X 3 0 0\r\n   4.1000 \r\n" +
      kZeros + "berg 1 4 4\r\n  -0.7500 \r\n" + kZeros + "*\r\n";
  dir_.Write("P1.TLK", file);
  ASSERT_EQ(Read(tlk_, "P1.TLK"), 0);
  EXPECT_EQ(tlk_.hargvy, 1);
  EXPECT_FLOAT_EQ(tlk_.gvy, -2.5f);
  // "Breccia" has no old name of its own.
  EXPECT_EQ(
      Details(tlk_),
      (Names{L"fyllning 12.34 13 1 0 [] [] 0 0 0 0 0 0",
             L"lera 8.50 11 2 7 [Sensitive, see lab] [Upper part silty] 1.5 -2.25 10 0 0 123.46",
             L"X 4.10 3 0 0 [] [] 0 0 0 0 0 0", L"berg -0.75 1 4 4 [] [] 0 0 0 0 0 0"}));

  ASSERT_EQ(Write(tlk_, "OUT.TLK"), 0);
  EXPECT_EQ(dir_.Read("OUT.TLK"), file);
  EXPECT_TRUE(messages_.empty());
}

TEST_F(KorvoTlkTest, OlderFileWithNamesOnlyGetsIndexesAndIsWrittenInTheNewForm) {
  dir_.Write("OLD.TLK", "lera\n   5.0\n\nMORAEN\n2.25\n\nLERA 11\n1\n\n");
  ASSERT_EQ(Read(tlk_, "OLD.TLK"), 0);
  EXPECT_EQ(Details(tlk_),
            (Names{L"lera 5.00 11 0 0 [] [] 0 0 0 0 0 0", L"MORAEN 2.25 35 0 0 [] [] 0 0 0 0 0 0",
                   L"LERA 1.00 11 0 0 [] [] 0 0 0 0 0 0"}));
  EXPECT_EQ(tlk_.hargvy, 0);

  ASSERT_EQ(Write(tlk_, "NEW.TLK"), 0);
  EXPECT_EQ(dir_.Read("NEW.TLK"), "lera 11 0 0\r\n   5.0000 \r\n" + std::string(kZeros) +
                                      "moraen 35 0 0\r\n   2.2500 \r\n" + kZeros +
                                      "lera 11 0 0\r\n   1.0000 \r\n" + kZeros + "*\r\n");
  tlk_.End();
  EXPECT_STREQ(tlk_.pael->namn, L"lera");  // the write put the old name back
}

TEST_F(KorvoTlkTest, SourceNumbersRemarksAndCommentsAtTheirLimits) {
  const std::string long_text = "abcdefghijklmnopqrstuvwxyz0123";
  // Left parts padded to the remark column, 25.
  const std::string grus = "grus 32 1" + std::string(16, ' ');
  const std::string sten = "sten 39" + std::string(18, ' ');
  dir_.Write("R.TLK",
             "sand 20 9 9\n1\n\n"
             "silt 21 -3 -3    \n2\n\n" +
                 grus + "two  words  " + long_text + "\n   3.0000 " + long_text + "\n\n" + sten +
                 "not read\n4\n\ntorv 27 0 0 word\n5\n\n"
                 "averyveryverylongname 7 0 0\n6\n\n");
  ASSERT_EQ(Read(tlk_, "R.TLK"), 0);
  // The first source is held to 0..5, the second kept. With three numbers
  // and a long line the remark is the line from column 25; with two the text
  // behind them is no remark; a short line keeps the scanned word, and a long
  // name cut to its field still makes the line long.
  EXPECT_EQ(Details(tlk_),
            (Names{L"sand 1.00 20 5 9 [] [] 0 0 0 0 0 0", L"silt 2.00 21 0 -3 [] [] 0 0 0 0 0 0",
                   L"grus 3.00 32 1 0 [two  words  abcdefghijklm] "
                   L"[abcdefghijklmnopqrstuvwxy] 0 0 0 0 0 0",
                   L"sten 4.00 39 0 0 [] [] 0 0 0 0 0 0", L"torv 5.00 27 0 0 [word] [] 0 0 0 0 0 0",
                   L"averyveryve 6.00 7 0 0 [ 0] [] 0 0 0 0 0 0"}));
}

TEST_F(KorvoTlkTest, TruncatedAndDamagedRowsKeepWhatWasRead) {
  dir_.Write("D.TLK", "sand 20 1 0\n12,5 kommentar\n1,5 2\nlera 11\n   4.0000 c");
  ASSERT_EQ(Read(tlk_, "D.TLK"), 0);
  // A decimal comma ends the number.
  EXPECT_EQ(Details(tlk_), (Names{L"sand 12.00 20 1 0 [] [ntar] 1 0 0 0 0 0",
                                  L"lera 4.00 11 0 0 [] [c] 0 0 0 0 0 0"}));

  CKorvoTlk cut(1, 0, 0);
  dir_.Write("T.TLK", "gvy\n");
  ASSERT_EQ(Read(cut, "T.TLK"), 0);
  EXPECT_EQ(cut.hargvy, 1);
  EXPECT_EQ(cut.gvy, 0.0f);
  dir_.Write("T.TLK", "torv");
  ASSERT_EQ(Read(cut, "T.TLK"), 0);
  EXPECT_EQ(Rows(cut), (Names{L"torv 0.00"}));
  EXPECT_EQ(cut.pael->index, 27);
}

TEST_F(KorvoTlkTest, MissingEmptyAndMarkerFilesReadNothing) {
  const std::wstring missing = dir_.File("NONE.TLK");
  EXPECT_EQ(tlk_.Init(nullptr, L"P1", missing.c_str()), -1);
  ASSERT_EQ(messages_.size(), 1u);
  EXPECT_EQ(messages_[0], L"Hittar inte filen\n" + missing + L"\nAvbryter!");

  dir_.Write("EMPTY.TLK", "");
  EXPECT_EQ(Read(tlk_, "EMPTY.TLK"), -1);
  dir_.Write("MARK.TLK", "*\n60\nlera 11 0 0\n1\n\n");
  EXPECT_EQ(Read(tlk_, "MARK.TLK"), -1);
  EXPECT_EQ(tlk_.Init(nullptr, L"P1", nullptr), -1);
  EXPECT_EQ(tlk_.antal, 0);
  EXPECT_EQ(messages_.size(), 1u);
}

TEST_F(KorvoTlkTest, ReadingAppendsAndTakesTheFileDates) {
  dir_.Write("A.TLK", "lera 11 0 0\n1\n\n*\nnot read\n");
  ASSERT_EQ(Read(tlk_, "A.TLK"), 0);
  ASSERT_EQ(Read(tlk_, "A.TLK"), 0);
  EXPECT_EQ(Rows(tlk_), (Names{L"lera 1.00", L"lera 1.00"}));
  const korvo::LocalTime now = korvo::NowLocal();
  EXPECT_EQ(std::wstring(tlk_.andrad),
            korvo::Format(L"%4d-%02.2d-%02.2d", now.year, now.month, now.day));
  EXPECT_EQ(std::wstring(tlk_.skapad).size(), 10u);
}

TEST_F(KorvoTlkTest, GvyBlockIsWrittenOnlyWhenThereIsALevel) {
  Append(tlk_, {{L"sand", 2.0f}});
  ASSERT_EQ(Write(tlk_, "A.TLK"), 0);
  EXPECT_EQ(dir_.Read("A.TLK").substr(0, 4), "sand");

  CKorvoTlk only_gvy(1, 0, 0);
  only_gvy.gvy = -2.5f;
  ASSERT_EQ(Write(only_gvy, "G.TLK"), 0);
  EXPECT_EQ(dir_.Read("G.TLK"), "gvy\r\n  -2.5000\r\n\r\n");  // no rows, no closing marker
  CKorvoTlk back(1, 0, 0);
  ASSERT_EQ(Read(back, "G.TLK"), 0);
  EXPECT_EQ(back.hargvy, 1);
  EXPECT_FLOAT_EQ(back.gvy, -2.5f);
  EXPECT_EQ(back.antal, 0);
}

TEST_F(KorvoTlkTest, CombinedSaveWritesTheHeadIntoAStreamOnly) {
  CKorvoTlk combined(1, 0, 1);
  Append(combined, {{L"lera", 3.0f}});
  EXPECT_EQ(combined.Uppdat(nullptr, dir_.File("C.TLK").c_str()), -1);
  ASSERT_EQ(messages_.size(), 1u);
  EXPECT_EQ(messages_[0], L"Internt fel: Samlagring ej tillåten !");
  EXPECT_FALSE(dir_.Exists("C.TLK"));

  CStdioFileMem out;
  ASSERT_TRUE(out.Open(dir_.File("C.TLK").c_str(), 0x1001));
  ASSERT_EQ(combined.Uppdat(&out, nullptr), 0);
  out.Close();
  const std::string written = dir_.Read("C.TLK");
  EXPECT_EQ(written, "*\r\n60\r\nlera 11 0 0\r\n   3.0000 \r\n" + std::string(kZeros));

  // A reader that has taken the head reads the rows from the stream.
  CStdioFileMem in;
  ASSERT_TRUE(in.Open(dir_.File("C.TLK").c_str(), 0));
  std::wstring line;
  in.ReadString(line);
  in.ReadString(line);
  CKorvoTlk back(1, 0, 0);
  ASSERT_EQ(back.Init(&in, L"C", nullptr), 0);
  EXPECT_EQ(Rows(back), (Names{L"lera 3.00"}));
}

TEST_F(KorvoTlkTest, WritingNowhereWritesNothing) {
  Append(tlk_, {{L"lera", 3.0f}});
  EXPECT_EQ(tlk_.Uppdat(nullptr, nullptr), -1);
  EXPECT_EQ(tlk_.Uppdat(nullptr, dir_.File("no/such/dir/A.TLK").c_str()), -1);
  EXPECT_TRUE(messages_.empty());
}

// ---- The vocabulary -------------------------------------------------------

TEST_F(KorvoTlkTest, MaterialNamesInEachLanguageAreFoundExactly) {
  EXPECT_EQ(tlk_.SvTextToIndex(L"Lera"), 11);
  EXPECT_EQ(tlk_.SvTextToIndex(L"lera"), 0);
  EXPECT_EQ(tlk_.SvTextToIndex(L"Ospecificerat material"), 0);
  EXPECT_EQ(tlk_.SvTextToIndex(L"Höghumifierad torv"), 30);
  EXPECT_EQ(tlk_.SvTextToIndex(L"Berg eller block"), 40);
  EXPECT_EQ(tlk_.NoTextToIndex(L"Tørrskorpe leire"), 33);
  EXPECT_EQ(tlk_.NoTextToIndex(L" Leirblandet gytje"), 9);
  EXPECT_EQ(tlk_.NoTextToIndex(L"Leirblandet gytje"), 0);
  EXPECT_EQ(tlk_.NoTextToIndex(L"Berg"), 1);
  EXPECT_EQ(tlk_.EnTextToIndex(L"Plant (wood) remains"), 38);
  EXPECT_EQ(tlk_.EnTextToIndex(L"Gyttja"), 8);
  EXPECT_EQ(tlk_.EnTextToIndex(L"clay"), 0);
  EXPECT_EQ(tlk_.EnTextToIndex(nullptr), 0);
}

TEST_F(KorvoTlkTest, OldNamesAndTheirFallbacks) {
  EXPECT_EQ(tlk_.OldtextToIndex(L"MORAEN"), 35);
  EXPECT_EQ(tlk_.OldtextToIndex(L"belbl"), 40);
  EXPECT_EQ(tlk_.OldtextToIndex(L"x"), 7);
  EXPECT_EQ(tlk_.OldtextToIndex(L"geokonst"), 0);
  EXPECT_EQ(tlk_.OldtextToIndex(L"Breccia"), 0);
  std::wstring old;
  EXPECT_EQ(tlk_.IndexToOldtext(3, old), -1);
  EXPECT_EQ(old, L"X");
  EXPECT_EQ(tlk_.IndexToOldtext(7, old), 0);
  EXPECT_EQ(old, L"X");
  EXPECT_EQ(tlk_.IndexToOldtext(33, old), 0);
  EXPECT_EQ(old, L"torrskorpa");
  EXPECT_EQ(tlk_.IndexToOldtext(41, old), -1);
  EXPECT_EQ(old, L"X");
  ASSERT_EQ(tlk_.kandamaterial.size(), 14u);
  EXPECT_EQ(tlk_.kandamaterial[12], L"MORÄN");
  EXPECT_EQ(tlk_.kandamaterial.back(), L"BERG");
  EXPECT_EQ(tlk_.oldtext.size(), 18u);

  // Without vocabulary no old name is known.
  CKorvoTlk bare;
  EXPECT_TRUE(bare.kandamaterial.empty());
  EXPECT_EQ(bare.OldtextToIndex(L"lera"), 0);
  EXPECT_EQ(bare.IndexToOldtext(11, old), -1);
  EXPECT_EQ(old, L"X");
  EXPECT_EQ(bare.SvTextToIndex(L"Lera"), 11);
}

// ---- Changing the rows ----------------------------------------------------

TEST_F(KorvoTlkTest, AddDZMovesRowsButNotTheWaterLevel) {
  Append(tlk_, {{L"lera", 10.0f}, {L"sand", 5.25f}});
  tlk_.gvy = 3.0f;
  tlk_.AddDZ(-1.5);
  EXPECT_EQ(Rows(tlk_), (Names{L"lera 8.50", L"sand 3.75"}));
  EXPECT_FLOAT_EQ(tlk_.gvy, 3.0f);
  CKorvoTlk empty(1, 0, 0);
  empty.AddDZ(1.0);
  EXPECT_EQ(empty.antal, 0);
}

TEST_F(KorvoTlkTest, AddTolkNivaPutsTheRowInItsPlace) {
  EXPECT_EQ(tlk_.AddTolkNiva(L"lera", 10.0f), 0);  // empty list
  Append(tlk_, {{L"sand", 5.0f}, {L"grus", 0.0f}});
  EXPECT_EQ(tlk_.AddTolkNiva(L"berg", -1.0f), 0);
  EXPECT_STREQ(tlk_.pael->namn, L"berg");
  EXPECT_EQ(tlk_.AddTolkNiva(L"mylla", 12.0f), 0);
  EXPECT_EQ(tlk_.Where(nullptr), 1);
  EXPECT_EQ(tlk_.AddTolkNiva(L"torv", 7.0f), 0);
  EXPECT_STREQ(tlk_.pael->namn, L"torv");
  EXPECT_EQ(Rows(tlk_), (Names{L"mylla 12.00", L"lera 10.00", L"torv 7.00", L"sand 5.00",
                               L"grus 0.00", L"berg -1.00"}));

  // The same material at the same level, at the first and the last row.
  EXPECT_EQ(tlk_.AddTolkNiva(L"sand", 5.0005f), -1);
  EXPECT_EQ(tlk_.AddTolkNiva(L"mylla", 12.0f), -1);
  EXPECT_EQ(tlk_.AddTolkNiva(L"berg", -1.0f), -1);
  EXPECT_EQ(tlk_.antal, 6);
  // Another material at an equal level goes above the row there.
  EXPECT_EQ(tlk_.AddTolkNiva(L"silt", 5.0f), 0);
  EXPECT_EQ(tlk_.Where(nullptr), 4);
  EXPECT_EQ(tlk_.AddTolkNiva(L"X", -1.0f), 0);
  EXPECT_EQ(Rows(tlk_), (Names{L"mylla 12.00", L"lera 10.00", L"torv 7.00", L"silt 5.00",
                               L"sand 5.00", L"grus 0.00", L"X -1.00", L"berg -1.00"}));
  tlk_.Home();
  EXPECT_EQ(tlk_.pael->index, 0);
  EXPECT_EQ(tlk_.pael->kalla, 0);
}

// The rows as "name level source source2".
Names Sources(CKorvoTlk& tlk) {
  return korvo::test::EachRow(tlk, [](const matetype& r) {
    return korvo::Format(L"%s %.4f %d %d", r.namn, r.niva, r.kalla, r.kalla2);
  });
}

TEST_F(KorvoTlkTest, InsertBergRoundsSetsTheSourcesAndLeavesARockRowWithinACentimetre) {
  CKorvoTlk other(1, 0, 0);
  EXPECT_EQ(other.InsertBerg(-1.236f, 7), 0);
  EXPECT_EQ(Sources(other), (Names{L"berg -1.2400 5 7"}));

  Append(tlk_, {{L"lera", 5.0f}});
  EXPECT_EQ(tlk_.InsertBerg(1.234f, 4), 0);
  EXPECT_EQ(tlk_.InsertBerg(1.23f, 4), -1);
  EXPECT_EQ(tlk_.InsertBerg(1.24f, 2), -1);  // 0.01 away: still the same
  EXPECT_EQ(Sources(tlk_), (Names{L"lera 5.0000 0 0", L"berg 1.2300 4 4"}));
  EXPECT_EQ(tlk_.InsertBerg(1.25f, 2), 0);  // 0.02 away: moved, the sources that were set stay
  EXPECT_EQ(Sources(tlk_), (Names{L"lera 5.0000 0 0", L"berg 1.2500 4 4"}));
  // Within a centimetre but without sources: they are filled in.
  tlk_.End();
  tlk_.pael->kalla = 0;
  EXPECT_EQ(tlk_.InsertBerg(1.25f, 3), 0);
  EXPECT_EQ(Sources(tlk_), (Names{L"lera 5.0000 0 0", L"berg 1.2500 5 4"}));
}

TEST_F(KorvoTlkTest, InsertBergChangesTheLowestRockRowOrAppendsOne) {
  Append(tlk_, {{L"BERG", 8.0f}, {L"Berg", 6.0f}, {L"lera", 4.0f}});
  EXPECT_EQ(tlk_.InsertBerg(2.0f, 4), 0);
  EXPECT_EQ(Rows(tlk_), (Names{L"BERG 8.00", L"Berg 2.00", L"lera 4.00"}));

  CKorvoTlk soil(1, 0, 0);
  Append(soil, {{L"lera", 1.0f}});
  EXPECT_EQ(soil.InsertBerg(3.0f, 26), 0);  // appended, not sorted in
  EXPECT_EQ(Sources(soil), (Names{L"lera 1.0000 0 0", L"berg 3.0000 5 26"}));
}

TEST_F(KorvoTlkTest, FindMtrlByOldOrNorwegianName) {
  EXPECT_EQ(tlk_.FindMtrl(L"lera", 1), 0);  // empty list
  Append(tlk_, {{L"lera", 9.0f}, {L"sand", 6.0f}, {L"LERA", 3.0f}});
  tlk_.pael->index = 11;
  EXPECT_EQ(tlk_.FindMtrl(L"Lera", 1), 1);
  EXPECT_EQ(tlk_.Where(nullptr), 3);  // the lowest
  EXPECT_EQ(tlk_.FindMtrl(L"grus", 1), 0);
  EXPECT_EQ(tlk_.Where(nullptr), 1);
  EXPECT_EQ(tlk_.FindMtrl(L"LEIRE", 0), 1);
  EXPECT_FLOAT_EQ(tlk_.pael->niva, 3.0f);
  // Rows without an index are "Uspesifisert materiale" to the Norwegian look-up.
  EXPECT_EQ(tlk_.FindMtrl(L"uspesifisert materiale", 2), 1);
  EXPECT_EQ(tlk_.Where(nullptr), 2);
  tlk_.Home();
  tlk_.pael->index = -1;
  tlk_++;
  tlk_.pael->index = 41;
  tlk_.End();
  tlk_.pael->index = 1;
  EXPECT_EQ(tlk_.FindMtrl(L"uspesifisert materiale", 2), 0);
}

TEST_F(KorvoTlkTest, IfFriktKnowsFiveExactNames) {
  for (const wchar_t* name : {L"friktjord", L"sand", L"sten", L"grus", L"moraen"}) {
    EXPECT_EQ(tlk_.IfFrikt(name), 1) << name;
  }
  EXPECT_EQ(tlk_.IfFrikt(L"Sand"), 0);
  EXPECT_EQ(tlk_.IfFrikt(L"block"), 0);
  EXPECT_EQ(tlk_.IfFrikt(L"lera"), 0);
}

TEST_F(KorvoTlkTest, BlockIFriktInFrictionSoilRemovesRows) {
  // In the same friction soil the lower row is kept; between two different
  // ones the lower one goes, and the marked row with it.
  Append(tlk_, {{L"sand", 5.0f}, {L"block", 4.0f}, {L"sand", 3.0f}});
  tlk_.Home();
  tlk_++;
  EXPECT_EQ(tlk_.BlockIFrikt(), 1);
  EXPECT_EQ(Rows(tlk_), (Names{L"sand 3.00"}));

  CKorvoTlk mixed(1, 0, 0);
  Append(mixed, {{L"sand", 5.0f}, {L"block", 4.0f}, {L"grus", 3.0f}, {L"lera", 2.0f}});
  mixed.Home();
  mixed++;
  EXPECT_EQ(mixed.BlockIFrikt(), 1);
  EXPECT_STREQ(mixed.pael->namn, L"lera");
  EXPECT_EQ(mixed.Goto_mark(), -1);
  EXPECT_EQ(Rows(mixed), (Names{L"sand 5.00", L"block 4.00", L"lera 2.00"}));
}

TEST_F(KorvoTlkTest, BlockIFriktDoesNothingAtTheEdgesOrBesideOtherSoil) {
  EXPECT_EQ(tlk_.BlockIFrikt(), 0);  // empty
  Append(tlk_, {{L"sand", 5.0f}});
  EXPECT_EQ(tlk_.BlockIFrikt(), 0);  // only row
  Append(tlk_, {{L"block", 4.0f}, {L"lera", 3.0f}});
  tlk_.Home();
  EXPECT_EQ(tlk_.BlockIFrikt(), 0);  // first row: cursor to the row below
  EXPECT_EQ(tlk_.Where(nullptr), 2);
  EXPECT_EQ(tlk_.BlockIFrikt(), 0);  // lera below is no friction soil
  EXPECT_EQ(tlk_.Where(nullptr), 3);
  EXPECT_EQ(tlk_.BlockIFrikt(), 0);  // last row: the cursor stays
  EXPECT_EQ(tlk_.Where(nullptr), 3);
  EXPECT_EQ(tlk_.antal, 3);
}

TEST_F(KorvoTlkTest, TolkCleanRemovesBlocksAndRunsAndJoinsTheLowestLayerToRock) {
  using Layers = std::vector<std::pair<const wchar_t*, float>>;
  const struct {
    Layers rows;
    Names clean;
  } cases[] = {
      {{}, {}},
      {{{L"block", 4}}, {}},
      {{{L"lera", 5}, {L"block", 4}, {L"block", 3}}, {L"lera 5.00"}},
      {{{L"block", 5}, {L"lera", 4}}, {L"block 5.00", L"lera 4.00"}},  // a block on top stays
      // Blocks in friction soil go; the one beside clay stays.
      {{{L"sand", 6}, {L"block", 5}, {L"sand", 4}, {L"block", 3.5}, {L"lera", 3}, {L"block", 2}},
       {L"sand 4.00", L"block 3.50", L"lera 3.00"}},
      // The lowest row of a run stays.
      {{{L"lera", 5}, {L"lera", 4}, {L"lera", 3}}, {L"lera 3.00"}},
      {{{L"sand", 9}, {L"sand", 9}, {L"lera", 5}, {L"sand", 4}, {L"sand", 2}},
       {L"sand 9.00", L"lera 5.00", L"sand 2.00"}},
      // The layer above rock is joined to it over a small gap; a wider one gets an unknown layer.
      {{{L"lera", 5}, {L"berg", 4.9f}}, {L"lera 4.90", L"berg 4.90"}},
      {{{L"lera", 5}, {L"berg", 4.7f}}, {L"lera 5.00", L"X 4.70", L"berg 4.70"}},
      {{{L"lera", 5}, {L"lera", 4.95f}, {L"berg", 4.9f}}, {L"lera 4.90", L"berg 4.90"}},
      {{{L"berg", 4}}, {L"berg 4.00"}},
  };
  for (const auto& c : cases) {
    CKorvoTlk tlk(1, 0, 0);
    for (const auto& [namn, niva] : c.rows) Append(tlk, {{namn, niva}});
    EXPECT_EQ(tlk.TolkClean(), 1);
    EXPECT_EQ(Rows(tlk), c.clean) << (c.clean.empty() ? L"" : c.clean[0]);
  }
}

TEST_F(KorvoTlkTest, DataCheckReportsRowsBelowRock) {
  EXPECT_EQ(tlk_.DataCheck(0), 0);
  Append(tlk_, {{L"berg", 5.0f}, {L"lera", 4.0f}});
  EXPECT_EQ(tlk_.DataCheck(0), 1);
  ASSERT_EQ(messages_.size(), 1u);
  EXPECT_EQ(messages_[0],
            L"Fel och varningar:\nMaterial lera på nivå 4.00 är under berg på nivå 5.00\n");

  CKorvoTlk fine(1, 0, 0);
  Append(fine, {{L"lera", 5.0f}, {L"berg", 4.0f}});
  EXPECT_EQ(fine.DataCheck(0), 0);
  EXPECT_EQ(messages_.size(), 1u);
}

TEST_F(KorvoTlkTest, SortingGivesFallingLevels) {
  Append(tlk_, {{L"a", 1.0f}, {L"b", 5.0f}, {L"c", 3.0f}, {L"d", 5.0f}});
  tlk_.Sortera(-1);  // strict: equal levels keep their order
  EXPECT_EQ(Rows(tlk_), (Names{L"b 5.00", L"d 5.00", L"c 3.00", L"a 1.00"}));
  tlk_.Sortera(1);  // at or above: equal levels change places
  EXPECT_EQ(Rows(tlk_), (Names{L"d 5.00", L"b 5.00", L"c 3.00", L"a 1.00"}));
  tlk_.Sortera(0);
  EXPECT_EQ(Rows(tlk_), (Names{L"d 5.00", L"b 5.00", L"c 3.00", L"a 1.00"}));
}

}  // namespace
