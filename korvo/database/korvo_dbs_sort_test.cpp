#include <climits>
#include <cwchar>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "korvo/context/vaglinje.h"
#include "korvo/database/korvo_dbs.h"
#include "korvo/testutil/rows.h"
#include "korvo/testutil/sort_check.h"

namespace korvo {
namespace {

// A database whose comparison can be asked about one pair of records.
class Dbs : public CKorvoDbs {
 public:
  // Sortval with `left` marked and `right` current.
  int Compare(int key, bhdbstype* left, bhdbstype* right) {
    pmael = left;
    pael = right;
    return Sortval(key);
  }
};

bhdbstype Record(const wchar_t* id, bhbit::Flag kind = bhbit::Bh, double x = 0, double y = 0) {
  bhdbstype rec{};
  std::wcsncpy(rec.id, id, 8);
  rec.bit.Set(kind);
  rec.sekt = CKorvoDbs::m_sek_noll;
  rec.x = x;
  rec.y = y;
  return rec;
}

void Add(CKorvoDbs& dbs, bhdbstype rec) {
  ASSERT_EQ(dbs.Ny(1, &rec), 0);
}

using test::Texts;

Texts Names(CKorvoDbs& dbs) {
  return test::EachRow(dbs, [](const bhdbstype& r) { return std::wstring(r.id); });
}

// A straight road line along x from 0 to 100, chainage 1000 at its start.
class StraightLine : public CVaglinje {
 public:
  StraightLine() {
    kovltype start{0.0, 0.0, 0.0, 1000.0};
    kovltype end{100.0, 0.0, 0.0, 1100.0};
    Ny(1, &start);
    Ny(1, &end);
  }
};

TEST(DbsSortval, NamesNumbersFirstThenText) {
  CKorvoDbs dbs;
  for (const wchar_t* id : {L"10", L"9", L"9A", L"ABC", L"AB"}) Add(dbs, Record(id));
  EXPECT_EQ(dbs.Sortera(1), 0);
  EXPECT_EQ(Names(dbs), (Texts{L"9", L"9A", L"10", L"AB", L"ABC"}));
  EXPECT_EQ(dbs.Sortera(-1), 0);
  // Greater numbers first, and a name without one counts as the greatest.
  EXPECT_EQ(Names(dbs), (Texts{L"ABC", L"AB", L"10", L"9A", L"9"}));
}

TEST(DbsSortval, NamesCompareInCapitalsAndSignedNumbers) {
  // Equal names stand; -5 goes before 3.
  const struct {
    int key;
    const wchar_t *left, *right;
    int result;
  } cases[] = {{1, L"ab", L"AB", 0}, {-1, L"ab", L"AB", 1}, {1, L"AA", L"ab", 1},
               {1, L"ab", L"AA", 0}, {1, L"-5X", L"3", 1},  {1, L"3", L"-5X", 0}};
  Dbs dbs;
  for (const auto& c : cases) {
    bhdbstype left = Record(c.left), right = Record(c.right);
    EXPECT_EQ(dbs.Compare(c.key, &left, &right), c.result) << c.key << " " << c.left;
  }
}

TEST(DbsSortval, ValuesAscendingStrictDescendingNot) {
  Dbs dbs;
  bhdbstype a = Record(L"A");
  bhdbstype b = Record(L"B");
  a.y = b.y = 7.5;
  EXPECT_EQ(dbs.Compare(3, &a, &b), 0);
  EXPECT_EQ(dbs.Compare(-3, &a, &b), 1);
  b.y = 8.0;
  EXPECT_EQ(dbs.Compare(3, &a, &b), 1);
  EXPECT_EQ(dbs.Compare(-3, &a, &b), 0);
  EXPECT_EQ(dbs.Compare(-3, &b, &a), 1);
  a.x = 1.0;
  b.z = -1.0;
  a.sekt = 5.0;
  b.avst = 2.0;
  EXPECT_EQ(dbs.Compare(2, &b, &a), 1);
  EXPECT_EQ(dbs.Compare(4, &a, &b), 0);
  EXPECT_EQ(dbs.Compare(4, &b, &a), 1);
  EXPECT_EQ(dbs.Compare(5, &b, &a), 0);  // record chainage without a line
  EXPECT_EQ(dbs.Compare(6, &a, &b), 1);
}

TEST(DbsSortval, KeysOutsideTheTableKeepTheOrder) {
  Dbs dbs;
  bhdbstype a = Record(L"B");
  bhdbstype b = Record(L"A");
  for (int key : {0, 22, -22, 1000, INT_MIN}) EXPECT_EQ(dbs.Compare(key, &a, &b), 0) << key;
}

TEST(DbsSortval, FlagsFirstAscendingLastDescending) {
  struct Case {
    int key;
    bhbit::Flag flag;
    int value;  // for a piece of several bits
  };
  const Case cases[] = {
      {7, bhbit::Cpt, 0},     {8, bhbit::Ror, 12},       {9, bhbit::Avp, 0},
      {10, bhbit::Vb, 0},     {11, bhbit::Fjell, 0},     {12, bhbit::Total, 0},
      {13, bhbit::Ram, 0},    {14, bhbit::Enkel, 0},     {15, bhbit::Dtrykk, 0},
      {16, bhbit::Dreie, 0},  {17, bhbit::Prvvanlig, 0}, {18, bhbit::Startvarde, 0},
      {19, bhbit::Prvtyp, 4}, {20, bhbit::Skv, 0},       {21, bhbit::Tlk, 0},
  };
  Dbs dbs;
  for (const Case& c : cases) {
    bhdbstype with = Record(L"W", bhbit::Dpt);
    bhdbstype without = Record(L"O", bhbit::Dpt);
    c.value ? with.bit.SetValue(c.flag, c.value) : with.bit.Set(c.flag);
    EXPECT_EQ(dbs.Compare(c.key, &with, &without), 1) << c.key;
    EXPECT_EQ(dbs.Compare(c.key, &without, &with), 0) << c.key;
    EXPECT_EQ(dbs.Compare(c.key, &with, &with), 0) << c.key;
    EXPECT_EQ(dbs.Compare(-c.key, &without, &with), 1) << c.key;
    EXPECT_EQ(dbs.Compare(-c.key, &with, &without), 0) << c.key;
    EXPECT_EQ(dbs.Compare(-c.key, &without, &without), 0) << c.key;
  }
}

TEST(DbsSortval, RoadLineTakesPointsWithinItsAreaFirst) {
  StraightLine line;
  CKorvoDbs dbs;
  dbs.vaglinje = &line;
  bhdbstype out = Record(L"OUT", bhbit::Bh, 150.0);  // beyond the end
  out.sekt = 0.0;
  Add(dbs, out);
  Add(dbs, Record(L"FAR", bhbit::Bh, 80.0, 5.0));
  Add(dbs, Record(L"NEAR", bhbit::Bh, 10.0, -9.0));
  dbs.Sortera(5);
  EXPECT_EQ(Names(dbs), (Texts{L"NEAR", L"FAR", L"OUT"}));
  dbs.Sortera(-5);
  EXPECT_EQ(Names(dbs), (Texts{L"OUT", L"FAR", L"NEAR"}));
  dbs.Sortera(6);  // distances -9 and 5, whatever the side
  EXPECT_EQ(Names(dbs), (Texts{L"NEAR", L"FAR", L"OUT"}));
  dbs.vaglinje = nullptr;
  dbs.Sortera(5);  // the records' own chainage: 0, then two without
  EXPECT_EQ(Names(dbs), (Texts{L"OUT", L"NEAR", L"FAR"}));
}

// Random points with few distinct values, so that ties abound.
void FillRandom(CKorvoDbs& dbs, std::mt19937& random) {
  static const wchar_t* const kIds[] = {L"1",  L"2",   L"10", L"10A", L"9",  L"-3",
                                        L"AB", L"abc", L"A",  L"TP1", L"B+", L"0"};
  const int count = static_cast<int>(random() % 90);
  for (int i = 0; i < count; ++i) {
    bhdbstype rec = Record(kIds[random() % 12], bhbit::Dpt);
    for (uint8_t& byte : rec.bit.b) byte = static_cast<uint8_t>(random() & random());
    rec.x = static_cast<double>(random() % 6) * 25.0 - 10.0;
    rec.y = static_cast<double>(random() % 5) - 2.0;
    rec.z = static_cast<double>(random() % 4);
    rec.sekt = random() % 3 ? static_cast<double>(random() % 5) : CKorvoDbs::m_sek_noll;
    rec.avst = static_cast<double>(random() % 4) - 1.5;
    dbs.Ny(1, &rec);
  }
}

std::vector<int> AllKeys() {
  std::vector<int> keys;
  for (int key = -23; key <= 23; ++key) keys.push_back(key);
  return keys;
}

using Probe = test::SortProbe<CKorvoDbs>;

TEST(DbsSortera, EveryKeyGivesTheOrderOfTheReferenceSorts) {
  const std::function<void(Probe&, std::mt19937&)> fill = [](Probe& dbs, std::mt19937& random) {
    FillRandom(dbs, random);
  };
  EXPECT_EQ(test::FirstDisagreement<Probe>(fill, AllKeys(), 25), "");
}

TEST(DbsSortera, EveryKeyAlongARoadLineGivesTheOrderOfTheReferenceSorts) {
  static StraightLine line;
  const std::function<void(Probe&, std::mt19937&)> fill = [](Probe& dbs, std::mt19937& random) {
    dbs.vaglinje = &line;
    FillRandom(dbs, random);
  };
  EXPECT_EQ(test::FirstDisagreement<Probe>(fill, {5, -5, 6, -6}, 60), "");
}

// Findid and FindNuel.

TEST(DbsFindid, FindsByNameInCapitalsOrByOffset) {
  CKorvoDbs dbs;
  for (const wchar_t* id : {L"P1", L"P2", L"P3"}) Add(dbs, Record(id));
  dbs.Home();
  dbs++;
  dbs++;  // P3
  dbs.pael->pos = 624;
  dbs.Home();
  wchar_t wanted[9] = L"p2";
  EXPECT_EQ(dbs.Findid(wanted, -1), 0);
  EXPECT_STREQ(wanted, L"P2");
  EXPECT_STREQ(dbs.pael->id, L"P2");
  EXPECT_STREQ(dbs.pmael->id, L"P1");  // the mark stays where the search began
  EXPECT_EQ(dbs.Findid(nullptr, 624), 0);
  EXPECT_STREQ(dbs.pael->id, L"P3");
  wchar_t other[9] = L"X";
  EXPECT_EQ(dbs.Findid(other, 624), 0);  // either test finds it
  EXPECT_STREQ(dbs.pael->id, L"P3");
  EXPECT_EQ(CKorvoDbs().Findid(nullptr, -1), -1);
}

TEST(DbsFindid, NotFoundPutsTheCursorBack) {
  CKorvoDbs dbs;
  for (const wchar_t* id : {L"P1", L"P2", L"P3"}) Add(dbs, Record(id));
  dbs.Home();
  dbs++;
  wchar_t missing[9] = L"P9";
  EXPECT_EQ(dbs.Findid(missing, -1), -1);
  EXPECT_STREQ(dbs.pael->id, L"P2");
  EXPECT_EQ(dbs.Where(nullptr), 2);
  EXPECT_EQ(dbs.Findid(nullptr, -1), -1);
  EXPECT_STREQ(dbs.pael->id, L"P2");
}

TEST(DbsFindNuel, FindsTheRecordAtAnAddress) {
  CKorvoDbs dbs;
  for (const wchar_t* id : {L"P1", L"P2", L"P3"}) Add(dbs, Record(id));
  dbs.End();
  const auto p3 = reinterpret_cast<uintptr_t>(dbs.pael);
  dbs.Home();
  EXPECT_EQ(dbs.FindNuel(p3), 0);
  EXPECT_STREQ(dbs.pael->id, L"P3");
  bhdbstype foreign = Record(L"F");
  EXPECT_EQ(dbs.FindNuel(reinterpret_cast<uintptr_t>(&foreign)), -1);
  EXPECT_STREQ(dbs.pael->id, L"P3");
}

// Kind codes and symbols.

std::wstring KodOf(bhdbstype rec) {
  CKorvoDbs dbs;
  dbs.Ny(1, &rec);
  wchar_t kod[4] = L"???";
  EXPECT_EQ(dbs.Kod(kod), 0);
  return kod;
}

TEST(DbsKod, KindCodes) {
  bhdbstype avp = Record(L"A", bhbit::Avp);
  EXPECT_EQ(KodOf(avp), L"AVP");
  std::wcscpy(avp.kod, L"KP");
  EXPECT_EQ(KodOf(avp), L"KP");
  EXPECT_EQ(KodOf(Record(L"V", bhbit::Vb)), L"VB");
  bhdbstype pipe = Record(L"R", bhbit::Dpt);
  pipe.bit.SetValue(bhbit::Ror, bhbit::RorStud);
  EXPECT_EQ(KodOf(pipe), L"DUB");
  pipe.bit.SetValue(bhbit::Ror, bhbit::RorMtn);
  EXPECT_EQ(KodOf(pipe), L"MTN");
  pipe.bit.SetValue(bhbit::Ror, bhbit::RorGd);
  EXPECT_EQ(KodOf(pipe), L"GVR");
  EXPECT_EQ(KodOf(Record(L"B")), L"BH");
  EXPECT_EQ(KodOf(Record(L"L", bhbit::Lje)), L"BH");
}

const std::wstring kSymbolPath = L"/static/BrenmarkSymbols/";

bool EndsWith(const std::wstring& text, const std::wstring& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

int SymbolOf(bhdbstype rec) {
  CKorvoDbs dbs;
  dbs.Ny(1, &rec);
  int n = 0;
  dbs.NoSymb(0, &n);
  return n;
}

TEST(DbsNoSymb, NumbersOfTheKinds) {
  bhdbstype rec = Record(L"B");
  rec.bit.Set(bhbit::Dreie);
  rec.bit.Set(bhbit::Total);
  EXPECT_EQ(SymbolOf(rec), 1073741889);
  rec = Record(L"B");
  for (auto f : {bhbit::Cpt, bhbit::Karnborr, bhbit::Dtrykk, bhbit::Fjell, bhbit::Ram, bhbit::Enkel,
                 bhbit::Mil}) {
    rec.bit.Set(f);
  }
  EXPECT_EQ(SymbolOf(rec), 0x40000000 + 2 + 4 + 8 + 16 + 32 + 128 + 16384);
  rec = Record(L"B");
  rec.bit.Set(bhbit::Prvvanlig);
  EXPECT_EQ(SymbolOf(rec), 0x40000000 + 1024);
  rec.bit.Set(bhbit::Skv);
  EXPECT_EQ(SymbolOf(rec), 0x40000000 + 2048);
  rec.bit.Clear(bhbit::Prvvanlig);
  EXPECT_EQ(SymbolOf(rec), 0x40000000 + 4096);
  rec = Record(L"R", bhbit::Dpt);
  rec.bit.SetValue(bhbit::Ror, bhbit::RorStud);
  rec.bit.Set(bhbit::Vb);
  EXPECT_EQ(SymbolOf(rec), 1073742336);
  rec.bit.SetValue(bhbit::Ror, bhbit::RorPz);
  EXPECT_EQ(SymbolOf(rec), 1073742080);
  rec.bit.SetValue(bhbit::Ror, 0);
  EXPECT_EQ(SymbolOf(rec), 1073750016);
}

TEST(DbsNoSymb, TextNamesTheImageOrTheUnknownOne) {
  CKorvoDbs dbs;
  bhdbstype rec = Record(L"B");
  rec.bit.Set(bhbit::Dreie);
  rec.bit.Set(bhbit::Total);
  dbs.Ny(1, &rec);
  const std::wstring numbered = dbs.NoSymb(0, nullptr);
  EXPECT_TRUE(EndsWith(numbered, kSymbolPath + L"1073741889.png")) << numbered;
  EXPECT_EQ(dbs.symbolstatus, -1);  // nothing read without val 1
  const std::wstring unknown = dbs.NoSymb(1, nullptr);
  EXPECT_EQ(dbs.symbolstatus, 1);
  EXPECT_EQ(unknown, numbered.substr(0, numbered.size() - 14) + L"unknown.png");
  dbs.symboler = {L"7.png", L"1073741889.PNG"};
  EXPECT_EQ(std::wstring(dbs.NoSymb(1, nullptr)), numbered);
  dbs.symbolstatus = -2;
  EXPECT_EQ(std::wstring(dbs.NoSymb(0, nullptr)), L" ");
  EXPECT_EQ(std::wstring(dbs.SvSymb(1, nullptr)), L"");
}

}  // namespace
}  // namespace korvo
