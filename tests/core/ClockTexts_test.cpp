#include "core/model/ClockTexts.h"

#include <gtest/gtest.h>

namespace quillmeter {
namespace {

TEST(ClockTexts, whatIsLeftChangesOnlyWithTheMinuteOfTheClock) {
  constexpr std::int64_t minute = 60;
  constexpr std::int64_t day = 24 * 60 * minute;
  const Date end = Date::fromWholeSeconds(10 * day);
  const auto left = [&](std::int64_t seconds) { return timeLeftText(end, Date::fromWholeSeconds(10 * day - seconds)); };
  EXPECT_EQ(left(125 * minute), "02:05");
  EXPECT_EQ(left(124 * minute + 1), "02:05");
  EXPECT_EQ(left(1), "00:01");
  EXPECT_EQ(left(day - 1), "1 天 00:00");
  EXPECT_EQ(left(day - minute), "23:59");
  EXPECT_EQ(left(3 * day + 250 * minute), "3 天 04:10");
  EXPECT_EQ(left(0), std::nullopt);
  const Date withinAMinute = Date::fromWholeSeconds(30);
  EXPECT_EQ(timeLeftText(withinAMinute, Date::fromWholeSeconds(10)), "00:01") << "not over, so not 00:00";
}

}  // namespace
}  // namespace quillmeter
