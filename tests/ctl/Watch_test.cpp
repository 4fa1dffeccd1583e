#include <csignal>
#include <regex>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "ctl/LiveRun.h"
#include "ctl/ToolRun.h"

namespace quillmeter::test {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string alternateScreen = "\x1b[?1049h";
const std::string mainScreen = "\x1b[?1049l";
const std::string wholeScreen = "\x1b[2J";

std::size_t count(const std::string& text, const std::string& piece) {
  std::size_t found = 0;
  for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) ++found;
  return found;
}

// The greatest row that the output moves to.
int lowestRow(const std::string& out) {
  static const std::regex move("\x1b\\[([0-9]+);1H");
  int lowest = 0;
  for (std::sregex_iterator it(out.begin(), out.end(), move), end; it != end; ++it) {
    lowest = std::max(lowest, std::stoi((*it)[1]));
  }
  return lowest;
}

bool sameModes(const termios& a, const termios& b) {
  return a.c_lflag == b.c_lflag && a.c_iflag == b.c_iflag && a.c_oflag == b.c_oflag && a.c_cc[VMIN] == b.c_cc[VMIN];
}

TEST(Watch, aTerminalGetsOneScreenThatIsRedrawnInPlace) {
  ToolRun tool;
  LiveRun watch(tool, {"watch", "--interval", "1"});
  ASSERT_TRUE(watch.waitFor("q 退出"));
  EXPECT_THAT(watch.out(), HasSubstr("CPU"));
  EXPECT_EQ(watch.modes().c_lflag & static_cast<tcflag_t>(ICANON | ECHO), 0U);
  watch.type("m");
  ASSERT_TRUE(watch.waitFor("正在清理内存…"));
  watch.type("q");
  EXPECT_EQ(watch.waitForEnd(), 0);
  EXPECT_EQ(count(watch.out(), alternateScreen), 1U);
  EXPECT_EQ(count(watch.out(), wholeScreen), 1U);
}

TEST(Watch, theViewFollowsTheSizeOfTheTerminal) {
  ToolRun tool;
  LiveRun watch(tool, {"watch"});
  ASSERT_TRUE(watch.waitFor("q 退出"));
  watch.resize(30, 6);
  const std::size_t first = watch.out().find(wholeScreen);
  ASSERT_TRUE(watch.waitFor(wholeScreen, first + wholeScreen.size()));
  const std::size_t second = watch.out().find(wholeScreen, first + wholeScreen.size());
  ASSERT_TRUE(watch.waitFor("\x1b[6;1H", second));
  watch.type("q");
  EXPECT_EQ(watch.waitForEnd(), 0);
  EXPECT_EQ(lowestRow(watch.out().substr(second)), 6);
}

TEST(Watch, whateverEndsItTheTerminalIsAsItWasBefore) {
  struct Case {
    std::string keys;
    int signal;
  };
  for (const Case& end : {Case{"q", 0}, {"\x03", 0}, {"", SIGTERM}, {"", SIGHUP}, {"", SIGQUIT}}) {
    ToolRun tool;
    LiveRun watch(tool, {"watch"});
    ASSERT_TRUE(watch.waitFor("q 退出"));
    termios raw = watch.modes();
    if (end.signal != 0) {
      watch.signal(end.signal);
    } else {
      watch.type(end.keys);
    }
    EXPECT_EQ(watch.waitForEnd(), 0);
    EXPECT_TRUE(watch.out().ends_with(mainScreen));
    EXPECT_THAT(watch.out(), HasSubstr("\x1b[?25h"));
    raw.c_lflag |= static_cast<tcflag_t>(ICANON | ECHO);
    EXPECT_TRUE(sameModes(watch.modes(), raw));
  }
}

TEST(Watch, suspendingGivesTheTerminalBackAndGoingOnTakesItAgain) {
  ToolRun tool;
  LiveRun watch(tool, {"watch"});
  ASSERT_TRUE(watch.waitFor("q 退出"));
  watch.type("\x1a");
  ASSERT_TRUE(watch.waitUntilStopped());
  ASSERT_TRUE(watch.waitFor(mainScreen));
  EXPECT_NE(watch.modes().c_lflag & static_cast<tcflag_t>(ICANON), 0U);
  const std::size_t before = watch.out().size();
  watch.signal(SIGCONT);
  ASSERT_TRUE(watch.waitFor(alternateScreen, before));
  ASSERT_TRUE(watch.waitFor("q 退出", before));
  watch.type("q");
  EXPECT_EQ(watch.waitForEnd(), 0);
}

TEST(Watch, aTerminalThatNobodyReadsStopsNothing) {
  ToolRun tool;
  LiveRun watch(tool, {"watch"});
  ASSERT_TRUE(watch.waitFor("q 退出"));
  // More than a terminal holds: each key draws the whole screen.
  for (int i = 0; i < 4; ++i) watch.type(std::string(60, 'L' - '@'));
  watch.type("q");
  EXPECT_EQ(watch.waitForEndUnread(), 0);
}

TEST(Watch, keysOfOtherMeaningAreNoCommands) {
  ToolRun tool;
  LiveRun watch(tool, {"watch"});
  ASSERT_TRUE(watch.waitFor("q 退出"));
  watch.type("\x1b[24~\x1bq\x1bOQx");  // F12, Alt-q, F2
  const std::size_t before = watch.out().size();
  watch.type("m");
  EXPECT_TRUE(watch.waitFor("正在清理内存…", before));
  watch.type("q");
  EXPECT_EQ(watch.waitForEnd(), 0);
}

TEST(Watch, elsewhereThanOnATerminalATickIsAPlainLine) {
  ToolRun tool;
  LiveRun watch(tool, {"watch", "--interval", "1", "--language", "en"}, LiveRun::Output::pipe);
  ASSERT_TRUE(watch.waitFor("\n"));
  ASSERT_TRUE(watch.waitFor("\n", watch.out().find('\n') + 1));
  watch.signal(SIGTERM);
  EXPECT_EQ(watch.waitForEnd(), 0);
  const std::string line = watch.out().substr(0, watch.out().find('\n'));
  EXPECT_THAT(line, testing::MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9:]{8}  CPU [0-9]+%  Memory [0-9]+%  .*Token "
                                          "Today 0"));
  EXPECT_THAT(watch.out(), Not(HasSubstr("\x1b")));
  // The interval of one run is nobody else's.
  EXPECT_EQ(tool.run({"settings", "get", "settings.refreshInterval"}).out, "2.0\n");
  // The record that widgets read was written with each tick.
  const auto record = nlohmann::json::parse(tool.run({"widget"}).out);
  for (const char* key : {"cpuUsage", "memoryUsage", "diskUsage", "todayTokens", "weekTokens", "updatedAt"}) {
    EXPECT_TRUE(record.contains(key)) << key;
  }
}

TEST(Watch, aReaderThatLeavesEndsItAtOnce) {
  ToolRun tool;
  LiveRun watch(tool, {"watch", "--interval", "3600"}, LiveRun::Output::pipe);
  watch.closeOutput();
  EXPECT_EQ(watch.waitForEndUnread(), 141);
}

TEST(Watch, nowhereToPutTheWidgetsRecordIsNoReasonToStop) {
  ToolRun tool;
  tool.environment["XDG_RUNTIME_DIR"] = tool.scratch().path().string() + "/none";
  tool.environment["XDG_STATE_HOME"] = "/dev/null/none";
  LiveRun watch(tool, {"watch", "--interval", "1"}, LiveRun::Output::pipe);
  EXPECT_TRUE(watch.waitFor("\n"));
  watch.signal(SIGINT);
  EXPECT_EQ(watch.waitForEnd(), 0);
  const ToolResult widget = tool.run({"widget"});
  EXPECT_EQ(widget.status, 1);
  EXPECT_EQ(widget.out, "");
  EXPECT_THAT(widget.err, HasSubstr("还没有小组件记录"));
}

TEST(Watch, onlyAnIntervalThatTheSettingTakesIsTaken) {
  const ToolRun tool;
  for (const std::string interval : {"0.5", "0", "-1", "3601", "nan", "inf", "fast", "2s", ""}) {
    const ToolResult result = tool.run({"watch", "--interval=" + interval});
    EXPECT_EQ(result.status, 2) << interval;
    EXPECT_EQ(result.out, "");
  }
}

}  // namespace
}  // namespace quillmeter::test
