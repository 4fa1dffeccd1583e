#include <csignal>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "screentime/desktop/EventLoop.h"
#include "screentime/desktop/MessageBus.h"
#include "screentime/desktop/SwayCompositor.h"
#include "screentime/desktop/XServer.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter::test {
namespace {

const std::string busName = "com.kesto.Quillmeter";

// The program as a user starts it, with nothing of the machine that runs the test.
class Program : public testing::Test {
 protected:
  std::map<std::string, std::string> environment() const {
    return {{"HOME", directory_.path() / "home"},
            {"XDG_CONFIG_HOME", directory_.path() / "config"},
            {"XDG_DATA_HOME", directory_.path() / "data"},
            {"XDG_STATE_HOME", directory_.path() / "state"},
            {"XDG_DATA_DIRS", directory_.path() / "system"},
            {"PULSE_SERVER", "unix:" + (directory_.path() / "no-sound").string()},
            {"LSAN_OPTIONS", "suppressions=" QUILLMETER_TEST_DATA "/sanitizers/desktop.supp:print_suppressions=0"},
            {"TZ", "UTC"}};
  }

  TemporaryDirectory directory_;
};

TEST_F(Program, saysWithoutADisplayWhatToUseInstead) {
  for (const char* display : {"", ":9999"}) {
    auto surroundings = environment();
    if (*display != '\0') surroundings["DISPLAY"] = display;
    std::string output;
    EXPECT_EQ(runProgram({QUILLMETER_PATH}, surroundings, &output), 1);
    EXPECT_NE(output.find("quillmeterctl"), std::string::npos) << output;
    EXPECT_EQ(output.find("qt.qpa"), std::string::npos) << output;
  }
}

TEST_F(Program, tellsWrongUseFromHelp) {
  const auto status = [this](const std::string& argument, const std::string& value = {}) {
    std::vector<std::string> command = {QUILLMETER_PATH, argument};
    if (!value.empty()) command.push_back(value);
    return runProgram(command, environment());
  };
  EXPECT_EQ(status("--help"), 0);
  EXPECT_EQ(status("--version"), 0);
  EXPECT_EQ(status("--bogus"), 2);
  EXPECT_EQ(status("--action", "dance"), 2);
}

// In an X server with a window manager, on a bus.
class Session : public Program {
 protected:
  void SetUp() override {
    for (const char* program : {"Xvfb", "openbox", "xdotool"}) {
      if (installedProgram(program).empty()) GTEST_SKIP() << program << " is not installed";
    }
    if (!MessageBus::missing().empty()) GTEST_SKIP() << MessageBus::missing();
    ASSERT_FALSE(server_.display().empty());
    windowManager_ = server_.startWindowManager(directory_.path());
  }

  std::map<std::string, std::string> session() const {
    auto all = environment();
    all["DISPLAY"] = server_.display();
    all["QT_QPA_PLATFORM"] = "xcb";
    all["DBUS_SESSION_BUS_ADDRESS"] = bus_.address();
    all["DBUS_SYSTEM_BUS_ADDRESS"] = bus_.address();
    return all;
  }
  int run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), QUILLMETER_PATH);
    return runProgram(arguments, session());
  }
  ChildProcess start(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), QUILLMETER_PATH);
    ChildProcess program(arguments, {.environment = session(), .outputFile = directory_.path() / "log"});
    EXPECT_TRUE(waitUntil([&] { return bus_.hasName(busName); })) << readFile(directory_.path() / "log");
    return program;
  }
  bool showsWindow(const std::string& objectTitle) {
    return server_.xdotool({"search", "--onlyvisible", "--name", objectTitle}) == 0;
  }
  void completeOnboarding() {
    directory_.write("config/quillmeter/com.kesto.Quillmeter.json", R"({"onboarding.completedVersion": 1})");
  }

  MessageBus bus_;
  XServer server_;
  ChildProcess windowManager_;
};

TEST_F(Session, handsASecondStartToTheFirst) {
  completeOnboarding();
  EXPECT_EQ(run({"--action", "quit"}), 0) << "nothing runs that could end";
  ChildProcess first = start({"--hidden"});
  EXPECT_EQ(run({"--hidden"}), 0);
  EXPECT_FALSE(showsWindow("Quillmeter"));
  EXPECT_EQ(run({}), 0);
  EXPECT_TRUE(waitUntil([&] { return showsWindow("Quillmeter"); }));
  EXPECT_EQ(run({"--action", "refresh"}), 0);
  EXPECT_EQ(run({"--action", "quit"}), 0);
  EXPECT_EQ(first.wait(), 0) << readFile(directory_.path() / "log");
}

TEST_F(Session, greetsANewUserAlsoAtASecondStart) {
  ChildProcess first = start({"--hidden"});
  EXPECT_EQ(run({}), 0);
  EXPECT_TRUE(waitUntil([&] { return showsWindow("欢迎使用 Quillmeter"); }));
  EXPECT_FALSE(showsWindow("^Quillmeter$"));
  EXPECT_EQ(run({"--action", "quit"}), 0);
  EXPECT_EQ(first.wait(), 0) << readFile(directory_.path() / "log");
}

TEST_F(Session, endsWithItsLastWindowWhereThereIsNoTray) {
  completeOnboarding();
  ChildProcess first = start({});
  ASSERT_TRUE(waitUntil([&] { return showsWindow("^Quillmeter$"); }));
  server_.xdotool({"search", "--onlyvisible", "--name", "^Quillmeter$", "windowactivate", "--sync", "key", "ctrl+w"});
  EXPECT_TRUE(waitUntil([&] { return !first.isRunning(); })) << readFile(directory_.path() / "log");
}

TEST_F(Session, endsOnASignalWithItsWindowsOpen) {
  ChildProcess first = start({});  // the onboarding, on a first start
  EXPECT_TRUE(waitUntil([&] { return showsWindow("Quillmeter"); }));
  EXPECT_EQ(run({"--action", "open-settings"}), 0);
  EXPECT_EQ(run({"--action", "open-dashboard"}), 0);
  EXPECT_EQ(run({"--action", "toggle-popover"}), 0);
  first.signal(SIGTERM);
  EXPECT_EQ(first.wait(), 0) << readFile(directory_.path() / "log");
}

TEST_F(Session, followsASettingThatTheToolChanges) {
  completeOnboarding();
  ChildProcess first = start({"--action", "open-settings"});
  EXPECT_TRUE(waitUntil([&] { return showsWindow("设置"); }));
  EXPECT_EQ(runProgram({QUILLMETERCTL_PATH, "settings", "set", "settings.appLanguage", "en"}, session()), 0);
  EXPECT_TRUE(waitUntil([&] { return showsWindow("Settings"); })) << readFile(directory_.path() / "log");
  first.signal(SIGTERM);
  EXPECT_EQ(first.wait(), 0);
}

TEST_F(Session, startsWhereNothingCanBeStored) {
  directory_.write("config", "in the way");
  directory_.write("data", "in the way");
  ChildProcess first = start({"--action", "open-dashboard"});
  EXPECT_TRUE(waitUntil([&] { return showsWindow("Quillmeter"); })) << readFile(directory_.path() / "log");
  first.signal(SIGTERM);
  EXPECT_EQ(first.wait(), 0);
}

TEST_F(Program, livesThroughOutputsThatComeAndGo) {
  if (!SwayCompositor::missing().empty()) GTEST_SKIP() << SwayCompositor::missing();
  if (!MessageBus::missing().empty()) GTEST_SKIP() << MessageBus::missing();
  SwayCompositor sway;
  ASSERT_TRUE(sway.start()) << sway.log();
  MessageBus bus;
  auto surroundings = environment();
  // The toolkit's plugin keeps what it bound of the compositor and is unloaded before leaks are looked for; the X
  // server's session watches for ours.
  surroundings.insert({{"ASAN_OPTIONS", "detect_leaks=0"},
                       {"QT_QPA_PLATFORM", "wayland"},
                       {"WAYLAND_DISPLAY", sway.socket()},
                       {"XDG_RUNTIME_DIR", sway.runtimeFolder()},
                       {"DBUS_SESSION_BUS_ADDRESS", bus.address()},
                       {"DBUS_SYSTEM_BUS_ADDRESS", bus.address()}});
  const auto log = directory_.path() / "log";
  ChildProcess program({QUILLMETER_PATH, "--action", "open-settings"},
                       {.environment = surroundings, .outputFile = log});
  const auto windows = [&sway] {
    std::string tree;
    sway.message({"-t", "get_tree"}, &tree);
    std::size_t count = 0;
    for (std::size_t at = tree.find("com.kesto.Quillmeter\""); at != std::string::npos;
         at = tree.find("com.kesto.Quillmeter\"", at + 1)) {
      ++count;
    }
    return count;
  };
  ASSERT_TRUE(waitUntil([&] { return windows() > 0; })) << readFile(log);
  EXPECT_EQ(sway.message({"create_output"}), 0);
  for (const char* change : {"HEADLESS-2 disable", "HEADLESS-2 enable", "HEADLESS-1 disable", "HEADLESS-1 enable"}) {
    EXPECT_EQ(sway.message({std::string("output ") + change}), 0) << change;
    std::string said;
    EXPECT_EQ(runProgram({QUILLMETER_PATH, "--action", "toggle-popover"}, surroundings, &said), 0) << said;
  }
  EXPECT_TRUE(program.isRunning()) << readFile(log);
  EXPECT_EQ(runProgram({QUILLMETER_PATH, "--action", "quit"}, surroundings), 0);
  EXPECT_EQ(program.wait(), 0) << readFile(log);
}

}  // namespace
}  // namespace quillmeter::test
