#include "text.h"

#include <gtest/gtest.h>

#include <clocale>

namespace korvo::cli {
namespace {

TEST(Utf8, NordicLettersAndSymbolsBothWays) {
  const std::wstring text = L"Sjöberg, gråbrun, Ø Æ, 80°, €";
  const std::string utf8 = Utf8(text);
  EXPECT_EQ(utf8,
            "Sj\xC3\xB6"
            "berg, gr\xC3\xA5"
            "brun, \xC3\x98 \xC3\x86, 80\xC2\xB0, \xE2\x82\xAC");
  EXPECT_EQ(Wide(utf8), text);
}

TEST(Utf8, CharactersBeyondTheBasicPlane) {
  const std::string utf8 = "\xF0\x9F\x98\x80";  // U+1F600
  const std::wstring wide = Wide(utf8);
  EXPECT_EQ(Utf8(wide), utf8);
  EXPECT_EQ(wide.size(), sizeof(wchar_t) == 2 ? 2u : 1u);
}

TEST(Utf8, WhatIsNoCharacterBecomesTheReplacement) {
  const std::string replacement = "\xEF\xBF\xBD";
  EXPECT_EQ(Utf8(Wide("a\xFF"
                      "b")),
            "a" + replacement + "b");
  EXPECT_EQ(Utf8(Wide("\xC3")), replacement);          // cut short
  EXPECT_EQ(Utf8(Wide("\xC0\xAF")), replacement);      // an overlong "/" never spells "/"
  EXPECT_EQ(Utf8(Wide("\xED\xA0\x80")), replacement);  // a surrogate
  if constexpr (sizeof(wchar_t) == 4) {
    EXPECT_EQ(Utf8(std::wstring(1, static_cast<wchar_t>(0x110000))), replacement);
    EXPECT_EQ(Utf8(std::wstring(1, static_cast<wchar_t>(0xDC00))), replacement);
  }
}

TEST(Fixed, DecimalPointWhateverTheLocale) {
  EXPECT_EQ(Fixed(6638712.43, 3), "6638712.430");
  EXPECT_EQ(Fixed(-0.0005, 3), "-0.001");
  EXPECT_EQ(Fixed(0.2f, 3), "0.200");
  EXPECT_EQ(Fixed(2.5, 0), "2");
  const char* old = std::setlocale(LC_NUMERIC, nullptr);
  const std::string saved = old != nullptr ? old : "C";
  if (std::setlocale(LC_NUMERIC, "sv_SE.UTF-8") != nullptr ||
      std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr) {
    EXPECT_EQ(Fixed(10.42, 2), "10.42");
  }
  std::setlocale(LC_NUMERIC, saved.c_str());
}

TEST(Rounded, FloatsReachScriptsAsWritten) {
  EXPECT_EQ(Rounded(0.2f, 3), 0.2);
  EXPECT_EQ(Rounded(10.42f, 2), 10.42);
  EXPECT_EQ(Rounded(-1.23456, 3), -1.235);
}

TEST(Columns, CountCharactersNotBytes) {
  EXPECT_EQ(Columns(Utf8(L"Åsgatan")), 7u);
  EXPECT_EQ(PadRight(Utf8(L"Ö"), 3), Utf8(L"Ö  "));
  EXPECT_EQ(PadLeft("12", 4), "  12");
  EXPECT_EQ(PadLeft("12345", 4), "12345");
}

TEST(FieldText, StopsAtTheZeroOrTheWidthAndDropsTrailingBlanks) {
  wchar_t field[6] = {L'A', L'B', L' ', L' ', L'\0', L'X'};
  EXPECT_EQ(FieldText(field), "AB");
  wchar_t full[3] = {L'A', L'B', L'C'};  // a foreign writer filled the last unit
  EXPECT_EQ(FieldText(full), "ABC");
}

TEST(OneLine, LinesJoinedBlankOnesDropped) {
  EXPECT_EQ(OneLine(L"Kan ikke opne database : x\n"), "Kan ikke opne database : x");
  EXPECT_EQ(OneLine(L"Fel vid packning !\nPackade =2\r\n\nRaderade=3"),
            "Fel vid packning ! / Packade =2 / Raderade=3");
  EXPECT_EQ(OneLine(L"a/\n"), "a/");
  EXPECT_EQ(OneLine(L"\n\n"), "");
}

}  // namespace
}  // namespace korvo::cli
