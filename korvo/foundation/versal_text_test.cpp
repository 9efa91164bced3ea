#include "korvo/foundation/versal_text.h"

#include <string>

#include <gtest/gtest.h>

namespace {

std::wstring Versal(std::wstring text) {
  VersalText(text);
  return text;
}

TEST(VersalText, UpperCasesAsciiLettersOnly) {
  EXPECT_EQ(Versal(L"az AZ 09 -_+`{@["), L"AZ AZ 09 -_+`{@[");
  // National letters are left alone.
  const std::wstring national = L"\u00e5\u00e4\u00f6\u00e6\u00f8\u00fc\u00e9\u00ff\u00b5";
  EXPECT_EQ(Versal(national), national);
}

TEST(VersalText, MapsTheSixWidenedValues) {
  const wchar_t from[] = {0xFFE5, 0xFFE6, 0xFFF8, 0xFF86, 0xFF91, 0xFF9B, 0};
  const wchar_t to[] = {0xFFC5, 0xFFC6, 0xFFD8, 0xFF8F, 0xFF92, 0xFFED, 0};
  EXPECT_EQ(Versal(from), std::wstring(to));
  // Their neighbours and their targets stay.
  const std::wstring others = {0xFFE4, 0xFFE7, 0xFFC5, 0xFF8F, 0xFF92, 0xFFED, 0xFF9C, 0xFF85};
  EXPECT_EQ(Versal(others), others);
}

TEST(VersalText, PointerFormStopsAtTheZero) {
  wchar_t text[] = L"ab\0cd";
  VersalText(text);
  EXPECT_EQ(std::wstring(text, 5), std::wstring(L"AB\0cd", 5));
  VersalText(static_cast<wchar_t*>(nullptr));  // must not fault
  wchar_t empty[] = L"";
  VersalText(empty);
  EXPECT_EQ(empty[0], L'\0');
}

}  // namespace
