#include "korvo/foundation/coding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace korvo {
namespace {

std::vector<int> Bytes(const uint8_t* p, size_t n) {
  return std::vector<int>(p, p + n);
}

TEST(CodingNumbers, FixedWidthsAreLittleEndian) {
  uint8_t buf[8];
  EncodeFixed16(buf, 0x1234);
  EXPECT_EQ(Bytes(buf, 2), (std::vector<int>{0x34, 0x12}));
  EncodeFixed32(buf, 0x89ABCDEFu);
  EXPECT_EQ(Bytes(buf, 4), (std::vector<int>{0xEF, 0xCD, 0xAB, 0x89}));
  EncodeFixed64(buf, 0x0102030405060708ull);
  EXPECT_EQ(Bytes(buf, 8), (std::vector<int>{8, 7, 6, 5, 4, 3, 2, 1}));
  EXPECT_EQ(DecodeFixed64(buf), 0x0102030405060708ull);
}

TEST(CodingNumbers, NegativeValuesSurviveThroughTheirUnsignedForm) {
  uint8_t buf[4];
  EncodeFixed16(buf, static_cast<uint16_t>(int16_t{-2}));
  EXPECT_EQ(Bytes(buf, 2), (std::vector<int>{0xFE, 0xFF}));
  EXPECT_EQ(static_cast<int16_t>(DecodeFixed16(buf)), -2);
  EncodeFixed32(buf, static_cast<uint32_t>(int32_t{-500}));
  EXPECT_EQ(static_cast<int32_t>(DecodeFixed32(buf)), -500);
}

TEST(CodingNumbers, FloatsTravelAsTheirBitPattern) {
  uint8_t buf[8];
  EncodeDouble(buf, 1.0);
  EXPECT_EQ(Bytes(buf, 8), (std::vector<int>{0, 0, 0, 0, 0, 0, 0xF0, 0x3F}));
  EncodeDouble(buf, 9999999.9);
  EXPECT_EQ(DecodeDouble(buf), 9999999.9);
  EncodeFloat(buf, -2.5f);
  EXPECT_EQ(Bytes(buf, 4), (std::vector<int>{0, 0, 0x20, 0xC0}));
  EXPECT_EQ(DecodeFloat(buf), -2.5f);
}

TEST(CodingNumbers, PutAppends) {
  std::string s = "x";
  PutFixed16(&s, 0x0102);
  PutFixed32(&s, 0x03040506u);
  PutFixed64(&s, 7);
  ASSERT_EQ(s.size(), 15u);
  EXPECT_EQ(s.substr(0, 7), std::string("x\x02\x01\x06\x05\x04\x03", 7));
  EXPECT_EQ(DecodeFixed64(reinterpret_cast<const uint8_t*>(s.data()) + 7), 7u);
}

TEST(CodingText, WritesWindows1252AndPadsWithZeros) {
  uint8_t buf[8];
  std::fill(buf, buf + 8, 0xAA);
  EncodeFixedText(buf, 8, L"Å\u00e4ö€");
  EXPECT_EQ(Bytes(buf, 8), (std::vector<int>{0xC5, 0xE4, 0xF6, 0x80, 0, 0, 0, 0}));
}

TEST(CodingText, KeepsOneByteLessThanTheWidth) {
  uint8_t buf[5];
  EncodeFixedText(buf, 5, L"ÆØÅXY");
  EXPECT_EQ(Bytes(buf, 5), (std::vector<int>{0xC6, 0xD8, 0xC5, 'X', 0}));
  uint8_t one[1] = {0x55};
  EncodeFixedText(one, 1, L"A");
  EXPECT_EQ(one[0], 0);
}

TEST(CodingText, ACharacterWithoutAByteBecomesAQuestionMark) {
  uint8_t buf[4];
  EncodeFixedText(buf, 4, L"a\u0416b");
  EXPECT_EQ(Bytes(buf, 4), (std::vector<int>{'a', '?', 'b', 0}));
}

TEST(CodingText, ReadsUpToTheFirstZeroAndClearsTheRest) {
  const uint8_t in[6] = {0xD8, 'k', 0, 'j', 'u', 'n'};
  wchar_t out[6];
  std::fill(out, out + 6, L'#');
  DecodeFixedText(in, 6, out);
  EXPECT_EQ(std::wstring(out), L"Øk");
  for (int i = 2; i < 6; ++i) EXPECT_EQ(out[i], L'\0');
}

TEST(CodingText, AFieldWithoutZeroIsCutToWidthLessOne) {
  const uint8_t in[4] = {'A', 'B', 'C', 'D'};
  wchar_t out[9];
  DecodeFixedText(in, 4, out);
  EXPECT_EQ(std::wstring(out), L"ABC");
  wchar_t small[3];
  DecodeFixedText(in, 4, small);
  EXPECT_EQ(std::wstring(small), L"AB");
}

TEST(CodingText, FieldTextStopsAtTheEndOfAFieldWithoutZero) {
  const wchar_t full[3] = {L'a', L'b', L'c'};
  EXPECT_EQ(FieldText(full), L"abc");
  const wchar_t shorter[4] = L"ab";
  EXPECT_EQ(FieldText(shorter), L"ab");
}

}  // namespace
}  // namespace korvo
