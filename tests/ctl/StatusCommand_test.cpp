#include <sys/statvfs.h>

#include <fstream>
#include <limits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "core/model/ByteCountFormatter.h"
#include "ctl/ToolRun.h"
#include "metrics/DiskInfo.h"

namespace quillmeter::test {
namespace {

using testing::HasSubstr;
using testing::Not;

// Used share of the memory, as every other tool computes it.
double usedMemory() {
  std::ifstream meminfo("/proc/meminfo");
  double total = 0;
  double available = 0;
  std::string key;
  double value = 0;
  while (meminfo >> key >> value) {
    if (key == "MemTotal:") total = value;
    if (key == "MemAvailable:") available = value;
    meminfo.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
  }
  return (total - available) / total;
}

TEST(StatusCommand, theFiguresAreThoseOfThisMachine) {
  const ToolRun tool;
  const double memoryBefore = usedMemory();
  const ToolResult result = tool.run({"status", "--json"});
  ASSERT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  const auto json = nlohmann::json::parse(result.out);
  // Other programs run meanwhile.
  const double leeway = std::abs(usedMemory() - memoryBefore) + 0.05;
  EXPECT_NEAR(json["memoryUsage"].get<double>(), memoryBefore, leeway);
  EXPECT_GE(json["cpuUsage"].get<double>(), 0.0);
  EXPECT_LE(json["cpuUsage"].get<double>(), 1.0);
  EXPECT_NE(json["uploadSpeed"], "正在采样");
  struct statvfs volume {};
  ASSERT_EQ(::statvfs("/", &volume), 0);
  const auto total = static_cast<std::int64_t>(volume.f_blocks * volume.f_frsize);
  const auto free = static_cast<std::int64_t>(volume.f_bavail * volume.f_frsize);
  EXPECT_EQ(json["diskTotal"], DiskInfo::convertByteData(ByteCountFormatter::file(), total));
  const double used = static_cast<double>(total - free) / static_cast<double>(total);
  EXPECT_NEAR(json["diskUsage"].get<double>(), std::min(used, 0.999), 0.01);
}

TEST(StatusCommand, theTextNamesEveryPart) {
  const ToolRun tool;
  const ToolResult result = tool.run({"status", "--language", "en"});
  EXPECT_EQ(result.status, 0);
  for (const char* part : {"CPU", "Memory", "Disk", "Battery", "Network", "Cooling"}) {
    EXPECT_THAT(result.out, HasSubstr(part));
  }
  EXPECT_THAT(result.out, Not(HasSubstr("\x1b")));
}

TEST(LayoutCommand, layoutsArePrintedAsTheyAreLoaded) {
  const ToolRun tool;
  const auto both = nlohmann::json::parse(tool.run({"layout", "--json"}).out);
  EXPECT_EQ(both["dashboard"].size(), 10U);
  EXPECT_EQ(both["menubar"][1]["kind"], "cpu");
  const std::string stored = R"([{"kind":"gpu","size":"small","isEnabled":true},)"
                             R"({"kind":"memory","size":"large","isEnabled":false}])";
  ASSERT_EQ(tool.run({"settings", "set", "settings.menuBarLayout.v2", stored}).status, 0);
  const auto menuBar = nlohmann::json::parse(tool.run({"layout", "menubar", "--json"}).out);
  EXPECT_EQ(menuBar.size(), 10U);
  EXPECT_EQ(menuBar[0], nlohmann::json::parse(R"({"kind":"memory","size":"large","isEnabled":false})"));
  EXPECT_THAT(tool.run({"layout", "--language", "en"}).out, HasSubstr("Dashboard"));
  EXPECT_EQ(tool.run({"layout", "window"}).status, 2);
}

}  // namespace
}  // namespace quillmeter::test
