#include "platform/linux/ProcStat.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

const std::filesystem::path machines = std::filesystem::path(QUILLMETER_TEST_DATA) / "machines";

using Processors = std::vector<ProcessorTickCounts>;

TEST(ProcStat, countsInterruptsAndStolenTimeAsSystemAndWaitingAsIdle) {
  Processors processors;
  ASSERT_TRUE(parseProcStat("cpu  100 5 50 850 7 1 2 3 60 4\n", processors));
  EXPECT_EQ(processors, (Processors{{100, 56, 857, 5}}));
}

TEST(ProcStat, readsCapturedMachines) {
  const struct {
    const char* machine;
    Processors processors;
  } cases[] = {
      {"laptop", {{351'234, 100'522, 4'128'577, 1'822}}},
      {"desktop", {{351'234, 100'522, 4'128'577, 1'822}}},
      {"old-kernel", {{100, 50, 850, 5}}},
      {"container", {{100, 50, 850, 0}, {10, 5, 85, 0}}},  // no summing line, no final line feed
      {"many-cores", {{278'411, 155'902, 22'399'288, 245}}},
  };
  for (const auto& [machine, expected] : cases) {
    ProcStatTicks ticks(machines / machine);
    Processors processors;
    EXPECT_TRUE(ticks.read(processors)) << machine;
    EXPECT_EQ(processors, expected) << machine;
  }
}

TEST(ProcStat, theProcessorsOfAManyCoreMachineAddUpToItsSummingLine) {
  std::string text = test::readFile(machines / "many-cores/proc/stat");
  text.erase(0, text.find('\n') + 1);
  Processors processors;
  ASSERT_TRUE(parseProcStat(text, processors));
  EXPECT_EQ(processors.size(), 246u);
  ProcessorTickCounts sum;
  for (const auto& processor : processors) {
    sum.user += processor.user;
    sum.system += processor.system;
    sum.idle += processor.idle;
    sum.nice += processor.nice;
  }
  EXPECT_EQ(sum, (ProcessorTickCounts{278'411, 155'902, 22'399'288, 245}));
}

TEST(ProcStat, linesThatMakeNoSenseAreNoProcessors) {
  for (const char* text :
       {"", "\n", "cpu", "cpu  1 2 3\n", "cpu  1 2 x 4\n", "cpu  -1 2 3 4\n", "cpufreq 1 2 3 4\n",
        "cpu  99999999999999999999 2 3 4\n", "cpu  1 2 3 18446744073709551615\n", "intr 1 2 3 4 5\n"}) {
    Processors processors;
    EXPECT_FALSE(parseProcStat(text, processors)) << text;
    EXPECT_TRUE(processors.empty());
  }
}

TEST(ProcStat, aFirstLineThatIsLongerThanEveryRealOneIsStillReadWhole) {
  const test::TemporaryDirectory root;
  root.write("proc/stat", "cpu " + std::string(600, ' ') + "1 2 3 4\ncpu0 1 2 3 4\n");
  ProcStatTicks ticks(root.path());
  Processors processors;
  ASSERT_TRUE(ticks.read(processors));
  EXPECT_EQ(processors, (Processors{{1, 3, 4, 2}}));
}

TEST(ProcStat, aFileThatIsReplacedRemovedAndBroughtBackIsFollowed) {
  const test::TemporaryDirectory root;
  ProcStatTicks ticks(root.path());
  Processors processors;
  EXPECT_FALSE(ticks.read(processors));

  root.write("proc/stat", "cpu  1 0 0 9\n");
  ASSERT_TRUE(ticks.read(processors));
  EXPECT_EQ(processors, (Processors{{1, 0, 9, 0}}));

  // Another file under the same name, as when a container mounts its own over it: seen within sixteen readings.
  root.write("proc/new", "cpu  2 0 0 18\n");
  std::filesystem::rename(root.path() / "proc/new", root.path() / "proc/stat");
  for (int i = 0; i < 16; ++i) ASSERT_TRUE(ticks.read(processors));
  EXPECT_EQ(processors, (Processors{{2, 0, 18, 0}}));

  std::filesystem::remove(root.path() / "proc/stat");
  for (int i = 0; i < 16; ++i) ticks.read(processors);
  EXPECT_FALSE(ticks.read(processors));
  root.write("proc/stat", "cpu  3 0 0 27");
  ASSERT_TRUE(ticks.read(processors));
  EXPECT_EQ(processors, (Processors{{3, 0, 27, 0}}));
}

TEST(ProcStat, thisMachinesProcessorsAreRead) {
  ProcStatTicks ticks;
  Processors processors;
  ASSERT_TRUE(ticks.read(processors));
  EXPECT_GT(processors.front().user + processors.front().idle, 0u);
}

}  // namespace
}  // namespace quillmeter
