#pragma once

#include <memory>
#include <optional>
#include <string>

#include "base/Date.h"

namespace quillmeter {

enum class CalendarUnit { hour, day };

// 0 = Sunday ... 6 = Saturday, as the C library and CLDR number them.
using Weekday = int;

// The parts of a local wall-clock time.
struct CalendarDay {
  int year = 1970;
  int month = 1;  // 1 ... 12
  int day = 1;    // 1 ... 31
  friend bool operator==(const CalendarDay&, const CalendarDay&) = default;
};

struct CalendarTime {
  CalendarDay day;
  int hour = 0;
  int minute = 0;
  int second = 0;
  friend bool operator==(const CalendarTime&, const CalendarTime&) = default;
};

// The Gregorian calendar of one time zone with the user's first weekday. Immutable and cheap to copy; safe on every
// thread.
//
// A day starts at its first existing instant: where midnight is skipped by a daylight-saving change, at the instant
// after the gap; where midnight happens twice, at the first one. Adding days keeps the wall-clock time (a time that
// does not exist moves behind the gap), adding hours is plain elapsed time.
class Calendar {
 public:
  // `zone` is a name of the time-zone database ("Asia/Shanghai"). Absent when the database lacks it.
  static std::optional<Calendar> forZone(const std::string& zone, Weekday firstWeekday);
  // The zone named by TZ: a database name (below TZDIR where that is set), an absolute path of a zone file, either with a ":"
  // before it, or a POSIX text with or without daylight-saving rules. Unset: the machine's zone. Empty, or nothing that can be
  // read: UTC, as the C library does it.
  static Calendar current(Weekday firstWeekday);
  static Calendar utc(Weekday firstWeekday = 1);

  Date startOfDay(Date date) const;
  Date startOfWeek(Date date) const;
  Date startOfMonth(Date date) const;
  // 28 ... 31, for the month that holds `date`.
  int daysInMonth(Date date) const;

  // `date` moved by `count` (may be negative) units. Absent when the result leaves Date's range.
  std::optional<Date> adding(int count, CalendarUnit unit, Date date) const;
  // The number of whole units from `start` to `end`, so that adding(n, unit, start) <= end < adding(n + 1, unit,
  // start); negative when `end` is earlier.
  int wholeUnits(CalendarUnit unit, Date start, Date end) const;

  // The start of a calendar day; absent for a day that does not exist (2026-02-30, month 13).
  std::optional<Date> dateFrom(int year, int month, int day) const;
  CalendarTime components(Date date) const;
  // 0 = Sunday.
  Weekday weekday(Date date) const;

  Weekday firstWeekday() const { return firstWeekday_; }
  // Name of the zone in the database; the POSIX text where TZ held one.
  std::string zoneName() const;

 private:
  struct Zone;
  Calendar(std::shared_ptr<const Zone> zone, Weekday firstWeekday);

  std::shared_ptr<const Zone> zone_;
  Weekday firstWeekday_;
};

}  // namespace quillmeter
