#include "korvo/foundation/field_text.h"

#include <gtest/gtest.h>

namespace korvo {
namespace {

TEST(FieldTextTest, MarkerIsAnyLineStartingWithStar) {
  EXPECT_TRUE(IsMarker(L"*"));
  EXPECT_TRUE(IsMarker(L"*anything 12"));
  EXPECT_FALSE(IsMarker(L" *"));
  EXPECT_FALSE(IsMarker(L""));
}

TEST(FieldTextTest, GuidTokenCountsOnlyAfterTheFirstCharacter) {
  const struct {
    const wchar_t *line, *rest, *guid;
  } cases[] = {
      {L"1.5 0 0 GUID 0f8f-x", L"1.5 0 0 ", L"0f8f-x"},
      {L"GUID abc", L"GUID abc", L""},
      {L"1 2 3", L"1 2 3", L""},
      {L"1 GUID", L"1 ", L""},  // a token at the very end gives an empty identifier
  };
  for (const auto& c : cases) {
    std::wstring guid = L"old";
    EXPECT_EQ(SplitGuidToken(c.line, guid), c.rest);
    EXPECT_EQ(guid, c.guid);
  }
}

TEST(FieldTextTest, ShortGuidIsReplacedAndFullOneKept) {
  std::wstring guid(35, L'a');
  EnsureGuid(guid);
  ASSERT_EQ(guid.size(), 36u);
  EXPECT_EQ(guid[8], L'-');
  EXPECT_NE(guid, std::wstring(35, L'a'));

  std::wstring kept(40, L'b');
  EnsureGuid(kept);
  EXPECT_EQ(kept, std::wstring(40, L'b'));
}

TEST(FieldTextTest, DatesGivenYearFirstAreNormalised) {
  struct {
    const wchar_t* in;
    const wchar_t* out;
  } cases[] = {
      {L"2014-03-09", L"09.03.2014"}, {L"2014/3/9", L"09.03.2014"},
      {L"1801-01-02", L"02.01.1801"}, {L"2099-12-31", L"31.12.2099"},
      {L"1800-01-02", L"1800-01-02"}, {L"2100-01-02", L"2100-01-02"},
      {L"09.03.2014", L"09.03.2014"}, {L"9/3-14", L"9/3-14"},
      {L"no date", L"no date"},       {L"", L""},
      {L"2014-03", L"2014-03"},
  };
  for (const auto& c : cases) {
    std::wstring date = c.in;
    NormaliseDate(date);
    EXPECT_EQ(date, c.out) << "input " << std::wstring(c.in).size();
  }
}

TEST(FieldTextTest, CodeSystemTagBothWays) {
  EXPECT_EQ(CodeSystemNumber(L"KRV"), 0);
  EXPECT_EQ(CodeSystemNumber(L"SGF"), 1);
  EXPECT_EQ(CodeSystemNumber(L"krv"), 1);
  EXPECT_EQ(CodeSystemNumber(L""), 1);

  wchar_t tag[4] = L"xxx";
  CodeSystemFromScan(tag, 5, 1);
  EXPECT_STREQ(tag, L"SGF");
  CodeSystemFromScan(tag, 4, 1);
  EXPECT_STREQ(tag, L"KRV");
  CodeSystemFromScan(tag, 6, 0);
  EXPECT_STREQ(tag, L"KRV");
  CodeSystemFromScan(tag, 5, 2);
  EXPECT_STREQ(tag, L"KRV");
}

TEST(FieldTextTest, RemarkColumn) {
  std::wstring line = L"  1.200   12";
  AppendRemark(line, 22, L"Le");
  EXPECT_EQ(line, L"  1.200   12          Le");
  EXPECT_EQ(RemarkAt(line, 22), L"Le");

  std::wstring full(22, L'9');
  AppendRemark(full, 22, L"R");
  EXPECT_EQ(full, std::wstring(22, L'9') + L"R");

  std::wstring longer(25, L'9');
  AppendRemark(longer, 22, L"R");
  EXPECT_EQ(longer, std::wstring(25, L'9') + L"R");

  const std::wstring short_row = L"short";
  EXPECT_EQ(RemarkAt(short_row, 22), L"");
  EXPECT_EQ(RemarkAt(std::wstring(22, L' '), 22), L"");
}

TEST(FieldTextTest, CopyFieldCutsToCapacity) {
  wchar_t field[5];
  CopyField(field, L"abcdefg");
  EXPECT_STREQ(field, L"abcd");
  CopyField(field, L"ab");
  EXPECT_STREQ(field, L"ab");
  CopyField(field, L"");
  EXPECT_STREQ(field, L"");
}

}  // namespace
}  // namespace korvo
