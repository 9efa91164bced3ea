// The date and time value types of the desktop framework that the records and
// operations are written against.
#ifndef KORVO_PLATFORM_DATETIME_H_
#define KORVO_PLATFORM_DATETIME_H_

#include <cstdint>

#include "korvo/export.h"

// A point in time as days since 1899-12-30 (the fraction is the time of day),
// with a status. Two valid values less than half a second apart are equal.
class KORVO_EXPORT COleDateTime {
 public:
  enum DateTimeStatus { valid = 0, invalid = 1, null = 2 };

  COleDateTime() : m_dt(0.0), m_status(valid) {}
  explicit COleDateTime(double dt) : m_dt(dt), m_status(valid) {}
  // A calendar time; an impossible date gives status invalid.
  COleDateTime(int year, int month, int day, int hour, int minute, int second);

  // Sets the value from a calendar time; returns 0 when valid, 1 when not.
  int SetDateTime(int year, int month, int day, int hour, int minute, int second);
  int SetDate(int year, int month, int day) { return SetDateTime(year, month, day, 0, 0, 0); }
  int SetStatus(DateTimeStatus status) {
    m_status = status;
    return 0;
  }
  DateTimeStatus GetStatus() const { return static_cast<DateTimeStatus>(m_status); }

  // Calendar parts of a valid value, rounded to the nearest second.
  int GetYear() const;
  int GetMonth() const;
  int GetDay() const;
  int GetHour() const;
  int GetMinute() const;
  int GetSecond() const;

  // The local time of this moment.
  static COleDateTime GetCurrentTime();

  bool operator==(const COleDateTime& o) const;
  bool operator!=(const COleDateTime& o) const { return !(*this == o); }
  bool operator<(const COleDateTime& o) const;
  bool operator>(const COleDateTime& o) const { return o < *this; }
  bool operator<=(const COleDateTime& o) const { return !(o < *this); }
  bool operator>=(const COleDateTime& o) const { return !(*this < o); }

  double m_dt;
  int m_status;
};

// Seconds since 1970-01-01 UTC.
class KORVO_EXPORT CTime {
 public:
  CTime() : time_(0) {}
  explicit CTime(int64_t t) : time_(t) {}
  int64_t GetTime() const { return time_; }
  static CTime GetCurrentTime();

 private:
  int64_t time_;
};

namespace korvo {

// A calendar time in the local zone, as the file-time and clock helpers give it.
struct LocalTime {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};

KORVO_EXPORT LocalTime NowLocal();

}  // namespace korvo

#endif  // KORVO_PLATFORM_DATETIME_H_
