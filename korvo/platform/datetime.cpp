#include "korvo/platform/datetime.h"

#include <cmath>
#include <ctime>

#include "korvo/platform/platform_internal.h"

namespace {

constexpr double kHalfSecond = 0.5 / 86400.0;
// Days from 1899-12-30 to 1970-01-01.
constexpr int64_t kUnixEpochDay = 25569;
constexpr int kMinYear = 100;
constexpr int kMaxYear = 9999;

// Days since 1970-01-01 of a proleptic Gregorian date, and back (the
// era-based conversion, exact for every year).
int64_t DaysFromCivil(int64_t y, unsigned m, unsigned d) {
  y -= m <= 2;
  const int64_t era = (y >= 0 ? y : y - 399) / 400;
  const auto yoe = static_cast<unsigned>(y - era * 400);
  const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + static_cast<int64_t>(doe) - 719468;
}

void CivilFromDays(int64_t z, int* year, int* month, int* day) {
  z += 719468;
  const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const auto doe = static_cast<unsigned>(z - era * 146097);
  const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const unsigned mp = (5 * doy + 2) / 153;
  const unsigned d = doy - (153 * mp + 2) / 5 + 1;
  const unsigned m = mp < 10 ? mp + 3 : mp - 9;
  *year = static_cast<int>(static_cast<int64_t>(yoe) + era * 400 + (m <= 2));
  *month = static_cast<int>(m);
  *day = static_cast<int>(d);
}

bool IsLeapYear(int y) {
  return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
}

int DaysInMonth(int y, int m) {
  static constexpr int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return m == 2 && IsLeapYear(y) ? 29 : kDays[m - 1];
}

// The stored value counts the date part towards zero and the time of day as
// the size of the fraction, so before 1899-12-30 it does not grow with time:
// -1.25 is 1899-12-29 06:00. This gives the value on an even scale.
double Linear(double dt) {
  const double days = std::trunc(dt);
  return days + std::fabs(dt - days);
}

// The value as whole seconds since 1899-12-30 00:00, rounded to the nearest.
int64_t SecondsSinceEpoch(double dt) {
  const double days = std::trunc(dt);
  return static_cast<int64_t>(days) * 86400 + std::llround(std::fabs(dt - days) * 86400.0);
}

int64_t FloorDiv(int64_t a, int64_t b) {
  return a / b - (a % b != 0 && (a < 0) != (b < 0));
}

// The calendar parts of a valid value; false for any other.
bool Split(const COleDateTime& t, korvo::LocalTime* out) {
  if (t.m_status != COleDateTime::valid) return false;
  const int64_t seconds = SecondsSinceEpoch(t.m_dt);
  const int64_t day = FloorDiv(seconds, 86400);
  const auto of_day = static_cast<int>(seconds - day * 86400);
  CivilFromDays(day - kUnixEpochDay, &out->year, &out->month, &out->day);
  out->hour = of_day / 3600;
  out->minute = of_day / 60 % 60;
  out->second = of_day % 60;
  return true;
}

int Part(const COleDateTime& t, int korvo::LocalTime::*field) {
  korvo::LocalTime parts;
  return Split(t, &parts) ? parts.*field : -1;
}

}  // namespace

COleDateTime::COleDateTime(int year, int month, int day, int hour, int minute, int second) {
  SetDateTime(year, month, day, hour, minute, second);
}

int COleDateTime::SetDateTime(int year, int month, int day, int hour, int minute, int second) {
  const bool ok = year >= kMinYear && year <= kMaxYear && month >= 1 && month <= 12 && day >= 1 &&
                  day <= DaysInMonth(year, month) && hour >= 0 && hour <= 23 && minute >= 0 &&
                  minute <= 59 && second >= 0 && second <= 59;
  if (!ok) {
    m_dt = 0.0;
    m_status = invalid;
    return 1;
  }
  const auto days = static_cast<double>(
      DaysFromCivil(year, static_cast<unsigned>(month), static_cast<unsigned>(day)) +
      kUnixEpochDay);
  const double fraction = (hour * 3600 + minute * 60 + second) / 86400.0;
  m_dt = days < 0 ? days - fraction : days + fraction;
  m_status = valid;
  return 0;
}

int COleDateTime::GetYear() const {
  return Part(*this, &korvo::LocalTime::year);
}
int COleDateTime::GetMonth() const {
  return Part(*this, &korvo::LocalTime::month);
}
int COleDateTime::GetDay() const {
  return Part(*this, &korvo::LocalTime::day);
}
int COleDateTime::GetHour() const {
  return Part(*this, &korvo::LocalTime::hour);
}
int COleDateTime::GetMinute() const {
  return Part(*this, &korvo::LocalTime::minute);
}
int COleDateTime::GetSecond() const {
  return Part(*this, &korvo::LocalTime::second);
}

COleDateTime COleDateTime::GetCurrentTime() {
  const korvo::LocalTime now = korvo::NowLocal();
  return COleDateTime(now.year, now.month, now.day, now.hour, now.minute, now.second);
}

bool COleDateTime::operator==(const COleDateTime& o) const {
  if (m_status != o.m_status) return false;
  if (m_status != valid) return m_dt == o.m_dt;
  return std::fabs(Linear(m_dt) - Linear(o.m_dt)) < kHalfSecond;
}

bool COleDateTime::operator<(const COleDateTime& o) const {
  return !(*this == o) && Linear(m_dt) < Linear(o.m_dt);
}

CTime CTime::GetCurrentTime() {
  return CTime(static_cast<int64_t>(std::time(nullptr)));
}

namespace korvo {

LocalTime LocalTimeFromUnix(int64_t seconds) {
  const auto t = static_cast<std::time_t>(seconds);
  std::tm tm{};
#ifdef _WIN32
  localtime_s(&tm, &t);
#else
  localtime_r(&t, &tm);
#endif
  LocalTime out;
  out.year = tm.tm_year + 1900;
  out.month = tm.tm_mon + 1;
  out.day = tm.tm_mday;
  out.hour = tm.tm_hour;
  out.minute = tm.tm_min;
  out.second = tm.tm_sec;
  return out;
}

LocalTime NowLocal() {
  return LocalTimeFromUnix(static_cast<int64_t>(std::time(nullptr)));
}

}  // namespace korvo
