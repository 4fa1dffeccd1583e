#include "platform/linux/ProcMeminfo.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

#include "platform/linux/MallocTrimRelief.h"
#include "platform/linux/StatvfsVolume.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

const std::filesystem::path machines = std::filesystem::path(QUILLMETER_TEST_DATA) / "machines";

std::uint64_t usedPages(const MemoryPageCounts& counts) {
  return counts.active + counts.inactive + counts.speculative + counts.wired + counts.compressor - counts.purgeable -
         counts.external;
}

MemoryPageCounts read(const char* machine, std::uint64_t pageBytes = 4096) {
  return ProcMeminfoPages(machines / machine, pageBytes).read();
}

TEST(ProcMeminfo, usedIsTheTotalLessWhatIsAvailableToThePage) {
  const std::uint64_t usedOfTheLaptop = (16'125'180 - 9'821'344) / 4;
  for (const char* machine : {"laptop", "desktop", "zram"}) {
    const auto counts = read(machine);
    EXPECT_EQ(counts.physicalBytes, std::uint64_t{16'125'180} * 1024) << machine;
    EXPECT_EQ(usedPages(counts), usedOfTheLaptop) << machine;
    EXPECT_EQ(usedPages(read(machine, 65'536)), usedOfTheLaptop / 16) << machine;
  }
}

TEST(ProcMeminfo, compressedPagesAreThoseOfZswapAndOfEveryZramDevice) {
  EXPECT_EQ(read("desktop").compressor, 0u);
  EXPECT_EQ(read("laptop").compressor, 65'536u / 4);
  EXPECT_EQ(read("zram").compressor, (491'782'144u + 12'288u) / 4096);
}

TEST(ProcMeminfo, applicationMemoryIsWhatTheListsHoldWithoutFiles) {
  const auto counts = read("laptop");
  const std::uint64_t anonymous = (1'922'200 + 2'800'120) / 4;
  EXPECT_EQ(usedPages(counts) - counts.wired - counts.compressor, anonymous);
}

TEST(ProcMeminfo, aContainerThatListsMoreThanItUsesKeepsItsTotal) {
  const auto counts = read("container");  // no final line feed either
  EXPECT_EQ(usedPages(counts), (524'288u - 350'003u) / 4);
  EXPECT_EQ(counts.wired, 0u);
  EXPECT_LE(counts.external, counts.active + counts.inactive);
}

TEST(ProcMeminfo, withoutAvailableMemoryWiredIsTheSumOfWhatCannotBeFreed) {
  const auto counts = read("old-kernel");
  EXPECT_EQ(counts.wired, (4'096u + 40'960 + 2'048 + 8'192 + 1'024) / 4);
  EXPECT_EQ(counts.external, 204'800u / 4);
  EXPECT_EQ(counts.compressor, 0u);
}

TEST(ProcMeminfo, oddTextsKeepTheCountsWithinTheMemory) {
  const struct {
    const char* text;
    std::uint64_t used;  // pages
  } cases[] = {
      {"MemTotal: 400 kB\nMemAvailable: 100 kB", 75},
      {"MemTotal: 400 kB\nMemAvailable: 100 kB\nActive: 9999 kB\nInactive: 1 kB\n",
       75},  // nothing says what is file-backed
      {"MemTotal: 400 kB\nMemAvailable: 4000 kB\nActive: 40 kB\n", 0},
      {"MemTotal: 400 kB\nMemAvailable: 100 kB\nZswap: 4000 kB\n", 75},
      {"MemTotal: 400 kB\nMemAvailable: -1 kB\nSUnreclaim: 40 kB\n", 10},
      {"MemTotal: 400 kB\nMemTotal\nMemAvailable:\n: 7\n\n\nSUnreclaim: 18446744073709551615 kB\n", 0},
  };
  for (const auto& [text, used] : cases) EXPECT_EQ(usedPages(parseMeminfo(text, 0, 4096)), used) << text;
  for (const char* text : {"", "MemAvailable: 100 kB\n", "MemTotal: x kB\n", "MemTotal: 0 kB\nSUnreclaim: 40 kB\n",
                           "MemTotal: 99999999999999999 kB\n"}) {
    EXPECT_EQ(parseMeminfo(text, 0, 4096), MemoryPageCounts{}) << text;
  }
  EXPECT_EQ(usedPages(parseMeminfo("MemTotal: 400 kB\nMemAvailable: 100 kB\n", ~std::uint64_t{0}, 4096)), 75u);
  EXPECT_EQ(parseZramBytes("1 2"), 0u);
  EXPECT_EQ(parseZramBytes(""), 0u);
}

TEST(ProcMeminfo, aMachineThatDoesNotAnswerCountsNothing) {
  const test::TemporaryDirectory root;
  EXPECT_EQ(ProcMeminfoPages(root.path()).read(), MemoryPageCounts{});
}

TEST(ProcMeminfo, thisMachinesFiguresAreSane) {
  const auto counts = ProcMeminfoPages().read();
  EXPECT_GT(counts.physicalBytes, 0u);
  EXPECT_LT(usedPages(counts) * counts.pageBytes, counts.physicalBytes);
}

TEST(MallocTrimRelief, givesBackWhatWasFreedAndNeverLessThanNothing) {
  MallocTrimRelief relief;
  relief.releaseUnusedMemory();
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
  constexpr std::size_t blockBytes = 4'000,
                        blocks = 8'000;  // 32 MB in the arena, with a hole before each block that stays
  std::vector<void*> freed, kept;
  for (std::size_t i = 0; i < blocks; ++i) {
    freed.push_back(std::memset(std::malloc(blockBytes * 2), 1, blockBytes * 2));
    kept.push_back(std::malloc(16));
  }
  for (void* block : freed) std::free(block);
  EXPECT_GT(relief.releaseUnusedMemory(), 16'000'000);
  for (void* block : kept) std::free(block);
#endif
  EXPECT_GE(relief.releaseUnusedMemory(), 0);
}

TEST(StatvfsVolume, readsTheVolumeAndHasNoAnswerForWhatHasNoSize) {
  const auto volume = StatvfsVolume().read();
  ASSERT_TRUE(volume);
  EXPECT_GT(volume->total, 0);
  EXPECT_LE(volume->available, volume->total);
  EXPECT_EQ(StatvfsVolume("/proc").read(), std::nullopt);  // a file system of no blocks
  EXPECT_EQ(StatvfsVolume("/there/is/nothing").read(), std::nullopt);
}

}  // namespace
}  // namespace quillmeter
