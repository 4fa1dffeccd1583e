#include "base/TimeZoneRules.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "base/Iso8601.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

std::int64_t secondsAt(std::string_view text) {
  return parseIso8601(text).value().microseconds / Date::microsecondsPerSecond;
}

TEST(PosixZone, switchesAtTheLastSecondBeforeAndTheFirstAfter) {
  struct Row {
    const char* zone;
    const char* instant;  // of the switch
    int before;           // seconds east of Greenwich
    int after;
  };
  const Row table[] = {
      {"EST5EDT,M3.2.0,M11.1.0", "2026-03-08T07:00:00Z", -18'000, -14'400},
      {"EST5EDT,M3.2.0,M11.1.0", "2026-11-01T06:00:00Z", -14'400, -18'000},
      {"EST5EDT", "2060-03-14T07:00:00Z", -18'000, -14'400},  // the rules of the United States, when none are given
      {"AEST-10AEDT,M10.1.0,M4.1.0/3", "2026-04-04T16:00:00Z", 39'600, 36'000},  // summer over the turn of the year
      {"AEST-10AEDT,M10.1.0,M4.1.0/3", "2026-10-03T16:00:00Z", 36'000, 39'600},
      {"<-02>2<-01>,M3.5.0/-1,M10.5.0/0", "2026-03-29T01:00:00Z", -7'200, -3'600},  // a time on the day before
      {"IST-1GMT0,M10.5.0,M3.5.0/1", "2026-10-25T01:00:00Z", 3'600, 0},  // the "daylight" time is the earlier one
      {"IST-1GMT0,M10.5.0,M3.5.0/1", "2026-03-29T01:00:00Z", 0, 3'600},
      {"<+1030>-10:30<+11>-11,J100,J60/25", "2024-03-01T14:00:00Z", 39'600,
       37'800},  // day 60 without leap days is March 1, 25:00 the day after
      {"AAA0BBB,59/0,J365/24", "2024-02-29T00:00:00Z", 0, 3'600},  // day 59 from 0 counts the leap day
  };
  for (const Row& row : table) {
    const auto zone = PosixZone::parse(row.zone);
    ASSERT_TRUE(zone) << row.zone;
    const TimeZoneRules rules(*zone);
    const std::int64_t instant = secondsAt(row.instant);
    EXPECT_EQ(rules.at(instant - 1).offset, row.before) << row.zone << " before " << row.instant;
    EXPECT_EQ(rules.at(instant - 1).end, instant) << row.zone << " " << row.instant;
    EXPECT_EQ(rules.at(instant).offset, row.after) << row.zone << " after " << row.instant;
  }
}

TEST(PosixZone, fixedOffsetsNeverSwitch) {
  const std::pair<const char*, int> table[] = {{"CST-8", 28'800},     {"<+0330>-3:30", 12'600},
                                               {"UTC0", 0},           {"LMT-8:05:43", 29'143},
                                               {"<-12>+12", -43'200}, {"ABC24:59:59", -89'999}};
  for (const auto& [text, offset] : table) {
    const auto zone = PosixZone::parse(text);
    ASSERT_TRUE(zone) << text;
    EXPECT_EQ(zone->standardOffset, offset) << text;
    EXPECT_FALSE(zone->hasDaylight) << text;
  }
}

TEST(PosixZone, refusesWhatIsNoZone) {
  for (const char* text : {"",
                           "A",
                           "AB8",
                           "CST",
                           "8",
                           "CST-",
                           "CST-25",
                           "CST-8:60",
                           "CST-8:00:60",
                           "CST-8x",
                           "<+03-3",
                           "<>-3",
                           "<+0 3>-3",
                           "CST-8CDT,",
                           "CST-8CDT,M3.2.0",
                           "CST-8CDT,M13.2.0,M11.1.0",
                           "CST-8CDT,M3.6.0,M11.1.0",
                           "CST-8CDT,M3.2.7,M11.1.0",
                           "CST-8CDT,M3.2,M11.1.0",
                           "CST-8CDT,J0,J365",
                           "CST-8CDT,366,1",
                           "CST-8CDT,M3.2.0/168,M11.1.0",
                           "CST-8CDT,M3.2.0,M11.1.0,",
                           "CST-99999999999999999999"}) {
    EXPECT_FALSE(PosixZone::parse(text)) << text;
  }
}

std::string bigEndian(std::int64_t value, int bytes) {
  std::string text;
  for (int shift = (bytes - 1) * 8; shift >= 0; shift -= 8) text += static_cast<char>(value >> shift & 0xff);
  return text;
}

std::string header(int transitions, int types) {
  return "TZif2" + std::string(15, '\0') + std::string(12, '\0') + bigEndian(transitions, 4) + bigEndian(types, 4) +
         bigEndian(4, 4);
}

// Local mean time until 1901, +01:00 until 2000, then European summer time.
std::string zoneFile(std::string_view footer) {
  const std::string types = bigEndian(3'208, 4) + bigEndian(0, 2) + bigEndian(3'600, 4) + bigEndian(0, 2) +
                            bigEndian(7'200, 4) + bigEndian(256, 2);
  return header(0, 1) + bigEndian(0, 6) + "UTC" + '\0' + header(2, 3) + bigEndian(-2'177'452'800, 8) +
         bigEndian(946'684'800, 8) + "\1\2" + types + "CET" + '\0' + std::string(footer);
}

TEST(TimeZoneRules, readsTransitionsAndTheRuleBehindTheLast) {
  const auto rules = TimeZoneRules::fromBytes(zoneFile("\nCET-1CEST,M3.5.0,M10.5.0/3\n"));
  ASSERT_TRUE(rules);
  EXPECT_EQ(rules->at(-2'177'452'801).offset, 3'208);
  EXPECT_EQ(rules->at(-2'177'452'801).end, -2'177'452'800);
  EXPECT_EQ(rules->at(-2'177'452'800).offset, 3'600);
  EXPECT_EQ(rules->at(946'684'799).end, 946'684'800);
  EXPECT_EQ(rules->at(secondsAt("2100-07-01T00:00:00Z")).offset, 7'200);
  EXPECT_EQ(rules->at(secondsAt("2100-12-01T00:00:00Z")).offset, 3'600);
  for (const char* footer : {"", "\n\n", "\nnonsense\n", "\n"}) {
    const auto plain = TimeZoneRules::fromBytes(zoneFile(footer));
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->at(secondsAt("2100-12-01T00:00:00Z")).offset, 7'200) << "the last offset stays";
  }
}

TEST(TimeZoneRules, survivesEveryDamage) {
  const std::string good = zoneFile("\nCET-1CEST,M3.5.0,M10.5.0/3\n");
  for (std::size_t length = 0; length < good.size() - 29; ++length) {
    EXPECT_FALSE(TimeZoneRules::fromBytes(std::string_view(good).substr(0, length))) << length;
  }
  std::mt19937 random(11);
  for (int round = 0; round < 5'000; ++round) {
    std::string damaged = good;
    for (int i = 0; i < 3; ++i) damaged[random() % damaged.size()] = static_cast<char>(random());
    if (const auto rules = TimeZoneRules::fromBytes(damaged)) {
      for (const std::int64_t t : {std::int64_t{-62'135'596'800}, std::int64_t{0}, std::int64_t{253'402'300'799}}) {
        EXPECT_LE(std::abs(rules->at(t).offset), TimeZoneRules::maximumOffset);
        EXPECT_GT(rules->at(t).end, t);
      }
    }
  }
}

TEST(TimeZoneRules, readsOnlyFilesOfReasonableSize) {
  const test::TemporaryDirectory folder;
  EXPECT_TRUE(TimeZoneRules::fromFile(folder.write("good", zoneFile(""))));
  EXPECT_FALSE(TimeZoneRules::fromFile(folder.write("big", zoneFile("") + std::string(1'048'576, 'x'))));
  EXPECT_FALSE(TimeZoneRules::fromFile(folder.path()));
  EXPECT_FALSE(TimeZoneRules::fromFile(folder.path() / "missing"));
  EXPECT_FALSE(TimeZoneRules::fromFile("/dev/zero"));
}

}  // namespace
}  // namespace quillmeter
