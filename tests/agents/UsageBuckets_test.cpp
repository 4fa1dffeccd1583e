#include "agents/UsageBuckets.h"

#include <gtest/gtest.h>

#include "AgentLogs.h"
#include "agents/UsageSums.h"

namespace quillmeter {
namespace {

using test::date;

Calendar zone(const std::string& name, Weekday firstWeekday = 1) {
  return Calendar::forZone(name, firstWeekday).value();
}

TEST(UsageBuckets, anEventFallsIntoItsHourAndNothingOutsideTheSeries) {
  const Date start = date("2026-11-21T00:00:00Z");
  const auto at = [](std::string_view when, std::int64_t total) {
    return AgentUsageEvent{date(when), {total, 0, 0, 0, 0}};
  };
  const auto buckets = makeBuckets(
      {at("2026-11-20T23:59:59.999Z", 1), at("2026-11-21T00:00:00Z", 2), at("2026-11-21T00:59:59.999999Z", 4),
       at("2026-11-21T01:00:00Z", 8), at("2026-11-21T23:59:59Z", 16), at("2026-11-22T00:00:00Z", 32)},
      start, 24, CalendarUnit::hour, Calendar::utc());
  ASSERT_EQ(buckets.size(), 24u);
  EXPECT_EQ(buckets[0].metrics.totalTokens, 6);
  EXPECT_EQ(buckets[1].metrics.totalTokens, 8);
  EXPECT_EQ(buckets[1].start, date("2026-11-21T01:00:00Z"));
  EXPECT_EQ(buckets[23].metrics.totalTokens, 16);
}

// The borders stand for the calendar's own count of whole units, in days of 23, 24 and 25 hours and where midnight is
// missing.
TEST(UsageBuckets, placeAsTheCalendarCounts) {
  for (const char* name :
       {"UTC", "Europe/Berlin", "Asia/Shanghai", "Australia/Lord_Howe", "America/Sao_Paulo", "Asia/Kathmandu"}) {
    const Calendar calendar = zone(name);
    for (const char* day : {"2026-03-29T12:00:00Z", "2026-10-25T12:00:00Z", "2018-11-04T12:00:00Z",
                            "2026-04-05T12:00:00Z", "2024-02-29T12:00:00Z"}) {
      for (const CalendarUnit unit : {CalendarUnit::hour, CalendarUnit::day}) {
        const Date start = calendar.startOfDay(date(day));
        const int count = unit == CalendarUnit::hour ? 24 : 31;
        const UsageBuckets series(start, count, unit, calendar);
        for (std::int64_t minutes = -120; minutes < 32 * 24 * 60; minutes += 29) {
          const Date when{start.microseconds + minutes * 60'000'000};
          const int index = calendar.wholeUnits(unit, start, when);
          const bool inside = when >= start && index < count;
          ASSERT_EQ(series.indexOf(when), inside ? std::optional<std::size_t>(index) : std::nullopt)
              << name << ' ' << day << ' ' << minutes;
        }
      }
    }
  }
}

TEST(UsageSums, theSeriesCoverDayWeekAndMonth) {
  const Calendar calendar = zone("Asia/Shanghai", 0);
  const UsageRangeStarts starts(calendar, date("2026-10-01T01:00:00Z"));  // a Thursday
  EXPECT_EQ(starts.today, date("2026-09-30T16:00:00Z"));
  EXPECT_EQ(starts.week, date("2026-09-26T16:00:00Z"));
  EXPECT_EQ(starts.month, date("2026-09-30T16:00:00Z"));
  UsageSums sums(calendar, starts);
  EXPECT_EQ(sums.hourly().size(), 24u);
  EXPECT_EQ(sums.weekly().size(), 7u);
  EXPECT_EQ(sums.monthly().size(), 31u);
  UsageRangeMetrics ranges;
  sums.add(date("2026-09-29T16:00:00Z"), {5, 0, 0, 0, 0}, ranges);  // in the week, before the month
  EXPECT_EQ(ranges.week.totalTokens, 5);
  EXPECT_EQ(ranges.month.totalTokens, 0);
  for (const AgentUsageBucket& bucket : sums.weekly()) EXPECT_EQ(bucket.metrics.totalTokens, 0);
}

}  // namespace
}  // namespace quillmeter
