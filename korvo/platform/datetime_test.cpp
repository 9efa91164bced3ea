#include "korvo/platform/datetime.h"

#include <gtest/gtest.h>

namespace {

constexpr double kSecond = 1.0 / 86400.0;

void ExpectParts(const COleDateTime& t, int y, int mo, int d, int h, int mi, int s) {
  EXPECT_EQ(t.GetYear(), y);
  EXPECT_EQ(t.GetMonth(), mo);
  EXPECT_EQ(t.GetDay(), d);
  EXPECT_EQ(t.GetHour(), h);
  EXPECT_EQ(t.GetMinute(), mi);
  EXPECT_EQ(t.GetSecond(), s);
}

TEST(COleDateTime, KnownDaysBothWays) {
  struct Case {
    int y, m, d;
    double days;
  } cases[] = {
      {1899, 12, 30, 0},     {1899, 12, 31, 1},    {1900, 1, 1, 2},       {1900, 3, 1, 61},
      {1970, 1, 1, 25569},   {2000, 1, 1, 36526},  {2000, 2, 29, 36585},  {2024, 2, 29, 45351},
      {2099, 12, 31, 73050}, {1801, 1, 1, -36157}, {1600, 3, 1, -109511},
  };
  for (const Case& c : cases) {
    COleDateTime t(c.y, c.m, c.d, 0, 0, 0);
    EXPECT_EQ(t.GetStatus(), COleDateTime::valid);
    EXPECT_EQ(t.m_dt, c.days) << c.y << "-" << c.m << "-" << c.d;
    ExpectParts(COleDateTime(c.days), c.y, c.m, c.d, 0, 0, 0);
  }
}

TEST(COleDateTime, TimeOfDayIsTheFraction) {
  COleDateTime t(2000, 1, 1, 18, 0, 0);
  EXPECT_DOUBLE_EQ(t.m_dt, 36526.75);
  ExpectParts(COleDateTime(36526.5 + 1.0 / 24 + 2.0 / 1440 + 3 * kSecond), 2000, 1, 1, 13, 2, 3);
  ExpectParts(COleDateTime(2000, 1, 1, 23, 59, 59), 2000, 1, 1, 23, 59, 59);
}

TEST(COleDateTime, BeforeDayZeroTheFractionCountsForward) {
  // The date part counts towards zero and the time is the size of the fraction.
  COleDateTime t(1899, 12, 29, 6, 0, 0);
  EXPECT_DOUBLE_EQ(t.m_dt, -1.25);
  ExpectParts(COleDateTime(-1.25), 1899, 12, 29, 6, 0, 0);
  ExpectParts(COleDateTime(-0.5), 1899, 12, 30, 12, 0, 0);
  ExpectParts(COleDateTime(-36157.75), 1801, 1, 1, 18, 0, 0);
  EXPECT_DOUBLE_EQ(COleDateTime(1801, 1, 1, 18, 0, 0).m_dt, -36157.75);
  // Later in the day is later in time, though the value is smaller.
  EXPECT_LT(COleDateTime(1899, 12, 29, 6, 0, 0), COleDateTime(1899, 12, 29, 7, 0, 0));
  EXPECT_LT(COleDateTime(1899, 12, 29, 23, 0, 0), COleDateTime(1899, 12, 30, 1, 0, 0));
}

TEST(COleDateTime, RoundsToTheNearestSecondAcrossMidnight) {
  ExpectParts(COleDateTime(1.0 - 0.4 * kSecond), 1899, 12, 31, 0, 0, 0);
  ExpectParts(COleDateTime(36585 + 0.6 * kSecond), 2000, 2, 29, 0, 0, 1);
  ExpectParts(COleDateTime(36586 - 0.4 * kSecond), 2000, 3, 1, 0, 0, 0);
  ExpectParts(COleDateTime(-1.0 - (1.0 - 0.3 * kSecond)), 1899, 12, 30, 0, 0, 0);
}

TEST(COleDateTime, ImpossibleDatesAreInvalid) {
  COleDateTime t;
  EXPECT_EQ(t.SetDateTime(1900, 2, 29, 0, 0, 0), 1);  // 1900 is not a leap year
  EXPECT_EQ(t.GetStatus(), COleDateTime::invalid);
  EXPECT_EQ(t.GetYear(), -1);
  EXPECT_EQ(t.SetDate(2023, 2, 29), 1);
  EXPECT_EQ(t.SetDate(2023, 13, 1), 1);
  EXPECT_EQ(t.SetDate(2023, 4, 31), 1);
  EXPECT_EQ(t.SetDateTime(2023, 1, 1, 24, 0, 0), 1);
  EXPECT_EQ(t.SetDateTime(2023, 1, 1, 0, 60, 0), 1);
  EXPECT_EQ(t.SetDateTime(2023, 1, 1, 0, 0, 60), 1);
  EXPECT_EQ(t.SetDate(99, 1, 1), 1);
  EXPECT_EQ(t.SetDate(10000, 1, 1), 1);
  EXPECT_EQ(t.SetDate(2000, 2, 29), 0);
  EXPECT_EQ(t.GetStatus(), COleDateTime::valid);
}

TEST(COleDateTime, EqualWithinHalfASecond) {
  const COleDateTime a(40000.5);
  EXPECT_EQ(a, COleDateTime(40000.5 + 0.49 * kSecond));
  EXPECT_EQ(a, COleDateTime(40000.5 - 0.49 * kSecond));
  EXPECT_NE(a, COleDateTime(40000.5 + 0.51 * kSecond));
  EXPECT_LT(a, COleDateTime(40000.5 + 0.51 * kSecond));
  EXPECT_FALSE(a < COleDateTime(40000.5 + 0.49 * kSecond));
  EXPECT_LE(a, COleDateTime(40000.5 + 0.49 * kSecond));
  // Before day zero the same half second holds on the time scale.
  EXPECT_EQ(COleDateTime(-1.25), COleDateTime(-1.25 - 0.4 * kSecond));
  EXPECT_NE(COleDateTime(-1.25), COleDateTime(-1.25 - 0.6 * kSecond));
  // -0.5 and 0.5 are the same moment.
  EXPECT_EQ(COleDateTime(-0.5), COleDateTime(0.5));
}

TEST(COleDateTime, StatusTakesPartInEquality) {
  COleDateTime a(1.0), b(1.0);
  b.SetStatus(COleDateTime::null);
  EXPECT_NE(a, b);
  a.SetStatus(COleDateTime::null);
  EXPECT_EQ(a, b);
}

TEST(COleDateTime, CurrentTimeMatchesTheLocalClock) {
  const korvo::LocalTime before = korvo::NowLocal();
  const COleDateTime now = COleDateTime::GetCurrentTime();
  const korvo::LocalTime after = korvo::NowLocal();
  ASSERT_EQ(now.GetStatus(), COleDateTime::valid);
  EXPECT_TRUE(now.GetYear() == before.year || now.GetYear() == after.year);
  EXPECT_TRUE(now.GetDay() == before.day || now.GetDay() == after.day);
  EXPECT_TRUE(now.GetMinute() == before.minute || now.GetMinute() == after.minute);
}

TEST(CTime, CountsSecondsSince1970) {
  const CTime now = CTime::GetCurrentTime();
  EXPECT_GT(now.GetTime(), 1700000000);  // after November 2023
}

}  // namespace
