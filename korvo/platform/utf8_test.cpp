#include "korvo/platform/utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace korvo {
namespace {

TEST(Utf8, NordicLettersAndSymbolsBothWays) {
  const std::wstring text = L"Sjöberg, gråbrun, Ø Æ, 80°, €";
  const std::string utf8 = Utf8FromWide(text);
  EXPECT_EQ(utf8,
            "Sj\xC3\xB6"
            "berg, gr\xC3\xA5"
            "brun, \xC3\x98 \xC3\x86, 80\xC2\xB0, \xE2\x82\xAC");
  EXPECT_EQ(WideFromUtf8(utf8), text);
}

TEST(Utf8, CharactersBeyondTheBasicPlane) {
  const std::string utf8 = "\xF0\x9F\x98\x80";  // U+1F600
  const std::wstring wide = WideFromUtf8(utf8);
  EXPECT_EQ(Utf8FromWide(wide), utf8);
  EXPECT_EQ(wide.size(), sizeof(wchar_t) == 2 ? 2u : 1u);
}

TEST(Utf8, WhatIsNoCharacterBecomesTheReplacement) {
  const std::string replacement = "\xEF\xBF\xBD";
  EXPECT_EQ(Utf8FromWide(WideFromUtf8("a\xFF"
                                      "b")),
            "a" + replacement + "b");
  EXPECT_EQ(Utf8FromWide(WideFromUtf8("\xC3")), replacement);  // cut short
  // Each byte of an overlong "/" or of a surrogate is a replacement of its own.
  EXPECT_EQ(Utf8FromWide(WideFromUtf8("\xC0\xAF")), replacement + replacement);
  EXPECT_EQ(Utf8FromWide(WideFromUtf8("\xED\xA0\x80")), replacement + replacement + replacement);
  if constexpr (sizeof(wchar_t) == 4) {
    EXPECT_EQ(Utf8FromWide(std::wstring(1, static_cast<wchar_t>(0x110000))), replacement);
    EXPECT_EQ(Utf8FromWide(std::wstring(1, static_cast<wchar_t>(0xDC00))), replacement);
  }
}

}  // namespace
}  // namespace korvo
