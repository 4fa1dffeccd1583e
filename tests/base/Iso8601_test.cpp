#include "base/Iso8601.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <random>

namespace quillmeter {
namespace {

TEST(Iso8601, readsWhatTheAgentsWrite) {
  const std::pair<const char*, std::int64_t> table[] = {
      {"1970-01-01T00:00:00Z", 0},
      {"2024-05-01T10:00:00Z", 1'714'557'600'000'000},
      {"2024-05-01T10:00:00.123Z", 1'714'557'600'123'000},
      {"2024-05-01T10:00:00.1Z", 1'714'557'600'100'000},
      {"2024-05-01T10:00:00.123456Z", 1'714'557'600'123'456},
      {"2024-05-01T10:00:00.123456999Z", 1'714'557'600'123'456},
      {"2024-05-01T10:00:00.00000000000000000000000000000000000001Z", 1'714'557'600'000'000},
      {"2024-05-01T18:00:00+08:00", 1'714'557'600'000'000},
      {"2024-05-01T18:00:00.5+0800", 1'714'557'600'500'000},
      {"2024-05-01T06:30:00-03:30", 1'714'557'600'000'000},
      {"2024-05-01T10:00:00-00:00", 1'714'557'600'000'000},
      {"1969-12-31T23:59:59.5Z", -500'000},
      {"2024-02-29T23:59:59+23:59", 1'709'164'859'000'000},
      {"2000-02-29T00:00:00Z", 951'782'400'000'000},
      {"0001-01-01T00:00:00Z", Date::distantPast().microseconds},
      {"9999-12-31T23:59:59.999999Z", Date::distantFuture().microseconds},
  };
  for (const auto& [text, microseconds] : table) {
    const auto date = parseIso8601(text);
    ASSERT_TRUE(date) << text;
    EXPECT_EQ(date->microseconds, microseconds) << text;
  }
}

TEST(Iso8601, refusesEverythingElse) {
  const char* table[] = {"",
                         "2024",
                         "2024-05-01",
                         "2024-05-01T10:00:00",
                         "2024-05-01 10:00:00Z",
                         "2024-05-01t10:00:00Z",
                         "2024-05-01T10:00:00z",
                         " 2024-05-01T10:00:00Z",
                         "2024-05-01T10:00:00Z ",
                         "2024-05-01T10:00:00Z\n",
                         "20240501T100000Z",
                         "2024-05-01T10:00Z",
                         "2024-05-01T10:00:00.Z",
                         "2024-05-01T10:00:00,5Z",
                         "2024-05-01T10:00:00.5",
                         "2024-05-01T10:00:00+",
                         "2024-05-01T10:00:00+08",
                         "2024-05-01T10:00:00+8:00",
                         "2024-05-01T10:00:00+08:0",
                         "2024-05-01T10:00:00+24:00",
                         "2024-05-01T10:00:00+08:60",
                         "2024-05-01T10:00:00Z+08:00",
                         "2024-05-01T10:00:00UTC",
                         "2024-05-01T24:00:00Z",
                         "2024-05-01T10:60:00Z",
                         "2024-06-30T23:59:60Z",
                         "2023-02-29T00:00:00Z",
                         "1900-02-29T00:00:00Z",
                         "2024-02-30T00:00:00Z",
                         "2024-04-31T00:00:00Z",
                         "2024-00-01T00:00:00Z",
                         "2024-13-01T00:00:00Z",
                         "2024-01-00T00:00:00Z",
                         "2024-01-32T00:00:00Z",
                         "0000-01-01T00:00:00Z",
                         "0001-01-01T00:00:00+08:00",
                         "9999-12-31T23:59:59-00:01",
                         "-001-01-01T00:00:00Z",
                         "+2024-05-01T10:00:00Z",
                         "12024-05-01T10:00:00Z",
                         "2024-5-01T10:00:00Z",
                         "2024-+5-01T10:00:00Z",
                         "2024-05-01T1 :00:00Z",
                         "２０２４-05-01T10:00:00Z",
                         "2024-05-01T10:00:00Z\x01"};
  for (const char* text : table) EXPECT_FALSE(parseIso8601(text)) << text;
  EXPECT_FALSE(parseIso8601(std::string_view("2024-05-01T10:00:00Z\0", 21)));
  // Every beginning of a date is none.
  const std::string_view whole = "2024-05-01T10:00:00.123+08:00";
  for (std::size_t length = 0; length < whole.size(); ++length)
    EXPECT_FALSE(parseIso8601(whole.substr(0, length))) << length;
}

TEST(Iso8601, writesFractionsOnlyWhereThereAreSome) {
  const std::pair<std::int64_t, const char*> table[] = {
      {0, "1970-01-01T00:00:00Z"},
      {1'714'557'600'100'000, "2024-05-01T10:00:00.1Z"},
      {1'714'557'600'000'001, "2024-05-01T10:00:00.000001Z"},
      {-1, "1969-12-31T23:59:59.999999Z"},
      {INT64_MIN, "0001-01-01T00:00:00Z"},
      {INT64_MAX, "9999-12-31T23:59:59.999999Z"},
  };
  for (const auto& [microseconds, text] : table) EXPECT_EQ(formatIso8601(Date{microseconds}), text);
}

TEST(Iso8601, whatWasWrittenIsReadAsTheSameInstant) {
  std::mt19937_64 random(1);
  std::uniform_int_distribution<std::int64_t> instants(Date::distantPast().microseconds,
                                                       Date::distantFuture().microseconds);
  for (int round = 0; round < 20'000; ++round) {
    const Date date{instants(random)};
    ASSERT_EQ(parseIso8601(formatIso8601(date)), date) << date.microseconds;
  }
}

TEST(Date, secondsAreRoundedAndHeldInRange) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const std::pair<double, std::int64_t> table[] = {
      {1'700'000'000.5, 1'700'000'000'500'000},
      {-0.0000004, 0},
      {-1.5, -1'500'000},
      {0.0000005, 1},
      {1e300, Date::distantFuture().microseconds},
      {-1e300, Date::distantPast().microseconds},
      {infinity, Date::distantFuture().microseconds},
      {-infinity, Date::distantPast().microseconds},
      {std::nan(""), Date::distantPast().microseconds},
      {253'402'300'800.0, Date::distantFuture().microseconds},
      {-62'135'596'801.0, Date::distantPast().microseconds},
  };
  for (const auto& [seconds, microseconds] : table)
    EXPECT_EQ(Date::fromSeconds(seconds).microseconds, microseconds) << seconds;
  EXPECT_EQ(Date::fromWholeSeconds(INT64_MAX), Date::distantFuture());
  EXPECT_EQ(Date::fromWholeSeconds(INT64_MIN), Date::distantPast());
  EXPECT_EQ(Date::fromWholeSeconds(253'402'300'799).microseconds, Date::distantFuture().microseconds - 999'999);
}

}  // namespace
}  // namespace quillmeter
