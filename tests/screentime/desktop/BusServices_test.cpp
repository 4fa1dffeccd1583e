#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <QDBusArgument>
#include <QDBusObjectPath>

#include "screentime/desktop/EventLoop.h"
#include "screentime/desktop/MessageBus.h"

namespace quillmeter::test {
namespace {

const std::string login = "org.freedesktop.login1";
const std::string loginPath = "/org/freedesktop/login1";
const std::string sessionPath = "/org/freedesktop/login1/session/auto";
const std::string sessionInterface = "org.freedesktop.login1.Session";
const std::string mockInterface = "org.freedesktop.DBus.Mock";

// The services of a session, mocked, behind a desktop without any display.
class BusServices : public testing::Test {
 protected:
  void SetUp() override {
    if (!MessageBus::missing().empty()) GTEST_SKIP() << MessageBus::missing();
    ASSERT_FALSE(bus_.address().empty());
  }
  void startLogin() {
    login_ = bus_.startTemplate("logind", login);
    bus_.call(login, loginPath, mockInterface, "AddSession", {"auto", "seat0", 1000U, "tester", true});
  }
  void startDesktop() {
    LinuxDesktopPlaces places;
    places.sessionBusAddress = bus_.address();
    places.systemBusAddress = bus_.address();
    desktop_ = std::make_unique<LinuxDesktop>(places, machinery_.descriptors, machinery_.timers, machinery_.monotonic);
    desktop_->locks().setLockHandler([this](bool locked) { announcedLocks_.push_back(locked); });
    desktop_->events().setEventHandler([this](SessionEvent event) { events_.push_back(event); });
  }
  void setActive(bool active) {
    bus_.call(login, sessionPath, mockInterface, "UpdateProperties",
              {QString::fromStdString(sessionInterface), QVariantMap{{QStringLiteral("Active"), active}}});
  }
  void prepareForSleep(bool asleep) {
    bus_.emitSignal(login, loginPath, login + ".Manager", "PrepareForSleep", "b", {asleep});
  }
  std::size_t sleepDelays() {
    const auto list = bus_.call(login, loginPath, login + ".Manager", "ListInhibitors", {}).value<QDBusArgument>();
    std::size_t count = 0;
    for (list.beginArray(); !list.atEnd(); ++count) {
      list.beginStructure();
      QString text;
      uint number = 0;
      list >> text >> text >> text >> text >> number >> number;
      list.endStructure();
    }
    list.endArray();
    return count;
  }

  MessageBus bus_;
  Machinery machinery_;
  ChildProcess login_;
  std::unique_ptr<LinuxDesktop> desktop_;
  std::vector<bool> announcedLocks_;
  std::vector<SessionEvent> events_;
};

TEST_F(BusServices, withoutServicesEverythingIsUnknown) {
  startDesktop();
  EXPECT_FALSE(waitUntil([&] { return desktop_->locks().registryLocked() || desktop_->locks().sessionLocked(); }, 0.3));
  EXPECT_EQ(desktop_->idle().idleSeconds(), std::nullopt);
  EXPECT_FALSE(desktop_->foreground().isSupported());
  EXPECT_EQ(desktop_->foreground().frontmost(), std::nullopt);
}

TEST_F(BusServices, withoutBusesEverythingIsUnknown) {
  desktop_ = std::make_unique<LinuxDesktop>(LinuxDesktopPlaces(), machinery_.descriptors, machinery_.timers,
                                            machinery_.monotonic);
  EXPECT_EQ(desktop_->locks().registryLocked(), std::nullopt);
  EXPECT_EQ(desktop_->locks().sessionLocked(), std::nullopt);
  EXPECT_EQ(desktop_->idle().idleSeconds(), std::nullopt);
}

TEST_F(BusServices, theLoginManagerTellsOfLockSessionAndSleep) {
  startLogin();
  startDesktop();
  ASSERT_TRUE(waitUntil([&] { return desktop_->locks().registryLocked() == false; }));

  bus_.call(login, sessionPath, sessionInterface, "Lock", {});
  EXPECT_TRUE(waitUntil([&] { return announcedLocks_ == std::vector{true}; }));
  EXPECT_EQ(desktop_->locks().registryLocked(), false) << "the request is no lock yet";
  bus_.call(login, sessionPath, sessionInterface, "SetLockedHint", {true});
  EXPECT_TRUE(waitUntil([&] { return desktop_->locks().registryLocked() == true; }));
  bus_.call(login, sessionPath, sessionInterface, "SetLockedHint", {false});
  bus_.call(login, sessionPath, sessionInterface, "Unlock", {});
  EXPECT_TRUE(waitUntil([&] {
    return announcedLocks_ == std::vector{true, false} && desktop_->locks().registryLocked() == false;
  }));

  setActive(false);
  EXPECT_TRUE(waitUntil([&] { return events_ == std::vector{SessionEvent::sessionDidResignActive}; }));
  setActive(true);
  EXPECT_TRUE(waitUntil([&] { return events_.size() == 2 && events_[1] == SessionEvent::sessionDidBecomeActive; }));

  events_.clear();
  ASSERT_TRUE(waitUntil([&] { return sleepDelays() == 1; })) << "the machine waits for the record to be saved";
  prepareForSleep(true);
  EXPECT_TRUE(waitUntil([&] { return events_ == std::vector{SessionEvent::willSleep} && sleepDelays() == 0; }));
  prepareForSleep(false);
  EXPECT_TRUE(
      waitUntil([&] { return events_.size() == 2 && events_[1] == SessionEvent::didWake && sleepDelays() == 1; }));
}

TEST_F(BusServices, aSessionThatIsInactiveAtTheStartIsTold) {
  startLogin();
  setActive(false);
  startDesktop();
  EXPECT_TRUE(waitUntil([&] { return events_ == std::vector{SessionEvent::sessionDidResignActive}; }));
}

TEST_F(BusServices, aLoginManagerThatStartsAgainIsFoundAgain) {
  startLogin();
  startDesktop();
  ASSERT_TRUE(waitUntil([&] { return desktop_->locks().registryLocked() == false; }));
  login_.end();
  EXPECT_TRUE(waitUntil([&] { return !desktop_->locks().registryLocked(); }));
  login_ = bus_.startTemplate("logind", login);
  bus_.call(login, loginPath, mockInterface, "AddSession", {"auto", "seat0", 1000U, "tester", true});
  bus_.emitSignal(login, loginPath, login + ".Manager", "SessionNew", "so",
                  {"auto", QVariant::fromValue(QDBusObjectPath(QString::fromStdString(sessionPath)))});
  EXPECT_TRUE(waitUntil([&] { return desktop_->locks().registryLocked() == false; }));
}

TEST_F(BusServices, aScreenSaverTellsWhetherItIsActive) {
  const std::string service = "org.freedesktop.ScreenSaver";
  const std::string path = "/org/freedesktop/ScreenSaver";
  startDesktop();
  const ChildProcess mock = bus_.startMock(service, path, service);
  bus_.addMethod(service, path, service, "GetActive", "", "b", "ret = True");
  desktop_.reset();
  startDesktop();
  ASSERT_TRUE(waitUntil([&] { return desktop_->locks().sessionLocked() == true; }));
  bus_.emitSignal(service, path, service, "ActiveChanged", "b", {false});
  EXPECT_TRUE(
      waitUntil([&] { return desktop_->locks().sessionLocked() == false && announcedLocks_ == std::vector{false}; }));
  bus_.emitSignal(service, path, service, "ActiveChanged", "b", {true});
  EXPECT_TRUE(waitUntil([&] { return desktop_->locks().sessionLocked() == true && announcedLocks_.size() == 2; }));
}

TEST_F(BusServices, aScreenSaverThatCannotTellLeavesTheQuestionToTheNext) {
  const ChildProcess mute =
      bus_.startMock("org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver", "org.freedesktop.ScreenSaver");
  ChildProcess gnome = bus_.startTemplate("gnome_screensaver", "org.gnome.ScreenSaver");
  startDesktop();
  ASSERT_TRUE(waitUntil([&] { return desktop_->locks().sessionLocked() == false; }));
  bus_.call("org.gnome.ScreenSaver", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver", "SetActive", {true});
  EXPECT_TRUE(
      waitUntil([&] { return desktop_->locks().sessionLocked() == true && announcedLocks_ == std::vector{true}; }));
  gnome.end();
  EXPECT_TRUE(waitUntil([&] { return !desktop_->locks().sessionLocked(); }));
}

TEST_F(BusServices, theLockerOfASessionBehindAnotherIsNotConsulted) {
  const ChildProcess gnome = bus_.startTemplate("gnome_screensaver", "org.gnome.ScreenSaver");
  startLogin();
  startDesktop();
  ASSERT_TRUE(waitUntil([&] { return desktop_->locks().sessionLocked() == false; }));
  setActive(false);
  EXPECT_TRUE(waitUntil([&] { return !desktop_->locks().sessionLocked(); }));
}

TEST_F(BusServices, theIdleMonitorOfMutterCounts) {
  const std::string service = "org.gnome.Mutter.IdleMonitor";
  const std::string path = "/org/gnome/Mutter/IdleMonitor/Core";
  const ChildProcess mock = bus_.startMock(service, path, service);
  bus_.addMethod(service, path, service, "AddIdleWatch", "t", "u", "ret = 7");
  bus_.addMethod(service, path, service, "AddUserActiveWatch", "", "u", "ret = 8");
  startDesktop();
  ASSERT_TRUE(waitUntil([&] { return desktop_->idle().idleSeconds().has_value(); }));
  EXPECT_LE(desktop_->idle().idleSeconds().value(), 1.0);
  bus_.emitSignal(service, path, service, "WatchFired", "u", {7U});
  EXPECT_TRUE(waitUntil([&] { return desktop_->idle().idleSeconds().value() > 1.1; }));
  // The watch for activity is asked for only then, so the mock's signal may come too early at first.
  EXPECT_TRUE(waitUntil([&] {
    bus_.emitSignal(service, path, service, "WatchFired", "u", {8U});
    return desktop_->idle().idleSeconds().value() < 1.0;
  }));
}

}  // namespace
}  // namespace quillmeter::test
