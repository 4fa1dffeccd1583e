#include <functional>

#include <gtest/gtest.h>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include "ui/system/DesktopSession.h"
#include "ui/system/QtActivationPolicy.h"
#include "ui/system/WindowStates.h"

namespace quillmeter {
namespace {

bool waitUntil(const std::function<bool()>& condition) {
  return QTest::qWaitFor(condition, 20'000);
}

class QtActivationPolicyTest : public testing::Test {
 protected:
  void endManager(bool byForce) {
    auto& session = test::DesktopSession::current();
    byForce ? session.killManager() : session.endManager();
    states.forgetManager();
  }
  void startManager() { test::DesktopSession::current().startManager(); }
  // What the manager says at last, not on its way there.
  bool staysHidden(const QWidget& window) {
    return waitUntil([&] { return states.isHidden(window); }) && states.waitForManager() &&
           waitUntil([&] { return states.isHidden(window); });
  }
  bool staysListed(const QWidget& window) {
    return waitUntil([&] { return states.isListed(window); }) && states.waitForManager() &&
           waitUntil([&] { return states.isListed(window); });
  }

  test::WindowStates states;
  QtActivationPolicy policy;
};

TEST_F(QtActivationPolicyTest, keepsOpenAndLaterWindowsOffTheTaskbarUntilTheyAreListedAgain) {
  ASSERT_TRUE(states.waitForManager());
  QWidget open;
  open.show();
  ASSERT_TRUE(staysListed(open));
  ASSERT_TRUE(policy.setListed(false));
  EXPECT_TRUE(staysHidden(open));
  QWidget later;
  later.show();
  EXPECT_TRUE(staysHidden(later));
  ASSERT_TRUE(policy.setListed(true));
  EXPECT_TRUE(staysListed(open));
  EXPECT_TRUE(staysListed(later));
  policy.activate();
  EXPECT_TRUE(waitUntil([&] { return open.isActiveWindow() || later.isActiveWindow(); }));
}

TEST_F(QtActivationPolicyTest, holdsForWindowsThatOpenWhileTheWindowManagerStarts) {
  ASSERT_TRUE(policy.setListed(false));  // before any window, as at the program's start
  QWidget first;
  first.show();
  QWidget second;
  EXPECT_TRUE(waitUntil([&] {
    second.show();
    return states.managerRuns();
  }));
  QWidget third;
  third.show();
  for (const QWidget* window : {&first, &second, &third}) EXPECT_TRUE(staysHidden(*window));
}

TEST_F(QtActivationPolicyTest, changesThatFallIntoTheWindowManagersStartAreKept) {
  QWidget window;
  window.show();
  ASSERT_TRUE(policy.setListed(false));
  bool listed = false;
  EXPECT_TRUE(waitUntil([&] {
    policy.setListed(listed = !listed);
    return states.managerRuns();
  }));
  policy.setListed(false);
  EXPECT_TRUE(staysHidden(window));
  policy.setListed(true);
  EXPECT_TRUE(staysListed(window));
}

TEST_F(QtActivationPolicyTest, anotherWindowManagerIsToldToo) {
  for (const bool byForce : {false, true}) {
    ASSERT_TRUE(states.waitForManager());
    QWidget window;
    window.show();
    ASSERT_TRUE(staysListed(window));
    endManager(byForce);
    ASSERT_TRUE(policy.setListed(false));  // while there is none
    startManager();
    EXPECT_TRUE(staysHidden(window)) << byForce;
    endManager(byForce);
    startManager();
    EXPECT_TRUE(staysHidden(window)) << byForce;
    ASSERT_TRUE(policy.setListed(true));
    EXPECT_TRUE(staysListed(window)) << byForce;
  }
}

TEST_F(QtActivationPolicyTest, aWindowThatIsClosedAndShownAtOnceStaysOffTheTaskbar) {
  ASSERT_TRUE(states.waitForManager());
  ASSERT_TRUE(policy.setListed(false));
  QWidget window;
  window.show();
  for (int round = 0; round < 5; ++round) {
    ASSERT_TRUE(staysHidden(window)) << round;
    window.hide();
    window.show();  // before the manager has taken the state off the withdrawn window
  }
  EXPECT_TRUE(staysHidden(window));
}

}  // namespace
}  // namespace quillmeter
