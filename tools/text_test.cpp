#include "text.h"

#include <gtest/gtest.h>

#include <clocale>

namespace korvo::cli {
namespace {

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
