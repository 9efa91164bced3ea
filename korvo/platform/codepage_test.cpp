#include "korvo/platform/codepage.h"

#include <gtest/gtest.h>

#include <string>

namespace korvo {
namespace {

std::string AllBytes() {
  std::string bytes;
  for (int b = 0; b < 256; ++b) bytes += static_cast<char>(b);
  return bytes;
}

TEST(Cp1252, EveryByteSurvivesARoundTrip) {
  const std::string bytes = AllBytes();
  const std::wstring text = FromCp1252(bytes);
  ASSERT_EQ(text.size(), 256u);
  EXPECT_EQ(ToCp1252(text), bytes);
  for (int b = 0; b < 256; ++b) {
    EXPECT_EQ(EncodeCp1252(DecodeCp1252(static_cast<unsigned char>(b))), b) << b;
  }
}

TEST(Cp1252, DecodesTheHighControlsAndLatin1) {
  EXPECT_EQ(DecodeCp1252(0x80), L'\x20AC');
  EXPECT_EQ(DecodeCp1252(0x8A), L'\x0160');
  EXPECT_EQ(DecodeCp1252(0x92), L'\x2019');
  EXPECT_EQ(DecodeCp1252(0x9F), L'\x0178');
  EXPECT_EQ(DecodeCp1252(0xC5), L'\x00C5');
  EXPECT_EQ(DecodeCp1252(0xFF), L'\x00FF');
  for (unsigned char unassigned : {0x81, 0x8D, 0x8F, 0x90, 0x9D}) {
    EXPECT_EQ(DecodeCp1252(unassigned), static_cast<wchar_t>(unassigned));
  }
}

TEST(Cp1252, CharactersWithoutAByteBecomeQuestionMarks) {
  EXPECT_EQ(EncodeCp1252(L'\x0080'), '?');  // the euro's byte, not its character
  EXPECT_EQ(EncodeCp1252(L'\x009F'), '?');
  EXPECT_EQ(EncodeCp1252(L'\x0100'), '?');
  EXPECT_EQ(EncodeCp1252(L'\x03A9'), '?');
  EXPECT_EQ(EncodeCp1252(L'\x20AD'), '?');
  EXPECT_EQ(EncodeCp1252(L'\xFFFF'), '?');
  EXPECT_EQ(ToCp1252(L"a\x4E2D"
                     L"b"),
            "a?b");
  // A character beyond the basic plane is one '?' whatever wchar_t holds it in.
  EXPECT_EQ(
      ToCp1252(std::wstring(L"x") + (sizeof(wchar_t) == 2 ? L"\xD83D\xDE00" : L"\x1F600") + L"y"),
      "x?y");
}

TEST(Cp1252, AppendKeepsWhatIsThere) {
  std::wstring text = L"ab";
  AppendFromCp1252(text, "\xE5\x80");
  EXPECT_EQ(text, L"ab\x00E5\x20AC");
  std::string bytes = "x";
  AppendToCp1252(bytes, L"\x2014z");
  EXPECT_EQ(bytes, "x\x97z");
}

TEST(Cp1252, LinesGetCarriageReturnsAndOnlyTheLinesDo) {
  std::string bytes = "x";
  AppendLinesToCp1252(bytes, L"\n1.00 \x00F6\n\nend");
  EXPECT_EQ(bytes, "x\r\n1.00 \xF6\r\n\r\nend");
  bytes.clear();
  AppendToCp1252(bytes, L"a\nb");
  EXPECT_EQ(bytes, "a\nb");
  bytes.clear();
  // A pair of surrogates is one character, and one '?'.
  const wchar_t pair[] = {0xD83D, 0xDE00, L'\n', 0};
  AppendLinesToCp1252(bytes, pair);
  EXPECT_EQ(bytes, "?\r\n");
}

}  // namespace
}  // namespace korvo
