#include "screentime/model/ScreenLockTracker.h"

#include <gtest/gtest.h>

namespace quillmeter {
namespace {

constexpr std::optional<bool> unknown;

TEST(ScreenLockTracker, aLockThatNobodyAnnouncedFollowsTheSources) {
  struct Case {
    std::optional<bool> registry;
    std::optional<bool> session;
    std::optional<bool> expected;
  };
  for (const auto& [registry, session, expected] :
       {Case{unknown, unknown, unknown}, Case{false, unknown, false}, Case{unknown, false, false},
        Case{false, false, false}, Case{true, unknown, true}, Case{unknown, true, true}, Case{true, false, true},
        Case{false, true, true}, Case{true, true, true}}) {
    EXPECT_EQ(ScreenLockTracker().resolve(registry, session), expected);
  }
}

TEST(ScreenLockTracker, anAnnouncedLockHoldsUntilTheSourcesHaveConfirmedItOnce) {
  ScreenLockTracker tracker;
  tracker.notify(true);
  EXPECT_EQ(tracker.resolve(false, false), true) << "the sources are late";
  EXPECT_EQ(tracker.resolve(true, false), true);
  EXPECT_EQ(tracker.resolve(false, false), false) << "confirmed before: the sources are right now";
}

TEST(ScreenLockTracker, anAnnouncedUnlockIsBelievedOnceNoSourceSaysLocked) {
  ScreenLockTracker tracker;
  tracker.notify(true);
  tracker.notify(false);
  EXPECT_EQ(tracker.resolve(true, unknown), true) << "a source that still says locked wins";
  EXPECT_EQ(tracker.resolve(false, unknown), false);
}

TEST(ScreenLockTracker, withoutSourcesTheAnnouncementIsAllThereIs) {
  ScreenLockTracker tracker;
  tracker.notify(true);
  EXPECT_EQ(tracker.resolve(unknown, unknown), true);
  tracker.notify(false);
  EXPECT_EQ(tracker.resolve(unknown, unknown), false);
}

TEST(ScreenLockTracker, aSecondLockHasToBeConfirmedAnew) {
  ScreenLockTracker tracker;
  tracker.notify(true);
  tracker.resolve(true, true);
  tracker.notify(true);
  EXPECT_EQ(tracker.resolve(false, false), true);
}

}  // namespace
}  // namespace quillmeter
