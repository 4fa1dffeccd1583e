#include <algorithm>
#include <csignal>
#include <ctime>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <xcb/dpms.h>
#include <xcb/xcb.h>

#include "screentime/desktop/EventLoop.h"
#include "screentime/desktop/XServer.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter::test {
namespace {

// A real X server and, as far as a test wants it, a real window manager with real windows.
class X11Desktop : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* program : {"Xvfb", "openbox", "xdotool"}) {
      if (installedProgram(program).empty()) GTEST_SKIP() << program << " is not installed";
    }
    ASSERT_FALSE(server_.display().empty()) << "Xvfb did not start";
    directory_.write(
        "data/applications/org.example.Alpha.desktop",
        "[Desktop Entry]\nType=Application\nName=Alpha Writer\nName[zh_CN]=阿尔法\nStartupWMClass=AlphaWindow\n");
  }
  void startDesktop() {
    LinuxDesktopPlaces places;
    places.x11Display = server_.display();
    places.locale = "zh_CN.UTF-8";
    places.dataHome = directory_.path() / "data";
    places.dataDirectories = {places.dataHome};
    desktop_ = std::make_unique<LinuxDesktop>(places, machinery_.descriptors, machinery_.timers, machinery_.monotonic);
    desktop_->foreground().setActivationHandler(
        [this](const RunningApplication& application) { announced_.push_back(application); });
  }
  void startWindowManager() {
    windowManager_ = server_.startWindowManager(directory_.path());
    ASSERT_TRUE(waitUntil([&] { return desktop_->foreground().isSupported(); })) << "openbox did not start";
  }
  // Opens a window and gives its number once it is mapped.
  std::string open(const std::string& instance, const std::string& windowClass) {
    const auto output = directory_.path() / ("window" + std::to_string(windows_.size()));
    windows_.push_back(server_.openWindow(instance, windowClass, output));
    EXPECT_TRUE(waitUntil([&] { return readFile(output).ends_with('\n'); }));
    const std::string number = readFile(output);
    return number.substr(0, number.find('\n'));
  }
  void activate(const std::string& window) { EXPECT_EQ(server_.xdotool({"windowactivate", window}), 0); }
  bool isFront(const std::string& id) {
    const auto front = desktop_->foreground().frontmost();
    return front && front->identifier == id;
  }

  TemporaryDirectory directory_;
  XServer server_;
  Machinery machinery_;
  std::unique_ptr<LinuxDesktop> desktop_;
  ChildProcess windowManager_;
  std::vector<ChildProcess> windows_;
  std::vector<RunningApplication> announced_;
};

TEST_F(X11Desktop, followsTheActiveWindowByItsDesktopEntryOrItsClass) {
  startDesktop();
  startWindowManager();
  const std::string alpha = open("alpha", "AlphaWindow");
  const std::string beta = open("beta", "Beta");
  activate(alpha);
  ASSERT_TRUE(waitUntil([&] { return isFront("org.example.Alpha"); }));
  EXPECT_EQ(desktop_->foreground().frontmost()->name, "阿尔法");
  announced_.clear();
  for (int round = 0; round < 5; ++round) {
    activate(beta);
    ASSERT_TRUE(waitUntil([&] { return isFront("Beta"); }));
    activate(alpha);
    ASSERT_TRUE(waitUntil([&] { return isFront("org.example.Alpha"); }));
  }
  // The moment without any window in between is no activation.
  ASSERT_EQ(announced_.size(), 10U);
  for (std::size_t index = 0; index < announced_.size(); ++index) {
    EXPECT_EQ(announced_[index].identifier, index % 2 == 0 ? "Beta" : "org.example.Alpha");
  }
}

TEST_F(X11Desktop, aWindowWithoutClassIsItsProcess) {
  startDesktop();
  startWindowManager();
  activate(open("", "-"));
  ASSERT_TRUE(waitUntil([&] { return desktop_->foreground().frontmost().has_value(); }));
  const auto front = *desktop_->foreground().frontmost();
  EXPECT_EQ(front.identifier, std::nullopt);
  EXPECT_EQ(front.processId, windows_[0].pid());
  EXPECT_EQ(front.name, std::string(QUILLMETER_X11_TEST_WINDOW)
                            .substr(std::string(QUILLMETER_X11_TEST_WINDOW).rfind('/') + 1)
                            .substr(0, 15));
  ASSERT_TRUE(front.launchTime);
  EXPECT_NEAR(*front.launchTime, static_cast<double>(std::time(nullptr)), 60);
}

TEST_F(X11Desktop, anEntryThatIsInstalledMeanwhileIsFound) {
  startDesktop();
  startWindowManager();
  const std::string gamma = open("gamma", "Gamma");
  activate(gamma);
  ASSERT_TRUE(waitUntil([&] { return isFront("Gamma"); }));
  directory_.write("data/applications/net.example.gamma.desktop",
                   "[Desktop Entry]\nType=Application\nName=Gamma Ray\n");
  activate(open("beta", "Beta"));
  ASSERT_TRUE(waitUntil([&] { return isFront("Beta"); }));
  activate(gamma);
  EXPECT_TRUE(waitUntil([&] { return isFront("net.example.gamma"); }));
}

TEST_F(X11Desktop, nothingIsInFrontOnAnEmptyDesktop) {
  startDesktop();
  startWindowManager();
  activate(open("beta", "Beta"));
  ASSERT_TRUE(waitUntil([&] { return isFront("Beta"); }));
  windows_[0].end();
  EXPECT_TRUE(waitUntil([&] { return !desktop_->foreground().frontmost(); }));
  EXPECT_TRUE(desktop_->foreground().isSupported());
}

TEST_F(X11Desktop, withoutAWindowManagerTheForegroundIsUnknown) {
  startDesktop();
  EXPECT_FALSE(desktop_->foreground().isSupported());
  startWindowManager();
  windowManager_.end();
  EXPECT_TRUE(waitUntil([&] { return !desktop_->foreground().isSupported(); }));
  startWindowManager();
}

TEST_F(X11Desktop, theIdleTimeGrowsUntilTheNextInput) {
  startDesktop();
  double before = 0;
  ASSERT_TRUE(waitUntil([&] { return (before = desktop_->idle().idleSeconds().value_or(0)) > 1.2; }));
  EXPECT_EQ(server_.xdotool({"mousemove", "10", "10"}), 0);
  EXPECT_EQ(server_.xdotool({"mousemove", "20", "20"}), 0);
  EXPECT_LT(desktop_->idle().idleSeconds().value(), before);
}

TEST_F(X11Desktop, displaysThatAreSwitchedOffAreTold) {
  startDesktop();
  std::vector<SessionEvent> events;
  desktop_->events().setEventHandler([&](SessionEvent event) { events.push_back(event); });
  xcb_connection_t* connection = xcb_connect(server_.display().c_str(), nullptr);
  const auto* extension = xcb_get_extension_data(connection, &xcb_dpms_id);
  if (extension == nullptr || extension->present == 0) {
    xcb_disconnect(connection);
    GTEST_SKIP() << "this X server has no DPMS";
  }
  xcb_dpms_enable(connection);
  xcb_dpms_force_level(connection, XCB_DPMS_DPMS_MODE_OFF);
  xcb_flush(connection);
  const auto asked = [&](std::size_t count) {
    desktop_->idle().idleSeconds();
    return events.size() >= count;
  };
  EXPECT_TRUE(waitUntil([&] { return asked(1); }));
  xcb_dpms_force_level(connection, XCB_DPMS_DPMS_MODE_ON);
  xcb_flush(connection);
  EXPECT_TRUE(waitUntil([&] { return asked(2); }));
  xcb_disconnect(connection);
  EXPECT_EQ(events, (std::vector{SessionEvent::displaysDidSleep, SessionEvent::displaysDidWake}));
}

TEST_F(X11Desktop, aServerThatEndsLeavesEverythingUnknown) {
  startDesktop();
  startWindowManager();
  activate(open("beta", "Beta"));
  ASSERT_TRUE(waitUntil([&] { return isFront("Beta"); }));
  server_.process().end();
  EXPECT_TRUE(waitUntil([&] { return !desktop_->foreground().isSupported() && !desktop_->idle().idleSeconds(); }));
  EXPECT_EQ(desktop_->foreground().frontmost(), std::nullopt);
}

}  // namespace
}  // namespace quillmeter::test
