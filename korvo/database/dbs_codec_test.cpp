#include "korvo/database/dbs_codec.h"

#include <gtest/gtest.h>

#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

#include "korvo/database/dbs_format.h"
#include "korvo/foundation/coding.h"

namespace korvo {
namespace {

template <size_t N>
void Fill(wchar_t (&field)[N], const wchar_t* text) {
  std::wmemset(field, L'\0', N);
  std::wcsncpy(field, text, N - 1);
}

std::string Text(const uint8_t* p, dbs::Field f) {
  return std::string(reinterpret_cast<const char*>(p + f.offset), f.width);
}

// A text of exactly the width of the field less one: 'A' to 'Z' and then
// the Nordic letters, so that each place shows.
std::wstring FullWidth(int width) {
  const std::wstring letters = L"ÅÄÖÆØåäöæøABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  return letters.substr(0, width - 1);
}

// The Nordic letters used here have the same numbers in the file's code
// page as in Unicode, so each character is its byte.
std::string Cp1252(const std::wstring& text) {
  return std::string(text.begin(), text.end());
}

// The texts, the counts, the bounds, and the rest in the header's order.
// clang-format off
korvoprjdattype SampleHeader() {
  return korvoprjdattype{
      L"4.0", L"Vägverket", L"Bro över Ålkilen", L"12-345", L"31.12.1999", L"Första raden",
      L"Andra", L"Ø. Sæther", L"Åsa", L"RAK",
      1, 2, -3, 4, 5, 6,
      0.5, 1.5, 6500000.25, 6500100.75, 1500000.125, 1500200.5, -12.25, 45.75,
      0.1, 123456, L'+', 7, 8, 9, 1, 2.5, 593, {-1, -2, -3, -4, -5, -6, -7, -8, -9},
      {0xA0000000u, 0xA0000001u, 0xA0000002u, 0xA0000003u, 0xA0000004u, 0xA0000005u,
       0xA0000006u, 0xA0000007u, 0xA0000008u, 0xA0000009u, 0xA000000Au}};
}
// clang-format on

TEST(DbsHeaderCodec, EveryFieldLiesAtItsOffset) {
  uint8_t b[dbs::kHeaderSize];
  std::memset(b, 0xEE, sizeof b);
  EncodeDbsHeader(SampleHeader(), b);
  namespace hd = dbs::header;
  EXPECT_EQ(Text(b, hd::kDbsver), std::string("4.0\0\0\0", 6));
  EXPECT_EQ(Text(b, hd::kPrjnamn), Cp1252(L"Bro över Ålkilen") + std::string(36 - 16, '\0'));
  EXPECT_EQ(Text(b, hd::kHandl).substr(0, 10), "\xD8. S\xE6ther" + std::string(1, '\0'));
  EXPECT_EQ(Text(b, hd::kKsyst), std::string("RAK\0\0", 5));
  const int shorts[][2] = {{216, 1}, {218, 2}, {220, -3}, {222, 4}, {224, 5}, {226, 6},
                           {306, 7}, {308, 8}, {310, 9},  {312, 1}, {314, 0}};
  for (const auto& [at, v] : shorts)
    EXPECT_EQ(static_cast<int16_t>(DecodeFixed16(b + at)), v) << at;
  const double bounds[8] = {0.5,         1.5,       6500000.25, 6500100.75,
                            1500000.125, 1500200.5, -12.25,     45.75};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(DecodeDouble(b + 228 + 8 * i), bounds[i]) << i;
  EXPECT_EQ(DecodeDouble(b + 292), 0.1);
  EXPECT_EQ(DecodeFixed32(b + 300), 123456u);
  EXPECT_EQ(b[304], '+');
  EXPECT_EQ(b[305], 0);
  EXPECT_EQ(DecodeDouble(b + 316), 2.5);
  EXPECT_EQ(DecodeFixed32(b + 324), 593u);
  EXPECT_EQ(static_cast<int32_t>(DecodeFixed32(b + 328)), -1);
  EXPECT_EQ(static_cast<int32_t>(DecodeFixed32(b + 360)), -9);
  EXPECT_EQ(DecodeFixed32(b + 364), 0xA0000000u);
  EXPECT_EQ(DecodeFixed32(b + 404), 0xA000000Au);
}

TEST(DbsHeaderCodec, ReadsBackWhatItWrote) {
  const korvoprjdattype h = SampleHeader();
  uint8_t b[dbs::kHeaderSize];
  EncodeDbsHeader(h, b);
  // Every field is set from the bytes: none keeps the filler, so the header
  // read back writes the same bytes again.
  korvoprjdattype back;
  std::memset(static_cast<void*>(&back), 0x5A, sizeof back);
  DecodeDbsHeader(b, &back);
  uint8_t again[dbs::kHeaderSize];
  EncodeDbsHeader(back, again);
  EXPECT_EQ(std::memcmp(again, b, sizeof b), 0);
  EXPECT_EQ(std::wstring(back.Prjnamn), L"Bro över Ålkilen");
  EXPECT_EQ(back.uppdnrfil, 123456);
  EXPECT_EQ(back.minz, -12.25);
  EXPECT_EQ(back.guid[10], 0xA000000Au);
  EXPECT_EQ(back.reserv3[8], -9);
}

TEST(DbsHeaderCodec, EveryTextAtFullWidthAndBeyond) {
  korvoprjdattype h{};
  wchar_t* const fields[] = {h.Dbsver, h.Uppdnamn, h.Prjnamn, h.Uppdnr, h.Datum,
                             h.Rad1,   h.Rad2,     h.Handl,   h.Ritare, h.Ksyst};
  const dbs::Field places[] = {dbs::header::kDbsver, dbs::header::kUppdnamn, dbs::header::kPrjnamn,
                               dbs::header::kUppdnr, dbs::header::kDatum,    dbs::header::kRad1,
                               dbs::header::kRad2,   dbs::header::kHandl,    dbs::header::kRitare,
                               dbs::header::kKsyst};
  for (int i = 0; i < 10; ++i) {
    const std::wstring full = FullWidth(places[i].width);
    std::wmemcpy(fields[i], full.c_str(), full.size() + 1);
  }
  uint8_t b[dbs::kHeaderSize];
  EncodeDbsHeader(h, b);
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(Text(b, places[i]), Cp1252(FullWidth(places[i].width)) + std::string(1, '\0')) << i;
  }
  // A file from elsewhere may fill a field to the last byte: a reader keeps
  // one character less.
  std::memset(b + dbs::header::kPrjnamn.offset, 'Q', dbs::header::kPrjnamn.width);
  korvoprjdattype back{};
  DecodeDbsHeader(b, &back);
  EXPECT_EQ(std::wstring(back.Prjnamn), std::wstring(35, L'Q'));
  EXPECT_EQ(std::wstring(back.Uppdnamn), FullWidth(31));
  EXPECT_EQ(std::wstring(back.Ksyst), L"ÅÄÖÆ");
}

bhdbstype SampleRecord() {
  bhdbstype r{};
  Fill(r.id, L"ÅB-12+");
  r.bit.Set(bhbit::Bh);
  r.bit.Set(bhbit::Dreie);
  r.bit.Set(bhbit::Karnborr);
  r.bit.Set(bhbit::Lutande);
  r.bit.SetValue(bhbit::Mtntyp, 3);
  r.x = 6500000.125;
  r.y = 1500000.5;
  r.z = 12.75;
  r.sekt = 9999999.9;
  r.avst = -3.5;
  r.djup = 17.25f;
  r.stopp = 93;
  r.symbol = 42;
  r.berg = 2.5;
  r.mykod = 4.125;
  Fill(r.datum, L"01.02.2003");
  r.pos = 1234;
  return r;
}

TEST(DbsRecordCodec, TheShortFormHoldsSixtyTwoBytes) {
  uint8_t b[dbs::kLongRecordSize];
  std::memset(b, 0xEE, sizeof b);
  EncodeDbsRecord(SampleRecord(), dbs::kShortRecordSize, b);
  EXPECT_EQ(Text(b, dbs::record::kId),
            "\xC5"
            "B-12+" +
                std::string(3, '\0'));
  EXPECT_EQ(std::vector<int>(b + 9, b + 16), (std::vector<int>{0x01, 0, 0, 0, 0, 0x81, 0x43}));
  const double xyz[] = {6500000.125, 1500000.5, 12.75, 9999999.9, -3.5};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(DecodeDouble(b + 16 + 8 * i), xyz[i]) << i;
  EXPECT_EQ(DecodeFloat(b + 56), 17.25f);
  EXPECT_EQ(DecodeFixed16(b + 60), 93);
  for (int i = 62; i < dbs::kLongRecordSize; ++i) EXPECT_EQ(b[i], 0xEE) << "byte " << i;
}

TEST(DbsRecordCodec, TheLongFormAddsSymbolRockMyAndDate) {
  uint8_t b[dbs::kLongRecordSize];
  EncodeDbsRecord(SampleRecord(), dbs::kLongRecordSize, b);
  EXPECT_EQ(DecodeFixed32(b + 62), 42u);
  EXPECT_EQ(DecodeDouble(b + 66), 2.5);
  EXPECT_EQ(DecodeDouble(b + 74), 4.125);
  EXPECT_EQ(Text(b, dbs::record::kDatum), std::string("01.02.2003\0", 11));
}

TEST(DbsRecordCodec, BothFormsReadBack) {
  const bhdbstype r = SampleRecord();
  uint8_t b[dbs::kLongRecordSize];
  EncodeDbsRecord(r, dbs::kLongRecordSize, b);
  bhdbstype back;
  std::memset(static_cast<void*>(&back), 0x5A, sizeof back);
  back.pos = 777;
  DecodeDbsRecord(b, dbs::kLongRecordSize, &back);
  EXPECT_EQ(back.pos, 777);
  uint8_t again[dbs::kLongRecordSize];
  EncodeDbsRecord(back, dbs::kLongRecordSize, again);
  EXPECT_EQ(std::memcmp(again, b, sizeof b), 0);
  EXPECT_EQ(std::wstring(back.id), L"ÅB-12+");
  EXPECT_EQ(back.mykod, 4.125);
  EXPECT_EQ(std::wstring(back.datum), L"01.02.2003");

  EncodeDbsRecord(r, dbs::kShortRecordSize, b);
  bhdbstype shortened{};
  DecodeDbsRecord(b, dbs::kShortRecordSize, &shortened);
  EXPECT_EQ(std::wstring(shortened.id) + L"|" + shortened.datum, L"ÅB-12+|");
  EXPECT_EQ(shortened.sekt, 9999999.9);
  EXPECT_EQ(shortened.djup, 17.25f);
  EXPECT_EQ(shortened.symbol, -1);
  EXPECT_EQ(shortened.berg + shortened.mykod, 0.0);
}

TEST(DbsRecordCodec, AnAvpPointStoresItsCodeWhereOthersStoreTheDepth) {
  bhdbstype r{};
  Fill(r.id, L"P1");
  r.bit.Set(bhbit::Avp);
  Fill(r.kod, L"KÖ");
  r.stopp = 90;
  uint8_t b[dbs::kShortRecordSize];
  EncodeDbsRecord(r, dbs::kShortRecordSize, b);
  EXPECT_EQ(b[9], 0x02);
  EXPECT_EQ(std::vector<int>(b + 56, b + 60), (std::vector<int>{'K', 0xD6, 0, 0}));
  EXPECT_EQ(DecodeFixed16(b + 60), 90);

  b[56 + 3] = 'Z';  // a code that fills all four bytes keeps three
  b[56 + 2] = 'Y';
  bhdbstype back{};
  DecodeDbsRecord(b, dbs::kShortRecordSize, &back);
  EXPECT_EQ(std::wstring(back.kod), L"KÖY");
}

TEST(DbsRecordCodec, TheNameAtFullWidthAndCutBeyondIt) {
  bhdbstype r{};
  Fill(r.id, L"ÆØÅ-_+12");
  uint8_t b[dbs::kLongRecordSize];
  EncodeDbsRecord(r, dbs::kLongRecordSize, b);
  EXPECT_EQ(Text(b, dbs::record::kId), "\xC6\xD8\xC5-_+12" + std::string(1, '\0'));
  Fill(r.datum, L"Ääääääääää");
  EncodeDbsRecord(r, dbs::kLongRecordSize, b);
  EXPECT_EQ(Text(b, dbs::record::kDatum), "\xC4" + std::string(9, '\xE4') + std::string(1, '\0'));

  std::memset(b, 'W', 9);  // nine letters without a zero
  bhdbstype back{};
  DecodeDbsRecord(b, dbs::kLongRecordSize, &back);
  EXPECT_EQ(std::wstring(back.id), L"WWWWWWWW");
  EXPECT_EQ(std::wstring(back.datum), L"Ääääääääää");
}

TEST(DbsFlags, EachNamedFlagHasItsByteAndBit) {
  struct Expect {
    bhbit::Flag flag;
    int byte;
    int mask;
  };
  const Expect table[] = {
      {bhbit::Bh, 0, 1},          {bhbit::Avp, 0, 2},        {bhbit::Lad, 0, 4},
      {bhbit::Lje, 0, 8},         {bhbit::Dpt, 0, 16},       {bhbit::Prv, 1, 2},
      {bhbit::Startvarde, 1, 64}, {bhbit::Vb, 1, 128},       {bhbit::Skv, 2, 1},
      {bhbit::Tlk, 2, 128},       {bhbit::Mykod, 3, 128},    {bhbit::Cpt, 4, 1},
      {bhbit::Ror99, 4, 2},       {bhbit::VattenF, 4, 32},   {bhbit::Mil, 4, 64},
      {bhbit::Dreie, 5, 1},       {bhbit::Enkel, 5, 2},      {bhbit::Dtrykk, 5, 4},
      {bhbit::Ram, 5, 8},         {bhbit::Total, 5, 16},     {bhbit::Fjell, 5, 32},
      {bhbit::Prvvanlig, 5, 64},  {bhbit::Karnborr, 5, 128}, {bhbit::Kommentar, 6, 32},
      {bhbit::Lutande, 6, 64},
  };
  for (const Expect& e : table) {
    bhdbstype r{};
    r.bit.Set(e.flag);
    uint8_t b[dbs::kShortRecordSize];
    EncodeDbsRecord(r, dbs::kShortRecordSize, b);
    for (int i = 0; i < 7; ++i) {
      EXPECT_EQ(b[9 + i], i == e.byte ? e.mask : 0)
          << "flag at byte " << e.byte << " mask " << e.mask;
    }
    r.bit.Clear(e.flag);
    EXPECT_FALSE(r.bit.Test(e.flag));
  }
}

TEST(DbsFlags, PipeKindAndSeriesTypeAreNumbersInTheirBits) {
  bhbit bit{};
  bit.Set(bhbit::Skv);
  bit.Set(bhbit::Tlk);
  bit.SetValue(bhbit::Ror, bhbit::RorStud);
  EXPECT_EQ(bit.b[2], 0x80 | 12 | 1);
  EXPECT_EQ(bit.Get(bhbit::Ror), bhbit::RorStud);
  bit.SetValue(bhbit::Ror, bhbit::RorGd);
  EXPECT_EQ(bit.b[2], 0x80 | 6 | 1);
  bit.SetValue(bhbit::Ror, 0);
  EXPECT_FALSE(bit.Test(bhbit::Ror));
  EXPECT_TRUE(bit.Test(bhbit::Tlk));

  bit.Set(bhbit::Kommentar);
  bit.SetValue(bhbit::Mtntyp, 31);
  EXPECT_EQ(bit.b[6], 0x20 | 0x1F);
  bit.SetValue(bhbit::Mtntyp, 2);
  EXPECT_EQ(bit.b[6], 0x20 | 2);

  bit.SetValue(bhbit::Prvtyp, bhbit::PrvtypOld | bhbit::PrvtypC);
  bit.SetTo(bhbit::Prvtyp, false);
  bit.SetValue(bhbit::Prvtyp, bhbit::PrvtypC);
  EXPECT_EQ(bit.b[1], 8);
}

}  // namespace
}  // namespace korvo
