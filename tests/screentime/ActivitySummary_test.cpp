#include "screentime/model/ActivitySummary.h"

#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "screentime/model/ActivityTimelineGroup.h"

namespace quillmeter {
namespace {

const ActivityApp editor{"b.editor", "Editor"};
const ActivityApp browser{"a.browser", "Browser"};

Calendar calendarOf(const std::string& zone) {
  return Calendar::forZone(zone, 1).value();
}

Date moment(const Calendar& calendar, int day, int hour, int minute, int month = 6) {
  return Date{calendar.dateFrom(2026, month, day)->microseconds +
              (hour * 60 + minute) * 60 * Date::microsecondsPerSecond};
}

DateInterval dayOf(const Calendar& calendar, int day, int month = 6, int days = 1) {
  const Date start = *calendar.dateFrom(2026, month, day);
  return {start, *calendar.adding(days, CalendarUnit::day, start)};
}

double sumOf(const std::vector<ActivitySummary::Bucket>& buckets) {
  return std::accumulate(buckets.begin(), buckets.end(), 0.0,
                         [](double sum, const auto& bucket) { return sum + bucket.seconds; });
}

TEST(ActivitySummary, aSpanAcrossAnHourFillsBothHours) {
  const Calendar calendar = calendarOf("Asia/Shanghai");
  const std::vector<ActivitySpan> spans{{moment(calendar, 15, 9, 50), moment(calendar, 15, 10, 20), editor}};
  const auto summary = ActivitySummary::make(spans, dayOf(calendar, 15), true, calendar);
  ASSERT_EQ(summary.buckets.size(), 24U);
  EXPECT_EQ(summary.buckets[9].seconds, 600);
  EXPECT_EQ(summary.buckets[10].seconds, 1'200);
  EXPECT_EQ(summary.total, 1'800);
  EXPECT_EQ(sumOf(summary.buckets), 1'800);

  const auto groups = ActivityTimelineGroup::make(spans, dayOf(calendar, 15), true, calendar);
  ASSERT_EQ(groups.size(), 2U);
  EXPECT_EQ(groups[0], (ActivityTimelineGroup{moment(calendar, 15, 9, 0),
                                              moment(calendar, 15, 10, 0),
                                              {{moment(calendar, 15, 9, 50), moment(calendar, 15, 10, 0), editor}},
                                              {{editor, 600}},
                                              600}));
  EXPECT_EQ(groups[1].start, moment(calendar, 15, 10, 0));
  EXPECT_EQ(groups[1].apps, (std::vector<ActivitySummary::AppTotal>{{editor, 1'200}}));
}

TEST(ActivitySummary, spansAreCutToTheInterval) {
  const Calendar calendar = Calendar::utc();
  const std::vector<ActivitySpan> spans{
      {moment(calendar, 14, 22, 0), moment(calendar, 15, 0, 0), editor},  // ends where the day begins
      {moment(calendar, 14, 23, 0), moment(calendar, 15, 1, 0), editor},
      {moment(calendar, 15, 23, 30), moment(calendar, 16, 2, 0), browser},
      {moment(calendar, 16, 0, 0), moment(calendar, 16, 1, 0), browser},  // begins where the day ends
  };
  const auto summary = ActivitySummary::make(spans, dayOf(calendar, 15), true, calendar);
  EXPECT_EQ(summary.spans,
            (std::vector<ActivitySpan>{{moment(calendar, 15, 0, 0), moment(calendar, 15, 1, 0), editor},
                                       {moment(calendar, 15, 23, 30), moment(calendar, 16, 0, 0), browser}}));
  EXPECT_EQ(summary.apps, (std::vector<ActivitySummary::AppTotal>{{editor, 3'600}, {browser, 1'800}}));
  EXPECT_EQ(*summary.longestSpan(), summary.spans[0]);
}

TEST(ActivitySummary, equalTotalsAreListedByIdAndTheFirstNameOfAnIdStays) {
  const Calendar calendar = Calendar::utc();
  const Date start = moment(calendar, 15, 8, 0);
  const auto minute = [&](int count) { return Date{start.microseconds + count * 60 * Date::microsecondsPerSecond}; };
  const std::vector<ActivitySpan> spans{{minute(0), minute(1), editor},
                                        {minute(1), minute(2), browser},
                                        {minute(2), minute(3), {editor.id, "编辑器"}},
                                        {minute(3), minute(4), browser},
                                        {minute(4), minute(5), {"Z", "Z"}},
                                        {minute(5), minute(6), {"Z", "Z"}}};
  const auto summary = ActivitySummary::make(spans, dayOf(calendar, 15), true, calendar);
  EXPECT_EQ(summary.apps, (std::vector<ActivitySummary::AppTotal>{{{"Z", "Z"}, 120}, {browser, 120}, {editor, 120}}));
}

TEST(ActivitySummary, noSpansLeaveEmptyBars) {
  const Calendar calendar = Calendar::utc();
  const auto summary = ActivitySummary::make({}, dayOf(calendar, 15, 6, 7), false, calendar);
  EXPECT_EQ(summary.buckets.size(), 7U);
  EXPECT_EQ(sumOf(summary.buckets), 0);
  EXPECT_TRUE(summary.apps.empty());
  EXPECT_EQ(summary.total, 0);
  EXPECT_EQ(summary.longestSpan(), nullptr);
  EXPECT_TRUE(ActivityTimelineGroup::make(summary).empty());
  const Date start = moment(calendar, 15, 0, 0);
  EXPECT_TRUE(ActivitySummary::make({}, {start, start}, true, calendar).buckets.empty());
}

TEST(ActivitySummary, daysOfTwentyThreeAndTwentyFiveHoursHaveAsManyBars) {
  const Calendar newYork = calendarOf("America/New_York");
  EXPECT_EQ(ActivitySummary::make({}, dayOf(newYork, 8, 3), true, newYork).buckets.size(), 23U);
  EXPECT_EQ(ActivitySummary::make({}, dayOf(newYork, 1, 11), true, newYork).buckets.size(), 25U);
  EXPECT_EQ(ActivitySummary::make({}, dayOf(newYork, 2, 11), true, newYork).buckets.size(), 24U);
}

TEST(ActivitySummary, dayBarsFollowTheCalendarAlsoWhereMidnightIsSkipped) {
  const Calendar newYork = calendarOf("America/New_York");
  const auto week = ActivitySummary::make({}, dayOf(newYork, 2, 3, 7), false, newYork);
  ASSERT_EQ(week.buckets.size(), 7U);
  EXPECT_EQ(week.buckets[6].end.secondsSince(week.buckets[6].start), 23 * 3600);

  const Calendar beirut = calendarOf("Asia/Beirut");  // summer time begins at midnight of 2026-03-29
  const auto skipped = ActivitySummary::make({}, dayOf(beirut, 28, 3, 4), false, beirut);
  ASSERT_EQ(skipped.buckets.size(), 4U);
  EXPECT_EQ(skipped.buckets[1].start, beirut.startOfDay(skipped.buckets[1].start));
  EXPECT_EQ(skipped.buckets[2].start, *beirut.dateFrom(2026, 3, 30));
  EXPECT_EQ(skipped.buckets[1].end.secondsSince(skipped.buckets[1].start), 23 * 3600);
}

TEST(ActivitySummary, theLastBarEndsWithAnIntervalThatIsNoWholeHour) {
  const Calendar calendar = calendarOf("Asia/Kolkata");
  const DateInterval interval{moment(calendar, 15, 9, 15), moment(calendar, 15, 11, 0)};
  const auto summary = ActivitySummary::make({}, interval, true, calendar);
  ASSERT_EQ(summary.buckets.size(), 2U);
  EXPECT_EQ(summary.buckets[0].end, moment(calendar, 15, 10, 15));
  EXPECT_EQ(summary.buckets[1].end, interval.end);
}

TEST(ActivitySummary, barsAppsAndTimelineAlwaysAddUpToTheTotal) {
  std::mt19937_64 random(11);
  const Calendar calendar = calendarOf("Europe/Berlin");
  const DateInterval interval = dayOf(calendar, 24, 10, 3);  // holds the change to winter time
  for (int round = 0; round < 50; ++round) {
    std::vector<ActivitySpan> spans;
    Date time{interval.start.microseconds - 3'600 * Date::microsecondsPerSecond};
    while (time < interval.end) {
      const Date end{time.microseconds + 1 + static_cast<std::int64_t>(random() % 9'000'000'000)};
      if (random() % 3 != 0) spans.push_back({time, end, random() % 2 == 0 ? editor : browser});
      time = end;
    }
    const auto summary = ActivitySummary::make(spans, interval, round % 2 == 0, calendar);
    double apps = 0;
    for (const auto& total : summary.apps) apps += total.seconds;
    double groups = 0;
    for (const auto& group : ActivityTimelineGroup::make(summary)) groups += group.total;
    EXPECT_NEAR(sumOf(summary.buckets), summary.total, 1e-6);
    EXPECT_NEAR(apps, summary.total, 1e-6);
    EXPECT_NEAR(groups, summary.total, 1e-6);
  }
}

}  // namespace
}  // namespace quillmeter
