#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "screentime/desktop/EventLoop.h"
#include "screentime/desktop/MessageBus.h"
#include "screentime/desktop/SwayCompositor.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter::test {
namespace {

// A real compositor without a screen and real windows in it.
class WaylandDesktop : public testing::Test {
 protected:
  void makeRuntimeFolder(uid_t owner) {
    runtime_ = directory_.path() / "run";
    std::filesystem::create_directory(runtime_);
    std::filesystem::permissions(directory_.path(), std::filesystem::perms{0755});
    std::filesystem::permissions(runtime_, std::filesystem::perms{0700});
    ASSERT_TRUE(geteuid() != 0 || chown(runtime_.c_str(), owner, owner) == 0);
  }
  // Waits until the socket takes connections.
  void startDesktop(const std::string& socket, const std::string& sessionBus = "") {
    LinuxDesktopPlaces places;
    places.waylandSocket = runtime_ / socket;
    places.sessionBusAddress = sessionBus;
    places.dataHome = directory_.path() / "data";
    places.dataDirectories = {places.dataHome};
    places.scratchFolder = directory_.path() / "scratch";
    desktop_ = std::make_unique<LinuxDesktop>(places, machinery_.descriptors, machinery_.timers, machinery_.monotonic);
    desktop_->foreground().setActivationHandler(
        [this](const RunningApplication& application) { announced_.push_back(*application.identifier); });
    desktop_->events().setEventHandler([this](SessionEvent event) { events_.push_back(event); });
  }
  void open(const std::string& socket, const std::string& id) {
    const auto output = directory_.path() / ("window-" + id);
    windows_.push_back(ChildProcess(
        {QUILLMETER_WAYLAND_TEST_WINDOW, id},
        {.environment = {{"XDG_RUNTIME_DIR", runtime_}, {"WAYLAND_DISPLAY", socket}}, .outputFile = output}));
    EXPECT_TRUE(waitUntil([&] { return readFile(output) == "shown\n"; })) << readFile(output);
  }
  bool isFront(const std::string& id) {
    const auto front = desktop_->foreground().frontmost();
    return front && front->identifier == id;
  }

  TemporaryDirectory directory_;
  std::filesystem::path runtime_;
  Machinery machinery_;
  ChildProcess compositor_;
  std::vector<ChildProcess> windows_;
  std::unique_ptr<LinuxDesktop> desktop_;
  std::vector<std::string> announced_;
  std::vector<SessionEvent> events_;
};

class SwayDesktop : public WaylandDesktop {
 protected:
  void SetUp() override {
    if (!SwayCompositor::missing().empty()) GTEST_SKIP() << SwayCompositor::missing();
    ASSERT_TRUE(sway_.start()) << sway_.log();
    runtime_ = sway_.runtimeFolder();
    socket_ = sway_.socket();
    directory_.write("data/applications/org.example.Alpha.desktop",
                     "[Desktop Entry]\nType=Application\nName=Alpha Writer\n");
    startDesktop(socket_);
  }
  int sway(std::vector<std::string> arguments) const { return sway_.message(std::move(arguments)); }

  SwayCompositor sway_;
  std::string socket_;
};

TEST_F(SwayDesktop, theActivatedWindowIsInFront) {
  EXPECT_TRUE(desktop_->foreground().isSupported());
  EXPECT_EQ(desktop_->foreground().frontmost(), std::nullopt);
  open(socket_, "alpha");
  open(socket_, "org.example.Beta");
  ASSERT_TRUE(waitUntil([&] { return isFront("org.example.Beta"); }));
  announced_.clear();
  for (int round = 0; round < 3; ++round) {
    sway({"[app_id=\"alpha\"] focus"});
    ASSERT_TRUE(waitUntil([&] { return isFront("org.example.Alpha"); }));
    EXPECT_EQ(desktop_->foreground().frontmost()->name, "Alpha Writer");
    sway({"[app_id=\"org.example.Beta\"] focus"});
    ASSERT_TRUE(waitUntil([&] { return isFront("org.example.Beta"); }));
  }
  EXPECT_EQ(announced_, (std::vector<std::string>{"org.example.Alpha", "org.example.Beta", "org.example.Alpha",
                                                  "org.example.Beta", "org.example.Alpha", "org.example.Beta"}));
  windows_.clear();
  EXPECT_TRUE(waitUntil([&] { return !desktop_->foreground().frontmost(); }));
}

TEST_F(SwayDesktop, theIdleTimeBeginsAfterASecondAndEndsWithInput) {
  ASSERT_TRUE(waitUntil([&] { return desktop_->idle().idleSeconds().value_or(0) > 1.3; }));
  sway({"seat - cursor move 5 5"});
  EXPECT_TRUE(waitUntil([&] { return desktop_->idle().idleSeconds().value_or(9) < 0.9; }));
}

TEST_F(SwayDesktop, outputsThatAreSwitchedOffAreTold) {
  sway({"output HEADLESS-1 dpms off"});
  std::string outputs;
  sway_.message({"-t", "get_outputs"}, &outputs);
  if (outputs.find("\"dpms\": true") != std::string::npos) {
    GTEST_SKIP() << "this compositor cannot switch an output without a screen off";
  }
  EXPECT_TRUE(waitUntil([&] { return events_ == std::vector{SessionEvent::displaysDidSleep}; }));
  sway({"output HEADLESS-1 dpms on"});
  EXPECT_TRUE(waitUntil([&] {
    return events_ == std::vector{SessionEvent::displaysDidSleep, SessionEvent::displaysDidWake};
  }));
}

TEST_F(SwayDesktop, aCompositorThatEndsLeavesEverythingUnknown) {
  open(socket_, "alpha");
  ASSERT_TRUE(waitUntil([&] { return isFront("org.example.Alpha"); }));
  sway_.end();
  EXPECT_TRUE(waitUntil([&] { return !desktop_->foreground().isSupported() && !desktop_->idle().idleSeconds(); }));
  EXPECT_EQ(desktop_->foreground().frontmost(), std::nullopt);
}

class ScriptedDesktop : public WaylandDesktop {
 protected:
  void SetUp() override {
    makeRuntimeFolder(geteuid());
    compositor_ = ChildProcess({QUILLMETER_SCRIPTED_COMPOSITOR, "wayland-s"},
                               {.environment = {{"XDG_RUNTIME_DIR", runtime_}}, .outputFile = log()});
    ASSERT_TRUE(waitUntil([&] { return readFile(log()).starts_with("ready"); })) << readFile(log());
    startDesktop("wayland-s");
  }
  std::filesystem::path log() const { return directory_.path() / "compositor.log"; }
};

TEST_F(ScriptedDesktop, theDisplaysSleepOnceAllOutputsAreOff) {
  using enum SessionEvent;
  compositor_.signal(SIGUSR1);
  EXPECT_TRUE(waitUntil([&] { return events_ == std::vector{displaysDidSleep}; }));
  compositor_.signal(SIGHUP);  // another one that is off as well
  compositor_.signal(SIGUSR1);
  EXPECT_TRUE(waitUntil([&] { return events_ == std::vector{displaysDidSleep, displaysDidWake}; }));
  compositor_.signal(SIGHUP);
  compositor_.signal(SIGUSR1);
  EXPECT_TRUE(waitUntil([&] { return events_ == std::vector{displaysDidSleep, displaysDidWake, displaysDidSleep}; }));
}

TEST_F(ScriptedDesktop, theIdleNotifierIsAskedForASecond) {
  EXPECT_TRUE(waitUntil([&] { return readFile(log()).ends_with("timeout 1000\n"); }));
  EXPECT_LE(desktop_->idle().idleSeconds().value(), 1.0);
  compositor_.signal(SIGUSR2);
  EXPECT_TRUE(waitUntil([&] { return desktop_->idle().idleSeconds().value() > 1.2; }));
  compositor_.signal(SIGUSR2);
  EXPECT_TRUE(waitUntil([&] { return desktop_->idle().idleSeconds().value() < 0.9; }));
}

TEST_F(ScriptedDesktop, withoutTheListOfWindowsTheForegroundIsUnknown) {
  EXPECT_FALSE(desktop_->foreground().isSupported());
  EXPECT_EQ(desktop_->foreground().frontmost(), std::nullopt);
}

class KWinDesktop : public WaylandDesktop {
 protected:
  void SetUp() override {
    const std::string program = installedProgram("kwin_wayland");
    if (program.empty()) GTEST_SKIP() << "kwin_wayland is not installed (package kwin-wayland, 196 MB)";
    if (!MessageBus::missing().empty()) GTEST_SKIP() << MessageBus::missing();
    makeRuntimeFolder(geteuid());
    // The installed file has a capability that a container forbids; its platform plugin wants the same name.
    const auto copy = directory_.path() / "bin" / "kwin_wayland";
    std::filesystem::create_directory(copy.parent_path());
    std::filesystem::copy_file(program, copy);
    compositor_ = ChildProcess(
        {copy, "--virtual", "--no-lockscreen", "--width", "800", "--height", "600", "--socket", "wayland-k"},
        {.environment = {{"XDG_RUNTIME_DIR", runtime_},
                         {"DBUS_SESSION_BUS_ADDRESS", bus_.address()},
                         {"KWIN_COMPOSE", "Q"},
                         {"HOME", directory_.path()}},
         .outputFile = directory_.path() / "kwin.log"});
    ASSERT_TRUE(waitUntil([&] {
      return std::filesystem::exists(runtime_ / "wayland-k") && bus_.hasName("org.kde.KWin");
    })) << readFile(directory_.path() / "kwin.log");
    startDesktop("wayland-k", bus_.address());
  }
  MessageBus bus_;
};

TEST_F(KWinDesktop, aScriptInsideTellsTheActiveWindow) {
  ASSERT_TRUE(waitUntil([&] { return desktop_->foreground().isSupported(); }));
  open("wayland-k", "org.example.Alpha");
  EXPECT_TRUE(waitUntil([&] { return isFront("org.example.Alpha"); }));
  open("wayland-k", "org.example.Beta");
  EXPECT_TRUE(waitUntil([&] { return isFront("org.example.Beta"); }));
  windows_.pop_back();
  EXPECT_TRUE(waitUntil([&] { return isFront("org.example.Alpha"); }));
  EXPECT_EQ(announced_, (std::vector<std::string>{"org.example.Alpha", "org.example.Beta", "org.example.Alpha"}));
}

TEST_F(KWinDesktop, theIdleTimeBeginsAfterASecond) {
  EXPECT_TRUE(waitUntil([&] { return desktop_->idle().idleSeconds().value_or(0) > 1.3; }));
}

}  // namespace
}  // namespace quillmeter::test
