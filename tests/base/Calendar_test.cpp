#include "base/Calendar.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <optional>
#include <random>
#include <string>

#include "base/Iso8601.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

Date at(std::string_view text) {
  return parseIso8601(text).value();
}

// Sets TZ for one test and gives it back.
class ZoneVariable {
 public:
  explicit ZoneVariable(const char* value) {
    if (const char* old = std::getenv("TZ")) old_ = old;
    value == nullptr ? ::unsetenv("TZ") : ::setenv("TZ", value, 1);
  }
  ZoneVariable(const ZoneVariable&) = delete;
  ZoneVariable& operator=(const ZoneVariable&) = delete;
  ~ZoneVariable() { old_ ? ::setenv("TZ", old_->c_str(), 1) : ::unsetenv("TZ"); }

 private:
  std::optional<std::string> old_;
};

struct Boundaries {
  const char* zone;
  const char* instant;
  const char* day;
  const char* nextDay;
  const char* week;  // from Monday on
  const char* month;
  const char* what;
};

// The instants come from another implementation of the time-zone database.
TEST(Calendar, rangesStartAtTheFirstInstantThatTheirFirstDayHas) {
  const Boundaries table[] = {
      {"Asia/Shanghai", "2026-11-21T04:00:00Z", "2026-11-20T16:00:00Z", "2026-11-21T16:00:00Z", "2026-11-15T16:00:00Z",
       "2026-10-31T16:00:00Z", "a zone without changes"},
      {"America/Sao_Paulo", "2018-11-04T12:00:00Z", "2018-11-04T03:00:00Z", "2018-11-05T02:00:00Z",
       "2018-10-29T03:00:00Z", "2018-11-01T03:00:00Z", "midnight is skipped"},
      {"Asia/Beirut", "2022-03-27T20:59:00Z", "2022-03-26T22:00:00Z", "2022-03-27T21:00:00Z", "2022-03-20T22:00:00Z",
       "2022-02-28T22:00:00Z", "midnight is skipped"},
      {"Africa/Cairo", "2010-04-30T09:00:00Z", "2010-04-29T22:00:00Z", "2010-04-30T21:00:00Z", "2010-04-25T22:00:00Z",
       "2010-03-31T22:00:00Z", "midnight is skipped on the last day of the month"},
      {"Africa/Cairo", "2023-04-27T22:00:00Z", "2023-04-27T22:00:00Z", "2023-04-28T21:00:00Z", "2023-04-23T22:00:00Z",
       "2023-03-31T22:00:00Z", "the first hour that exists"},
      {"America/Sao_Paulo", "2018-02-18T01:30:00Z", "2018-02-17T02:00:00Z", "2018-02-18T03:00:00Z",
       "2018-02-12T02:00:00Z", "2018-02-01T02:00:00Z", "the hour before midnight happens twice"},
      {"America/Havana", "2018-11-04T23:00:00Z", "2018-11-04T04:00:00Z", "2018-11-05T05:00:00Z", "2018-10-29T04:00:00Z",
       "2018-11-01T04:00:00Z", "midnight happens twice"},
      {"Atlantic/Azores", "2018-10-28T19:00:00Z", "2018-10-28T00:00:00Z", "2018-10-29T01:00:00Z",
       "2018-10-22T00:00:00Z", "2018-10-01T00:00:00Z", "midnight happens twice"},
      {"Australia/Lord_Howe", "2026-04-05T01:30:00Z", "2026-04-04T13:00:00Z", "2026-04-05T13:30:00Z",
       "2026-03-29T13:00:00Z", "2026-03-31T13:00:00Z", "half an hour more"},
      {"Pacific/Apia", "2011-12-30T10:30:00Z", "2011-12-30T10:00:00Z", "2011-12-31T10:00:00Z", "2011-12-26T10:00:00Z",
       "2011-12-01T10:00:00Z", "the day before was skipped"},
      {"America/St_Johns", "2010-11-07T18:30:00Z", "2010-11-07T02:30:00Z", "2010-11-08T03:30:00Z",
       "2010-11-01T02:30:00Z", "2010-11-01T02:30:00Z", "one minute of the day comes before the hour that repeats"},
      {"America/New_York", "2026-03-08T16:00:00Z", "2026-03-08T05:00:00Z", "2026-03-09T04:00:00Z",
       "2026-03-02T05:00:00Z", "2026-03-01T05:00:00Z", "23 hours"},
      {"America/New_York", "2026-11-01T17:00:00Z", "2026-11-01T04:00:00Z", "2026-11-02T05:00:00Z",
       "2026-10-26T04:00:00Z", "2026-11-01T04:00:00Z", "25 hours"},
      {"Europe/Berlin", "2024-02-29T11:00:00Z", "2024-02-28T23:00:00Z", "2024-02-29T23:00:00Z", "2024-02-25T23:00:00Z",
       "2024-01-31T23:00:00Z", "leap day"},
      {"Asia/Kolkata", "2025-12-31T18:29:00Z", "2025-12-30T18:30:00Z", "2025-12-31T18:30:00Z", "2025-12-28T18:30:00Z",
       "2025-11-30T18:30:00Z", "a week over the turn of the year"},
  };
  for (const Boundaries& row : table) {
    SCOPED_TRACE(std::string(row.zone) + " " + row.instant + ": " + row.what);
    const auto calendar = Calendar::forZone(row.zone, 1);
    ASSERT_TRUE(calendar);
    const Date instant = at(row.instant);
    EXPECT_EQ(formatIso8601(calendar->startOfDay(instant)), row.day);
    EXPECT_EQ(formatIso8601(calendar->startOfWeek(instant)), row.week);
    EXPECT_EQ(formatIso8601(calendar->startOfMonth(instant)), row.month);
    EXPECT_EQ(calendar->startOfDay(Date{at(row.nextDay).microseconds - 1}), at(row.day));
    EXPECT_EQ(calendar->startOfDay(at(row.nextDay)), at(row.nextDay));
    const CalendarDay day = calendar->components(instant).day;
    EXPECT_EQ(calendar->dateFrom(day.year, day.month, day.day), at(row.day));
  }
}

TEST(Calendar, theWeekBeginsOnTheChosenWeekday) {
  const Calendar sunday = *Calendar::forZone("Asia/Shanghai", 0);
  const Date saturday = at("2026-11-21T12:00:00+08:00");
  EXPECT_EQ(sunday.weekday(saturday), 6);
  const char* starts[] = {"2026-11-15", "2026-11-16", "2026-11-17", "2026-11-18",
                          "2026-11-19", "2026-11-20", "2026-11-21"};
  for (Weekday first = 0; first < 7; ++first) {
    const Calendar calendar = *Calendar::forZone("Asia/Shanghai", first);
    EXPECT_EQ(calendar.startOfWeek(saturday), at(std::string(starts[first]) + "T00:00:00+08:00"));
  }
}

TEST(Calendar, monthsHaveTheirLength) {
  const Calendar calendar = *Calendar::forZone("America/New_York", 0);
  EXPECT_EQ(calendar.daysInMonth(at("2026-02-10T12:00:00Z")), 28);
  EXPECT_EQ(calendar.daysInMonth(at("2024-02-10T12:00:00Z")), 29);
  EXPECT_EQ(calendar.daysInMonth(at("2000-02-10T12:00:00Z")), 29);
  EXPECT_EQ(calendar.daysInMonth(at("1900-02-10T12:00:00Z")), 28);
  EXPECT_EQ(calendar.daysInMonth(at("2026-12-01T04:59:59Z")), 30) << "still November there";
  EXPECT_EQ(calendar.daysInMonth(at("2026-12-01T05:00:00Z")), 31);
}

TEST(Calendar, addingDaysKeepsTheWallClockAndAddingHoursDoesNot) {
  struct Row {
    const char* zone;
    CalendarUnit unit;
    const char* from;
    int count;
    const char* to;
  };
  const Row table[] = {
      {"America/New_York", CalendarUnit::day, "2026-03-07T17:00:00.25Z", 1, "2026-03-08T16:00:00.25Z"},
      {"America/New_York", CalendarUnit::hour, "2026-03-07T17:00:00.25Z", 24, "2026-03-08T17:00:00.25Z"},
      {"America/New_York", CalendarUnit::day, "2026-03-07T07:30:00Z", 1,
       "2026-03-08T07:30:00Z"},  // 02:30 is skipped: 03:30
      {"America/New_York", CalendarUnit::day, "2026-03-09T06:30:00Z", -1, "2026-03-08T07:30:00Z"},
      {"America/New_York", CalendarUnit::day, "2026-10-31T05:30:00Z", 1,
       "2026-11-01T05:30:00Z"},  // 01:30 comes twice: the first
      {"America/New_York", CalendarUnit::day, "2026-11-01T06:30:00Z", 0,
       "2026-11-01T06:30:00Z"},  // the second stays itself
      {"America/Sao_Paulo", CalendarUnit::day, "2018-11-03T03:00:00Z", 1,
       "2018-11-04T03:00:00Z"},  // midnight is skipped: 01:00
      {"America/Sao_Paulo", CalendarUnit::day, "2018-11-03T03:00:00Z", 2, "2018-11-05T02:00:00Z"},
      {"Pacific/Apia", CalendarUnit::day, "2011-12-29T10:00:00Z", 1,
       "2011-12-30T10:00:00Z"},  // to a day that was skipped
      {"Pacific/Apia", CalendarUnit::day, "2011-12-29T10:00:00Z", 2, "2011-12-30T10:00:00Z"},
      {"Australia/Lord_Howe", CalendarUnit::day, "2026-04-04T13:00:00Z", 1, "2026-04-05T13:30:00Z"},
      {"Asia/Shanghai", CalendarUnit::day, "1969-12-31T23:59:59.999999Z", -1, "1969-12-30T23:59:59.999999Z"},
  };
  for (const Row& row : table) {
    const auto moved = Calendar::forZone(row.zone, 1)->adding(row.count, row.unit, at(row.from));
    ASSERT_TRUE(moved);
    EXPECT_EQ(formatIso8601(*moved), row.to) << row.zone << " " << row.from << " + " << row.count;
  }
}

TEST(Calendar, whatLeavesTheRangeIsAbsent) {
  const Calendar calendar = *Calendar::forZone("Asia/Shanghai", 1);
  for (const CalendarUnit unit : {CalendarUnit::hour, CalendarUnit::day}) {
    EXPECT_FALSE(calendar.adding(1, unit, Date::distantFuture()));
    EXPECT_FALSE(calendar.adding(-1, unit, Date::distantPast()));
    EXPECT_FALSE(calendar.adding(INT_MAX, CalendarUnit::day, at("2026-11-21T00:00:00Z")));
    EXPECT_FALSE(calendar.adding(INT_MIN, CalendarUnit::day, at("2026-11-21T00:00:00Z")));
    EXPECT_TRUE(calendar.adding(0, unit, Date::distantFuture()));
  }
  EXPECT_EQ(calendar.startOfDay(Date{INT64_MIN}), calendar.startOfDay(Date::distantPast()));
  EXPECT_EQ(calendar.startOfMonth(Date{INT64_MAX}), calendar.startOfMonth(Date::distantFuture()));
  EXPECT_EQ(calendar.wholeUnits(CalendarUnit::day, Date::distantPast(), Date::distantFuture()), 3'652'058);
}

TEST(Calendar, wholeUnitsFallBetweenTheStepsOfAdding) {
  std::mt19937 random(3);
  for (const char* zone : {"America/Sao_Paulo", "Pacific/Apia", "Australia/Lord_Howe", "America/Havana",
                           "America/St_Johns", "Africa/Casablanca"}) {
    const Calendar calendar = *Calendar::forZone(zone, 1);
    for (int round = 0; round < 300; ++round) {
      const Date start{at("2010-01-01T00:00:00Z").microseconds +
                       static_cast<std::int64_t>(random() % 315'000'000) * Date::microsecondsPerSecond};
      const Date end{start.microseconds +
                     (static_cast<std::int64_t>(random() % 8'000'000) - 4'000'000) * Date::microsecondsPerSecond / 2};
      for (const CalendarUnit unit : {CalendarUnit::hour, CalendarUnit::day}) {
        const int count = calendar.wholeUnits(unit, start, end);
        ASSERT_LE(*calendar.adding(count, unit, start), end)
            << zone << " " << formatIso8601(start) << " " << formatIso8601(end);
        ASSERT_GT(*calendar.adding(count + 1, unit, start), end)
            << zone << " " << formatIso8601(start) << " " << formatIso8601(end);
      }
    }
  }
}

TEST(Calendar, daysThatDoNotExistHaveNoDate) {
  const Calendar calendar = *Calendar::forZone("Pacific/Apia", 1);
  const int none[][3] = {{2026, 2, 29},      {2026, 2, 30},  {2026, 13, 1}, {2026, 0, 1},   {2026, 1, 0},
                         {2026, 4, 31},      {0, 1, 1},      {-1, 1, 1},    {10'000, 1, 1}, {INT_MAX, 1, 1},
                         {2026, INT_MAX, 1}, {2026, 1, 257}, {2011, 12, 30}};
  for (const auto& day : none)
    EXPECT_FALSE(calendar.dateFrom(day[0], day[1], day[2])) << day[0] << '-' << day[1] << '-' << day[2];
  EXPECT_TRUE(calendar.dateFrom(2011, 12, 31));
  EXPECT_TRUE(calendar.dateFrom(2024, 2, 29));
}

TEST(Calendar, theVariableNamesTheZoneInEachOfItsForms) {
  struct Row {
    const char* variable;
    const char* name;
    const char* startOfDay;
  };
  const Row table[] = {
      {"Asia/Shanghai", "Asia/Shanghai", "2026-07-09T16:00:00Z"},
      {":Asia/Shanghai", "Asia/Shanghai", "2026-07-09T16:00:00Z"},
      {"/usr/share/zoneinfo/Asia/Shanghai", "Asia/Shanghai", "2026-07-09T16:00:00Z"},
      {":/usr/share/zoneinfo/Asia/Shanghai", "Asia/Shanghai", "2026-07-09T16:00:00Z"},
      {"CST-8", "CST-8", "2026-07-09T16:00:00Z"},
      {"<+0330>-3:30", "<+0330>-3:30", "2026-07-09T20:30:00Z"},
      {"CET-1CEST,M3.5.0,M10.5.0/3", "CET-1CEST,M3.5.0,M10.5.0/3", "2026-07-09T22:00:00Z"},
      {"", "UTC", "2026-07-10T00:00:00Z"},
      {":", "UTC", "2026-07-10T00:00:00Z"},
      {"Mars/Olympus", "UTC", "2026-07-10T00:00:00Z"},
      {"../../../etc/localtime", "UTC", "2026-07-10T00:00:00Z"},
      {"/etc/passwd", "UTC", "2026-07-10T00:00:00Z"},
      {"/usr/share/zoneinfo", "UTC", "2026-07-10T00:00:00Z"},
      {"Asia", "UTC", "2026-07-10T00:00:00Z"},
      {"zone.tab", "UTC", "2026-07-10T00:00:00Z"},
  };
  for (const Row& row : table) {
    const ZoneVariable variable(row.variable);
    const Calendar calendar = Calendar::current(1);
    EXPECT_EQ(calendar.zoneName(), row.name) << row.variable;
    EXPECT_EQ(formatIso8601(calendar.startOfDay(at("2026-07-10T12:00:00Z"))), row.startOfDay) << row.variable;
  }
}

TEST(Calendar, withoutTheVariableTheMachinesZoneCounts) {
  const ZoneVariable variable(nullptr);
  const Calendar calendar = Calendar::current(0);
  const std::time_t now = 1'784'000'000;
  std::tm expected{};
  ASSERT_NE(::localtime_r(&now, &expected), nullptr);
  EXPECT_EQ(calendar.components(Date::fromWholeSeconds(now)).hour, expected.tm_hour);
  EXPECT_EQ(calendar.firstWeekday(), 0);
}

}  // namespace
}  // namespace quillmeter
