#include "ctl/WatchView.h"

#include <fcntl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/Iso8601.h"
#include "ctl/DisplayWidth.h"

namespace quillmeter::ctl {
namespace {

using testing::Contains;
using testing::HasSubstr;

class WatchViewTest : public testing::Test {
 protected:
  WatchViewTest() {
    system.cpuUsage = 0.25;
    system.cpuUser = "20.00 %";
    system.cpuSystem = "5.00 %";
    system.memoryUsage = 0.5;
    system.batteryLevel = 0.8;
    system.batteryState = "使用电池";
    system.batteryTime = "剩余 02:05";
    system.downloadSpeed = "12 KB/s";
    system.uploadSpeed = "3 KB/s";
    system.updatedAt = now;
    cpu.append(1);
    agents.todayMetrics.totalTokens = 1'500'000;
    agents.primaryLimitUsed = 0.34;
    agents.primaryResetAt = Date::fromSeconds(now.seconds() + 95 * 60);
    agents.weeklyLimitUsed = 0.95;
    agents.weeklyResetAt = Date::fromSeconds(now.seconds() + 3 * 86'400 + 60);
    agents.recentSessions = {{"codex:a", "codex", "a\x1b[2J", now, 12'300}};
  }

  std::vector<std::string> lines(ScreenSize size) {
    const WatchFrame frame{system, cpu, memory, network, agents, "已释放", hints, calendar, locale, now};
    return watchLines(console, frame, size);
  }

  FileDescriptor nowhere{::open("/dev/null", O_WRONLY | O_CLOEXEC)};
  Console console{nowhere.get(), nowhere.get()};
  Date now = *parseIso8601("2026-11-21T09:00:00Z");
  SystemSnapshot system;
  SampleHistory cpu, memory, network;
  AgentUsageSnapshot agents;
  std::vector<std::string> hints;
  Calendar calendar = Calendar::utc();
  LocaleConventions locale;
};

TEST_F(WatchViewTest, aWideTerminalShowsEverything) {
  const auto page = lines({110, 40});
  EXPECT_THAT(page, Contains(HasSubstr(
                        "CPU         25%  █████               ▏ ▁▁▁▁▁▁▁▁▁▁▁▁▁▁▁▁▁▁▁▁▁▁▁█  用户 20.00 %  系统 5.00 %")));
  EXPECT_THAT(page, Contains(HasSubstr("使用电池  剩余 02:05")));
  EXPECT_THAT(page, Contains(HasSubstr("↓ 12 KB/s")));
  EXPECT_THAT(page, Contains(HasSubstr("今天 1.5M")));
  EXPECT_THAT(page, Contains(HasSubstr("01:35 后重置 (2026-11-21 10:35)")));
  EXPECT_THAT(page, Contains(HasSubstr("3 天 00:01 后重置")));
  EXPECT_THAT(page.back(), HasSubstr("q 退出"));
  EXPECT_TRUE(page.back().ends_with("已释放"));
}

TEST_F(WatchViewTest, noLineIsWiderAndNoPageLongerThanTheTerminal) {
  hints = {"quillmeterctl connect codex"};
  for (const ScreenSize size : {ScreenSize{110, 40}, {80, 24}, {63, 12}, {39, 5}, {10, 3}, {1, 1}}) {
    const auto page = lines(size);
    EXPECT_LE(page.size(), static_cast<std::size_t>(size.rows));
    for (const std::string& line : page) EXPECT_LE(displayWidth(line), size.columns) << line;
  }
}

TEST_F(WatchViewTest, foreignTextCannotDriveTheTerminal) {
  for (const std::string& line : lines({110, 40})) EXPECT_EQ(line.find('\x1b'), std::string::npos);
}

TEST_F(WatchViewTest, theKeysStayInTheLastLineOfALowTerminal) {
  EXPECT_THAT(lines({80, 4}).back(), HasSubstr("q 退出"));
}

}  // namespace
}  // namespace quillmeter::ctl
