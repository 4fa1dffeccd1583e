#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "metrics/DiskInfo.h"
#include "metrics/FanInfo.h"
#include "metrics/MemoryInfo.h"
#include "platform/fake/FakeMachine.h"

namespace quillmeter {
namespace {

constexpr std::uint64_t pagesPerGigabyte = 262'144;  // of 4 KiB

TEST(MemoryInfo, usedLeavesOutWhatIsFileBackedOrPurgeable) {
  FakeMemoryPages pages;
  FakeAllocatorRelief allocator;
  MemoryInfo memory(pages, allocator);
  pages.counts = {.physicalBytes = std::uint64_t{16} << 30,
                  .pageBytes = 4096,
                  .active = 6 * pagesPerGigabyte,
                  .inactive = 4 * pagesPerGigabyte,
                  .speculative = pagesPerGigabyte,
                  .wired = 2 * pagesPerGigabyte,
                  .compressor = pagesPerGigabyte / 4,
                  .purgeable = pagesPerGigabyte / 2,
                  .external = 3 * pagesPerGigabyte};
  memory.update();
  // 6 + 4 + 1 + 2 + 0.25 - 0.5 - 3 = 9.75 of 16
  EXPECT_EQ(memory.percentage(), 60.94);
  EXPECT_EQ(memory.pressure(), 14.06);
  EXPECT_EQ(memory.app(), "7.5 GB");
  EXPECT_EQ(memory.wired(), "2.0 GB");
  EXPECT_EQ(memory.compressed(), "0.25 GB");
}

TEST(MemoryInfo, theGaugeNeverShowsAFullHundred) {
  FakeMemoryPages pages;
  FakeAllocatorRelief allocator;
  MemoryInfo memory(pages, allocator);
  pages.counts = {.physicalBytes = 4096'000, .pageBytes = 4096, .active = 999, .wired = 1};
  memory.update();
  EXPECT_EQ(memory.percentage(), 99.9);
  EXPECT_EQ(memory.app(), "0.0 GB");
}

TEST(MemoryInfo, aSystemThatDoesNotAnswerGivesNoFinitePercentage) {
  FakeMemoryPages pages;
  FakeAllocatorRelief allocator;
  MemoryInfo memory(pages, allocator);
  memory.update();
  EXPECT_TRUE(std::isnan(memory.percentage()));
  EXPECT_EQ(memory.wired(), "0.0 GB");
}

TEST(DiskInfo, readsTheVolumeAndKeepsTheLastFiguresWhileItCannot) {
  FakeVolumeCapacity volume;
  DiskInfo disk(volume, {});
  disk.update();
  EXPECT_EQ(disk.total(), "—");
  EXPECT_EQ(disk.percentage(), 0);

  volume.volume = VolumeBytes{1'000'000'000'000, 100'000'000'000};
  disk.update();
  EXPECT_EQ(disk.percentage(), 90);
  EXPECT_EQ(disk.total(), "1.0 TB");
  EXPECT_EQ(disk.free(), "100.0 GB");
  EXPECT_EQ(disk.used(), "900.0 GB");

  volume.volume.reset();
  disk.update();
  EXPECT_EQ(disk.used(), "900.0 GB");

  volume.volume = VolumeBytes{1'000'000, 0};
  disk.update();
  EXPECT_EQ(disk.percentage(), 99.9);
  EXPECT_EQ(disk.free(), "0.0 KB");
}

TEST(DiskInfo, convertByteDataShowsAFractionInEveryLocale) {
  LocaleConventions comma;
  comma.decimalSeparator = ",";
  comma.groupingSeparator = ".";
  const struct {
    std::int64_t bytes;
    const char* text;
  } cases[] = {{500'000'000'000, "500.0 GB"},
               {494'384'795'648, "494.38 GB"},
               {1'000'000'000'000, "1.0 TB"},
               {0, "0.0 KB"},
               {1, "1.0 byte"},
               {999'950, "1.0 MB"}};
  for (const auto& [bytes, text] : cases) {
    EXPECT_EQ(DiskInfo::convertByteData(ByteCountFormatter::file(), bytes), text);
    EXPECT_EQ(DiskInfo::convertByteData(ByteCountFormatter::file(comma), bytes), text);
  }
}

TEST(FanInfo, reportsNothing) {
  FanInfo fans;
  fans.update();
  fans.update();
  EXPECT_EQ(fans.rpm(), std::nullopt);
  EXPECT_EQ(fans.temperature(), std::nullopt);
}

}  // namespace
}  // namespace quillmeter
