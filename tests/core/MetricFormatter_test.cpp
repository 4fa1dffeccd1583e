#include "core/model/MetricFormatter.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>

#include "base/L10n.h"
#include "core/model/BatteryTexts.h"
#include "core/model/NumberText.h"
#include "core/model/ThermalTexts.h"

namespace quillmeter {
namespace {

TEST(MetricFormatter, tokensHaveThreeRangesAndAreNeverPromotedByRounding) {
  const struct {
    std::int64_t count;
    const char* text;
  } cases[] = {
      {std::numeric_limits<std::int64_t>::min(), "-9223372036854775808"},
      {-1'500, "-1500"},
      {-5, "-5"},
      {0, "0"},
      {999, "999"},
      {1'000, "1.0K"},
      {1'050, "1.1K"},  // 1.05 lies above its decimal text
      {1'250, "1.2K"},  // an exact tie goes to even
      {1'350, "1.4K"},
      {12'345, "12.3K"},
      {999'949, "999.9K"},
      {999'950, "1000.0K"},
      {999'999, "1000.0K"},
      {1'000'000, "1.0M"},
      {1'500'000, "1.5M"},
      {1'234'567'890, "1234.6M"},
      {std::int64_t{1} << 62, "4611686018427.4M"},
  };
  for (const auto& [count, text] : cases) EXPECT_EQ(MetricFormatter::tokens(count), text) << count;
}

TEST(MetricFormatter, percentRoundsHalvesAwayFromZeroAndStaysWithinTheScale) {
  const struct {
    double fraction;
    const char* text;
  } cases[] = {{-0.2, "0%"},  {0, "0%"},      {-0.0, "0%"},    {0.004, "0%"}, {0.005, "1%"}, {0.125, "13%"},
               {0.37, "37%"}, {0.994, "99%"}, {0.995, "100%"}, {1, "100%"},   {1.7, "100%"}};
  for (const auto& [fraction, text] : cases) EXPECT_EQ(MetricFormatter::percent(fraction), text) << fraction;
}

TEST(MetricFormatterDeathTest, percentOfWhatIsNotFiniteIsFatal) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(MetricFormatter::percent(std::numeric_limits<double>::quiet_NaN()), "not finite");
  EXPECT_DEATH(MetricFormatter::percent(std::numeric_limits<double>::infinity()), "not finite");
  EXPECT_DEATH(MetricFormatter::percent(-std::numeric_limits<double>::infinity()), "not finite");
}

TEST(MetricFormatter, relativeTimesAreWholeSecondsRoundedAndThenWholeUnitsCutOff) {
  const Date now = Date::fromWholeSeconds(1'750'000'000);
  const struct {
    double offset;  // seconds from now
    const char* text;
  } cases[] = {
      {0, "刚刚"},           {-4, "刚刚"},          {4.49, "刚刚"},      {-4.5, "5 秒前"},       {-5, "5 秒前"},
      {4.5, "5 秒后"},       {10, "10 秒后"},       {-59.4, "59 秒前"},  {-59.5, "1 分钟前"},    {-90, "1 分钟前"},
      {-3'599, "59 分钟前"}, {-3'600, "1 小时前"},  {7'200, "2 小时后"}, {-86'399, "23 小时前"}, {-86'400, "1 天前"},
      {86'399.5, "1 天后"},  {-864'000, "10 天前"},
  };
  for (const auto& [offset, text] : cases) {
    const Date date{now.microseconds + static_cast<std::int64_t>(offset * 1e6)};
    EXPECT_EQ(MetricFormatter::relative(date, now), text) << offset;
  }
  EXPECT_EQ(MetricFormatter::relative(Date::distantPast(), now), "—");
  EXPECT_EQ(MetricFormatter::relative(Date::distantPast(), Date::distantPast()), "—");
  EXPECT_EQ(MetricFormatter::relative(Date::distantFuture(), Date::fromWholeSeconds(0)).substr(0, 7), "2932897");
}

TEST(MetricFormatter, relativeTakesUnitAndTemplateFromTheCatalogue) {
  L10n::install([](std::string_view id) -> std::string {
    if (id == "分钟") return "min";
    if (id == "%@前") return "%@ ago";
    if (id == "%@后") return "in %@";
    return {};
  });
  const Date now = Date::fromWholeSeconds(1'000'000);
  EXPECT_EQ(MetricFormatter::relative(Date::fromWholeSeconds(1'000'000 - 120), now), "2 min ago");
  EXPECT_EQ(MetricFormatter::relative(Date::fromWholeSeconds(1'000'000 + 120), now), "in 2 min");
  L10n::install({});
}

TEST(NumberText, defaultDecimalTextIsTheShortestThatReadsBackAndHasAFraction) {
  const struct {
    double value;
    const char* text;
  } cases[] = {{3.5, "3.5"},
               {4, "4.0"},
               {12.25, "12.25"},
               {0, "0.0"},
               {-0.0, "-0.0"},
               {0.1, "0.1"},
               {1.0 / 3, "0.3333333333333333"},
               {1e21, "1000000000000000000000.0"},
               {-8.04, "-8.04"},
               {std::numeric_limits<double>::infinity(), "inf"},
               {-std::numeric_limits<double>::infinity(), "-inf"},
               {std::numeric_limits<double>::quiet_NaN(), "nan"}};
  for (const auto& [value, text] : cases) EXPECT_EQ(defaultDecimalText(value), text);
  for (const double extreme : {std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min()}) {
    EXPECT_EQ(std::strtod(defaultDecimalText(extreme).c_str(), nullptr), extreme);
  }
}

TEST(NumberText, percentagesFollowTheLocaleAndAreLimitedAboveOnly) {
  const LocaleConventions posix;
  LocaleConventions german;
  german.decimalSeparator = ",";
  german.groupingSeparator = ".";
  const struct {
    double percent;
    const char* posixText;
    const char* germanText;
  } cases[] = {{12.5, "12.50 %", "12,50 %"},
               {0, "0.00 %", "0,00 %"},
               {99.999, "100.00 %", "100,00 %"},
               {250, "100.00 %", "100,00 %"},
               {-3, "-3.00 %", "-3,00 %"},
               {-123456, "-123456.00 %", "-123.456,00 %"},
               {-1234567, "-1234567.00 %", "-1.234.567,00 %"}};
  for (const auto& [percent, posixText, germanText] : cases) {
    EXPECT_EQ(percentageText(percent, posix), posixText);
    EXPECT_EQ(percentageText(percent, german), germanText);
  }
  EXPECT_EQ(percentageText(-std::numeric_limits<double>::infinity(), german), "-inf %");
}

TEST(BatteryTexts, theTimeNamesItsDirectionAndUnknownIsADash) {
  EXPECT_EQ(batteryTimeText(false, "02:05"), "剩余 02:05");
  EXPECT_EQ(batteryTimeText(true, "01:35"), "充满还需 01:35");
  EXPECT_EQ(batteryTimeText(true, "-"), "—");
  EXPECT_EQ(batteryTimeText(std::nullopt, "01:35"), "—");
}

TEST(BatteryTexts, theStatePrefersChargingThenTheAbsenceOfExternalPower) {
  EXPECT_EQ(batteryStateText(true, false, true), "充电中");
  EXPECT_EQ(batteryStateText(false, true, true), "已充满");
  EXPECT_EQ(batteryStateText(false, false, true), "已接通电源");
  EXPECT_EQ(batteryStateText(std::nullopt, std::nullopt, true), "已接通电源");
  EXPECT_EQ(batteryStateText(false, true, false), "使用电池");
  EXPECT_EQ(batteryStateText(std::nullopt, std::nullopt, std::nullopt), "使用电池");
}

TEST(ThermalTexts, levelsBeyondTheKnownOnesAreUnknown) {
  const char* texts[] = {"未知", "正常", "温热", "较热", "过热", "未知"};
  for (int level = -1; level <= 4; ++level) EXPECT_EQ(thermalStateText(level), texts[level + 1]);
}

}  // namespace
}  // namespace quillmeter
