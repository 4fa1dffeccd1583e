#include <csignal>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>
#include <nlohmann/json.hpp>

#include "base/FileDescriptor.h"
#include "screentime/desktop/EventLoop.h"
#include "screentime/desktop/MessageBus.h"
#include "screentime/desktop/XServer.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter::test {
namespace {

using Json = nlohmann::json;

const std::string login = "org.freedesktop.login1";
const std::string sessionPath = "/org/freedesktop/login1/session/auto";
const std::string sessionInterface = "org.freedesktop.login1.Session";

// The programs as they are used: `quillmeterctl record` beside real windows, then `quillmeterctl screentime` over what
// it wrote.
class Record : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* program : {"Xvfb", "openbox", "xdotool"}) {
      if (installedProgram(program).empty()) GTEST_SKIP() << program << " is not installed";
    }
    if (!MessageBus::missing().empty()) GTEST_SKIP() << MessageBus::missing();
    ASSERT_FALSE(server_.display().empty());
    login_ = bus_.startTemplate("logind", login);
    bus_.call(login, "/org/freedesktop/login1", "org.freedesktop.DBus.Mock", "AddSession",
              {"auto", "seat0", 1000U, "tester", true});
    windowManager_ = server_.startWindowManager(directory_.path());
  }
  std::map<std::string, std::string> environment() const {
    return {{"DISPLAY", server_.display()},
            {"DBUS_SESSION_BUS_ADDRESS", bus_.address()},
            {"DBUS_SYSTEM_BUS_ADDRESS", bus_.address()},
            {"XDG_DATA_HOME", directory_.path() / "data"},
            {"XDG_DATA_DIRS", directory_.path() / "system"},
            {"XDG_CONFIG_HOME", directory_.path() / "config"},
            {"TZ", "UTC"}};
  }
  ChildProcess startRecorder(const std::string& log) const {
    return ChildProcess({QUILLMETERCTL_PATH, "--language", "zh-Hans", "record"},
                        {.environment = environment(), .outputFile = directory_.path() / log});
  }
  bool lastLineIs(const std::string& log, const std::string& line) const {
    return readFile(directory_.path() / log).ends_with(line + "\n");
  }
  std::string open(const std::string& name) {
    const auto output = directory_.path() / ("window-" + name);
    windows_.push_back(server_.openWindow(name, name, output));
    EXPECT_TRUE(waitUntil([&] { return readFile(output).ends_with('\n'); }));
    const std::string number = readFile(output);
    return number.substr(0, number.find('\n'));
  }
  // Fails until the window manager has begun.
  void activate(const std::string& window) const {
    EXPECT_TRUE(waitUntil([&] { return server_.xdotool({"windowactivate", window}) == 0; }));
  }
  Json screentime() const {
    std::string output;
    EXPECT_EQ(runProgram({QUILLMETERCTL_PATH, "screentime", "--json", "--week", today()}, environment(), &output), 0)
        << output;
    return Json::parse(output, nullptr, false);
  }
  static std::string today() {
    const std::time_t now = std::time(nullptr);
    char text[16];
    std::strftime(text, sizeof text, "%Y-%m-%d", std::gmtime(&now));
    return text;
  }
  static double secondsOf(const Json& record, const std::string& id) {
    for (const Json& total : record["apps"]) {
      if (total["app"]["id"] == id) return total["seconds"];
    }
    return 0;
  }
  std::filesystem::path archive() const {
    return directory_.path() / "data" / "Quillmeter" / "ScreenTime" / "activity.json";
  }

  TemporaryDirectory directory_;
  MessageBus bus_;
  XServer server_;
  ChildProcess login_;
  ChildProcess windowManager_;
  std::vector<ChildProcess> windows_;
};

TEST_F(Record, realWindowsAreCountedAndALockedScreenIsNot) {
  ChildProcess recorder = startRecorder("log");
  const std::string alpha = open("Alpha");
  const std::string beta = open("Beta");
  SystemMonotonicClock clock;
  const auto useFor = [&](const std::string& window, const std::string& name, double seconds) {
    activate(window);
    EXPECT_TRUE(waitUntil([&] { return lastLineIs("log", "活跃中  " + name); })) << readFile(directory_.path() / "log");
    const double begin = clock.uptime();
    EXPECT_TRUE(waitUntil([&] { return clock.uptime() - begin >= seconds; }));
    return clock.uptime() - begin;
  };
  double used = useFor(alpha, "Alpha", 2.5);
  used += useFor(beta, "Beta", 1.5);

  // The window keeps the focus under the lock.
  bus_.call(login, sessionPath, sessionInterface, "Lock", {});
  bus_.call(login, sessionPath, sessionInterface, "SetLockedHint", {true});
  EXPECT_TRUE(waitUntil([&] { return lastLineIs("log", "已锁屏"); }));
  const double locked = clock.uptime();
  EXPECT_TRUE(waitUntil([&] { return clock.uptime() - locked >= 2.5; }));
  bus_.call(login, sessionPath, sessionInterface, "SetLockedHint", {false});
  bus_.call(login, sessionPath, sessionInterface, "Unlock", {});
  used += useFor(alpha, "Alpha", 1.2);

  recorder.signal(SIGTERM);
  EXPECT_EQ(recorder.wait(), 0);
  const Json record = screentime();
  // Each change is sampled at once, so only the moments of the switches are uncertain.
  EXPECT_NEAR(record["total"], used, 1.5);
  EXPECT_NEAR(secondsOf(record, "Alpha"), 3.7, 1.2);
  EXPECT_NEAR(secondsOf(record, "Beta"), 1.5, 1.0);
  EXPECT_EQ(record["apps"].size(), 2U);
  EXPECT_TRUE(record["enabled"]);
  double timeline = 0;
  for (const Json& group : record["timeline"]) timeline += group["total"].get<double>();
  EXPECT_NEAR(timeline, record["total"], 1e-6);
  EXPECT_EQ(record["longest"]["app"]["id"], "Alpha");

  std::string csv;
  EXPECT_EQ(runProgram({QUILLMETERCTL_PATH, "screentime", "--csv"}, environment(), &csv), 0);
  EXPECT_TRUE(csv.starts_with("start,end,seconds,id,name\r\n")) << csv;
  std::string text;
  EXPECT_EQ(runProgram({QUILLMETERCTL_PATH, "--language", "en", "screentime", "--day", today()}, environment(), &text),
            0);
  EXPECT_NE(text.find("Active use"), std::string::npos) << text;
  EXPECT_EQ(readFile(archive()).find("a title that nobody may record"), std::string::npos);
}

// The server's idle counter cannot be wound forward: a minute away takes a minute.
TEST_F(Record, aMinuteWithoutInputEndsTheCountingUntilTheNextInput) {
  if (std::getenv("QUILLMETER_SLOW_TESTS") == nullptr)
    GTEST_SKIP() << "takes more than a minute; set QUILLMETER_SLOW_TESTS to run it";
  ChildProcess recorder = startRecorder("log");
  activate(open("Alpha"));
  ASSERT_TRUE(waitUntil([&] { return lastLineIs("log", "活跃中  Alpha"); }));
  server_.xdotool({"mousemove", "50", "50"});
  ASSERT_TRUE(waitUntil([&] { return lastLineIs("log", "空闲中"); }, 90));
  const SystemMonotonicClock clock;
  const double idle = clock.uptime();
  EXPECT_TRUE(waitUntil([&] { return clock.uptime() - idle >= 8; }));
  server_.xdotool({"key", "space"});
  ASSERT_TRUE(waitUntil([&] { return lastLineIs("log", "活跃中  Alpha"); }));
  const double active = clock.uptime();
  EXPECT_TRUE(waitUntil([&] { return clock.uptime() - active >= 3; }));
  recorder.signal(SIGTERM);
  EXPECT_EQ(recorder.wait(), 0);
  const Json record = screentime();
  EXPECT_NEAR(record["total"], 60 + (clock.uptime() - active), 2.5);
  ASSERT_EQ(record["timeline"].back()["spans"].size(), 2U) << "the eight seconds away lie between two spans";
}

TEST_F(Record, aStoppedProcessCreditsNothingForTheTimeItStood) {
  ChildProcess recorder = startRecorder("log");
  activate(open("Alpha"));
  ASSERT_TRUE(waitUntil([&] { return lastLineIs("log", "活跃中  Alpha"); }));
  SystemMonotonicClock clock;
  const double begin = clock.uptime();
  recorder.signal(SIGSTOP);
  EXPECT_TRUE(waitUntil([&] { return clock.uptime() - begin >= 6; }));
  recorder.signal(SIGCONT);
  const double resumed = clock.uptime();
  EXPECT_TRUE(waitUntil([&] { return clock.uptime() - resumed >= 1.5; }));
  recorder.signal(SIGTERM);
  EXPECT_EQ(recorder.wait(), 0);
  EXPECT_LT(screentime()["total"], clock.uptime() - begin - 5);
}

TEST_F(Record, aReaderThatStandsStillDoesNotStopTheRecording) {
  const std::string pipe = directory_.path() / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const FileDescriptor reader(::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  const FileDescriptor filler(::open(pipe.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
  const std::string page(4096, 'x');
  while (::write(filler.get(), page.data(), page.size()) > 0) continue;
  ChildProcess recorder = startRecorder("pipe");
  ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(archive()); }));
  activate(open("Alpha"));
  SystemMonotonicClock clock;
  const double begin = clock.uptime();
  EXPECT_TRUE(waitUntil([&] { return clock.uptime() - begin >= 3; }));
  recorder.signal(SIGTERM);
  EXPECT_TRUE(waitUntil([&] { return !recorder.isRunning(); }));
  EXPECT_GE(secondsOf(screentime(), "Alpha"), 1);
}

TEST_F(Record, aSecondRecorderSaysThatItDoesNotRecord) {
  ChildProcess first = startRecorder("first");
  activate(open("Alpha"));
  ASSERT_TRUE(waitUntil([&] { return lastLineIs("first", "活跃中  Alpha"); }));
  ChildProcess second = startRecorder("second");
  EXPECT_EQ(second.wait(), 1);
  EXPECT_NE(readFile(directory_.path() / "second").find("另一个正在运行的程序已在记录屏幕使用时间"), std::string::npos);
  EXPECT_TRUE(first.isRunning());
  first.signal(SIGINT);
  EXPECT_EQ(first.wait(), 0);
}

TEST_F(Record, aRecordThatCannotBeReadIsKept) {
  directory_.write("data/Quillmeter/ScreenTime/activity.json", "{\"version\":2}");
  ChildProcess recorder = startRecorder("log");
  EXPECT_EQ(recorder.wait(), 1);
  EXPECT_NE(readFile(directory_.path() / "log").find("活动记录读取失败，原文件已保留。"), std::string::npos);
  EXPECT_EQ(readFile(archive()), "{\"version\":2}");
  std::string output;
  EXPECT_EQ(runProgram({QUILLMETERCTL_PATH, "screentime"}, environment(), &output), 1);
}

TEST_F(Record, wrongArgumentsAndMissingFilesAreNamed) {
  std::string output;
  EXPECT_EQ(runProgram({QUILLMETERCTL_PATH, "screentime", "--day", "2026-02-30"}, environment(), &output), 2) << output;
  EXPECT_EQ(
      runProgram({QUILLMETERCTL_PATH, "screentime", "--archive", "/nowhere/activity.json"}, environment(), &output), 1);
  EXPECT_EQ(runProgram({QUILLMETERCTL_PATH, "screentime", "--json", "--csv"}, environment(), &output), 2);
  EXPECT_EQ(runProgram({QUILLMETERCTL_PATH, "screentime", "--json"}, environment(), &output), 0);
  EXPECT_EQ(Json::parse(output, nullptr, false)["total"], 0);
}

}  // namespace
}  // namespace quillmeter::test
