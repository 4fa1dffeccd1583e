#include "core/model/ByteCountFormatter.h"

#include <gtest/gtest.h>

#include <limits>

namespace quillmeter {
namespace {

struct Case {
  std::int64_t bytes;
  const char* text;
};

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();

TEST(ByteCountFormatter, filesCountInPowersOfAThousandAndRoundingMovesToTheNextUnit) {
  const Case cases[] = {
      {0, "Zero KB"},
      {1, "1 byte"},
      {-1, "-1 byte"},
      {2, "2 bytes"},
      {999, "999 bytes"},
      {1'000, "1 KB"},
      {1'499, "1 KB"},
      {1'500, "2 KB"},  // ties to even
      {2'500, "2 KB"},
      {2'501, "3 KB"},
      {999'499, "999 KB"},
      {999'500, "1 MB"},
      {999'950, "1 MB"},
      {1'049'999, "1 MB"},
      {1'050'001, "1.1 MB"},
      {999'949'999, "999.9 MB"},
      {999'950'001, "1 GB"},
      {494'384'795'648, "494.38 GB"},
      {500'000'000'000, "500 GB"},
      {500'100'000'000, "500.1 GB"},
      {500'010'000'000, "500.01 GB"},
      {999'995'000'000, "1 TB"},
      {1'000'000'000'000, "1 TB"},
      {1'234'567'890'123'456, "1.23 PB"},
      {most, "9.22 EB"},
      {std::numeric_limits<std::int64_t>::min(), "-9.22 EB"},
  };
  const auto formatter = ByteCountFormatter::file();
  for (const auto& [bytes, text] : cases) EXPECT_EQ(formatter.string(bytes), text) << bytes;
}

TEST(ByteCountFormatter, transferRatesKnowKilobytesToGigabytesOnly) {
  const Case cases[] = {
      {0, "Zero KB"},
      {1, "0 KB"},
      {512, "0 KB"},
      {513, "1 KB"},
      {12 * 1024, "12 KB"},
      {1'000 * 1024, "1000 KB"},
      {1'023 * 1024 + 511, "1023 KB"},
      {1'023 * 1024 + 512, "1 MB"},
      {1024 * 1024 * 14 / 10, "1.4 MB"},
      {std::int64_t{1} << 30, "1 GB"},
      {std::int64_t{3} << 40, "3072 GB"},
      {most, "8589934592 GB"},
  };
  const auto formatter = ByteCountFormatter::transferRate();
  for (const auto& [bytes, text] : cases) EXPECT_EQ(formatter.string(bytes), text) << bytes;
}

TEST(ByteCountFormatter, memoryCountsInPowersOf1024FromBytesUp) {
  const Case cases[] = {{1, "1 byte"}, {1'023, "1023 bytes"}, {1'024, "1 KB"}, {79'377'203, "75.7 MB"}, {most, "8 EB"}};
  const auto formatter = ByteCountFormatter::memory();
  for (const auto& [bytes, text] : cases) EXPECT_EQ(formatter.string(bytes), text) << bytes;
}

TEST(ByteCountFormatter, separatorsAreTheLocales) {
  LocaleConventions locale;
  locale.decimalSeparator = ",";
  locale.groupingSeparator = ".";
  EXPECT_EQ(ByteCountFormatter::file(locale).string(494'384'795'648), "494,38 GB");
  EXPECT_EQ(ByteCountFormatter::transferRate(locale).string(most), "8.589.934.592 GB");
  EXPECT_EQ(ByteCountFormatter::transferRate(locale).string(1'000 * 1024), "1.000 KB");
}

}  // namespace
}  // namespace quillmeter
