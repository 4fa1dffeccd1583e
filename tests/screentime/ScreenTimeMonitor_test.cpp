#include "screentime/ScreenTimeMonitor.h"

#include <cerrno>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/L10n.h"
#include "screentime/ScreenTimeFixture.h"

namespace quillmeter::test {
namespace {

const std::string saveFailure = "活动记录保存失败，计时已停止。请重试或清除记录。";
const std::string readFailure = "活动记录读取失败，原文件已保留。可清除记录后重新开启。";
const std::string clearFailure = "清除失败，请检查本地存储后重试。";
const std::string heldByOther = "另一个正在运行的程序已在记录屏幕使用时间，此处不计时。";

// A monitor that records the editor.
struct Recording : ScreenTimeFixture {
  Recording() {
    foreground.application = application("editor");
    monitor.start();
    monitor.setEnabled(true);
  }
  double total() const {
    double seconds = 0;
    for (const auto& span : monitor.spans()) seconds += span.seconds();
    return seconds;
  }
  ScreenTimeMonitor monitor{dependencies()};
};

TEST(ScreenTimeMonitor, nothingHappensUntilItIsSwitchedOn) {
  ScreenTimeFixture desktop;
  desktop.foreground.application = application("editor");
  ScreenTimeMonitor monitor(desktop.dependencies());
  monitor.start();
  desktop.pass(120);
  monitor.willTerminate();
  EXPECT_TRUE(monitor.spans().empty());
  EXPECT_EQ(desktop.store.saves, 0);
  EXPECT_EQ(desktop.store.claims, 0);
  EXPECT_EQ(desktop.askedForSources, 0) << "without recording nobody looks at the desktop";
  const Subscription page = monitor.observe([] {});
  EXPECT_EQ(desktop.askedForSources, 1) << "what is known has to be there when somebody switches it on";
  desktop.pass(120);
  EXPECT_FALSE(desktop.events.announce || desktop.locks.announce || desktop.foreground.activated);
  EXPECT_EQ(desktop.foreground.reads, 0);
  monitor.setEnabled(true);
  EXPECT_TRUE(desktop.events.announce && desktop.locks.announce && desktop.foreground.activated);
  EXPECT_EQ(desktop.askedForSources, 1);
}

TEST(ScreenTimeMonitor, wakesUpOnceASecondWithToleranceWhileItRecords) {
  ScreenTimeFixture desktop;
  ScreenTimeMonitor monitor(desktop.dependencies());
  monitor.start();
  EXPECT_TRUE(desktop.timers.running().empty());
  monitor.setEnabled(true);
  monitor.start();
  EXPECT_EQ(desktop.timers.running(), (std::vector<ManualTimerFactory::Running>{{1.0, 0.1, true}}));
}

TEST(ScreenTimeMonitor, switchingOnRecordsAndStoresAtOnce) {
  Recording desktop;
  const Date start = desktop.clock.now();
  EXPECT_EQ(desktop.monitor.startedAt(), start);
  EXPECT_EQ(desktop.monitor.state(), "活跃中");
  EXPECT_EQ(desktop.monitor.currentApp(), app("editor"));
  EXPECT_EQ(desktop.store.stored, (ActivityArchive{1, start, true, {}}));
  desktop.pass(10);
  EXPECT_EQ(desktop.monitor.spans(), (std::vector<ActivitySpan>{{start, desktop.clock.now(), app("editor")}}));

  desktop.clock.advance(0.5);
  desktop.monotonic.advance(0.5);
  desktop.monitor.setEnabled(false);
  EXPECT_EQ(desktop.total(), 10.5) << "the last moment is credited";
  EXPECT_EQ(desktop.store.stored->spans, desktop.monitor.spans());
  EXPECT_FALSE(desktop.store.stored->enabled);
  EXPECT_EQ(desktop.monitor.currentApp(), std::nullopt);
  EXPECT_TRUE(desktop.timers.running().empty()) << "nothing wakes the machine for it";

  desktop.pass(10);
  desktop.monitor.setEnabled(true);
  EXPECT_EQ(desktop.monitor.startedAt(), start) << "the first time stays";
  desktop.pass(1);
  EXPECT_EQ(desktop.total(), 11.5) << "the time in between is not credited";
}

TEST(ScreenTimeMonitor, savesEveryThirtySecondsAndOnlyWhatIsNew) {
  Recording desktop;
  const int atStart = desktop.store.saves;
  desktop.pass(29);
  EXPECT_EQ(desktop.store.saves, atStart);
  desktop.pass(1);
  EXPECT_EQ(desktop.store.saves, atStart + 1);
  desktop.pass(30);
  EXPECT_EQ(desktop.store.saves, atStart + 2);
  desktop.idle.seconds = 100;
  desktop.pass(30);
  EXPECT_EQ(desktop.store.saves, atStart + 3) << "the second before the user left";
  desktop.pass(600);
  EXPECT_EQ(desktop.store.saves, atStart + 3) << "the record has not changed";
  desktop.store.asLeft = false;
  desktop.pass(30);
  EXPECT_EQ(desktop.store.saves, atStart + 4) << "somebody else changed or removed the file";
}

TEST(ScreenTimeMonitor, anActivationSamplesAtOnce) {
  Recording desktop;
  const Date start = desktop.clock.now();
  desktop.pass(2);
  desktop.clock.advance(0.4);
  desktop.monotonic.advance(0.4);
  desktop.foreground.activate(application("browser"));
  EXPECT_EQ(desktop.monitor.currentApp(), app("browser"));
  desktop.pass(1);
  EXPECT_EQ(desktop.monitor.spans(),
            (std::vector<ActivitySpan>{{start, Date{start.microseconds + 2'400'000}, app("editor")},
                                       {Date{start.microseconds + 2'400'000}, desktop.clock.now(), app("browser")}}));
}

TEST(ScreenTimeMonitor, applicationsWithoutIdentifierAreToldApartByProcessAndLaunch) {
  Recording desktop;
  desktop.foreground.activate({std::nullopt, "tool", 42, 1'700'000'000.25});
  EXPECT_EQ(desktop.monitor.currentApp(), (ActivityApp{"pid:42:1700000000.25", "tool"}));
  desktop.foreground.activate({"", std::nullopt, 42, std::nullopt});
  EXPECT_EQ(desktop.monitor.currentApp(), (ActivityApp{"pid:42:0.0", "pid:42:0.0"}));
  desktop.foreground.activate({"org.example.x", std::nullopt, 42, std::nullopt});
  EXPECT_EQ(desktop.monitor.currentApp(), (ActivityApp{"org.example.x", "org.example.x"}));
}

TEST(ScreenTimeMonitor, theStateNamesTheFirstReasonThatHolds) {
  struct Case {
    std::function<void(Recording&)> arrange;
    const char* state;
    bool counts;
  };
  const Case cases[] = {
      {[](Recording&) {}, "活跃中", true},
      {[](Recording& d) { d.idle.seconds = 59.9; }, "活跃中", true},
      {[](Recording& d) { d.idle.seconds = 60; }, "空闲中", false},
      {[](Recording& d) { d.idle.seconds.reset(); }, "活动状态不可用", false},
      {[](Recording& d) { d.idle.seconds = -1; }, "活动状态不可用", false},
      {[](Recording& d) { d.foreground.supported = false; }, "活动状态不可用", false},
      {[](Recording& d) {
         d.events.announce(SessionEvent::displaysDidSleep);
         d.idle.seconds.reset();
       },
       "当前不计时", false},
      {[](Recording& d) { d.events.announce(SessionEvent::sessionDidResignActive); }, "当前不计时", false},
      {[](Recording& d) { d.events.announce(SessionEvent::willSleep); }, "当前不计时", false},
      {[](Recording& d) {
         d.locks.registry.reset();
         d.events.announce(SessionEvent::willSleep);
       },
       "锁屏状态不可用", false},
      {[](Recording& d) {
         d.locks.registry.reset();
         d.locks.announce(false);
       },
       "活跃中", true},
      {[](Recording& d) {
         d.locks.session = true;
         d.events.announce(SessionEvent::willSleep);
       },
       "已锁屏", false},
  };
  for (const auto& [arrange, state, counts] : cases) {
    Recording desktop;
    arrange(desktop);
    desktop.pass(1);
    const double before = desktop.total();
    desktop.pass(1);
    EXPECT_EQ(desktop.monitor.state(), state);
    EXPECT_EQ(desktop.total() - before, counts ? 1 : 0) << state;
    EXPECT_EQ(desktop.monitor.currentApp().has_value(), counts) << state;
  }
}

TEST(ScreenTimeMonitor, sleepDisplaysAndSessionPauseWithABoundaryAndASave) {
  const std::pair<SessionEvent, SessionEvent> pairs[] = {
      {SessionEvent::willSleep, SessionEvent::didWake},
      {SessionEvent::displaysDidSleep, SessionEvent::displaysDidWake},
      {SessionEvent::sessionDidResignActive, SessionEvent::sessionDidBecomeActive},
  };
  for (const auto& [pause, resume] : pairs) {
    Recording desktop;
    desktop.pass(5);
    const int saves = desktop.store.saves;
    desktop.events.announce(pause);
    EXPECT_EQ(desktop.store.saves, saves + 1);
    EXPECT_EQ(desktop.total(), 5);
    desktop.pass(20);
    EXPECT_EQ(desktop.total(), 5);
    desktop.clock.advance(0.5);
    desktop.monotonic.advance(0.5);
    desktop.events.announce(resume);
    EXPECT_EQ(desktop.total(), 5) << "nothing is credited across the boundary";
    EXPECT_EQ(desktop.monitor.state(), "活跃中");
    desktop.pass(3);
    EXPECT_EQ(desktop.total(), 8);
  }
}

TEST(ScreenTimeMonitor, everyReasonToPauseHasToEnd) {
  Recording desktop;
  desktop.events.announce(SessionEvent::willSleep);
  desktop.events.announce(SessionEvent::displaysDidSleep);
  desktop.events.announce(SessionEvent::didWake);
  desktop.pass(5);
  EXPECT_EQ(desktop.total(), 0);
  desktop.events.announce(SessionEvent::displaysDidWake);
  desktop.pass(5);
  EXPECT_EQ(desktop.total(), 5);
}

TEST(ScreenTimeMonitor, sleepOnAStandingMonotonicClockCreditsNothing) {
  Recording desktop;
  desktop.pass(5);
  desktop.clock.advance(8 * 3'600);  // no event came, the timer fires a second later
  desktop.pass(1);
  EXPECT_EQ(desktop.total(), 5);
  desktop.pass(1);
  EXPECT_EQ(desktop.total(), 6);
}

TEST(ScreenTimeMonitor, aLockEndsTheCountingEvenWhereTheSourcesAreLateAndTheWindowKeepsTheFocus) {
  Recording desktop;
  desktop.pass(5);
  const int saves = desktop.store.saves;
  desktop.locks.announce(true);
  EXPECT_EQ(desktop.monitor.state(), "已锁屏");
  EXPECT_EQ(desktop.store.saves, saves + 1);
  desktop.pass(1);
  desktop.locks.registry = true;
  desktop.pass(3);
  EXPECT_EQ(desktop.total(), 5);
  desktop.locks.registry = false;  // unlocked; the announcement comes after
  desktop.pass(1);
  EXPECT_EQ(desktop.monitor.state(), "活跃中");
  EXPECT_EQ(desktop.total(), 5);
  desktop.clock.advance(0.5);
  desktop.monotonic.advance(0.5);
  desktop.locks.announce(false);
  EXPECT_EQ(desktop.total(), 5) << "an announced unlock is a boundary";
  desktop.pass(2);
  EXPECT_EQ(desktop.total(), 7);
}

TEST(ScreenTimeMonitor, theEndOfTheProgramStoresTheLastMoment) {
  Recording desktop;
  desktop.pass(7);
  desktop.clock.advance(0.25);
  desktop.monotonic.advance(0.25);
  desktop.monitor.willTerminate();
  ASSERT_EQ(desktop.store.stored->spans.size(), 1U);
  EXPECT_EQ(desktop.store.stored->spans[0].seconds(), 7.25);
}

TEST(ScreenTimeMonitor, aStoredRecordIsRestoredAndGoesOn) {
  ScreenTimeFixture desktop;
  desktop.foreground.application = application("editor");
  const Date now = desktop.clock.now();
  const std::vector<ActivitySpan> stored{
      {Date{now.microseconds - 2'000'000}, Date{now.microseconds - 1'000'000}, app("browser")}};
  desktop.store.stored = ActivityArchive{1, Date{0}, true, stored};
  ScreenTimeMonitor monitor(desktop.dependencies());
  EXPECT_TRUE(monitor.enabled());
  EXPECT_EQ(monitor.startedAt(), Date{0});
  EXPECT_EQ(monitor.spans(), stored);
  monitor.start();
  desktop.pass(3);
  EXPECT_EQ(monitor.spans().size(), 2U);
  EXPECT_EQ(monitor.spans()[1].seconds(), 2) << "the first tick only begins";
}

TEST(ScreenTimeMonitor, keepsThirtyNaturalDays) {
  ScreenTimeFixture desktop;
  desktop.calendar = *Calendar::forZone("America/New_York", 0);
  const auto localTime = [&](int month, int day, int minutes) {
    return Date{desktop.calendar.dateFrom(2026, month, day)->microseconds + minutes * 60 * Date::microsecondsPerSecond};
  };
  // 30 days before the 31st of March, across the change to summer time: the 2nd is the first day that is kept.
  desktop.store.stored = ActivityArchive{1,
                                         Date{0},
                                         true,
                                         {{localTime(3, 1, 600), localTime(3, 1, 660), app("gone")},
                                          {localTime(3, 1, 1430), localTime(3, 2, 5), app("cut")},
                                          {localTime(3, 2, 5), localTime(3, 2, 10), app("kept")}}};
  desktop.clock.set(localTime(3, 31, 10));
  ScreenTimeMonitor monitor(desktop.dependencies());
  monitor.start();
  desktop.pass(1);
  EXPECT_EQ(monitor.spans(), (std::vector<ActivitySpan>{{localTime(3, 2, 0), localTime(3, 2, 5), app("cut")},
                                                        {localTime(3, 2, 5), localTime(3, 2, 10), app("kept")}}));
  EXPECT_EQ(desktop.store.stored->spans, monitor.spans());
}

TEST(ScreenTimeMonitor, aFailedSaveStopsTheCountingUntilTheUserRetries) {
  Recording desktop;
  desktop.pass(29);
  desktop.store.saveOutcome = ArchiveOutcome::failed;
  desktop.pass(1);
  EXPECT_EQ(desktop.monitor.storageError(), saveFailure);
  EXPECT_TRUE(desktop.monitor.canRetrySave());
  EXPECT_EQ(desktop.monitor.currentApp(), std::nullopt);
  EXPECT_EQ(desktop.total(), 30);
  const int saves = desktop.store.saves;
  desktop.pass(60);
  desktop.events.announce(SessionEvent::displaysDidSleep);
  desktop.events.announce(SessionEvent::displaysDidWake);
  EXPECT_EQ(desktop.total(), 30);
  EXPECT_EQ(desktop.store.saves, saves) << "nothing is retried by itself";

  desktop.monitor.retrySave();
  EXPECT_EQ(desktop.monitor.storageError(), saveFailure);
  desktop.store.saveOutcome = ArchiveOutcome::done;
  desktop.monitor.retrySave();
  EXPECT_EQ(desktop.monitor.storageError(), std::nullopt);
  EXPECT_FALSE(desktop.monitor.canRetrySave());
  EXPECT_EQ(desktop.store.stored->spans, desktop.monitor.spans());
  desktop.pass(5);
  EXPECT_EQ(desktop.total(), 35);
}

TEST(ScreenTimeMonitor, itsTextsFollowAChangeOfLanguageAlsoWhileNothingIsCounted) {
  Recording desktop;
  desktop.store.saveOutcome = ArchiveOutcome::failed;
  desktop.pass(30);
  L10n::install([](std::string_view id) { return "en:" + std::string(id); });
  EXPECT_EQ(desktop.monitor.storageError(), "en:" + saveFailure);
  EXPECT_EQ(desktop.monitor.state(), "en:当前不计时");
  L10n::install({});
  EXPECT_EQ(desktop.monitor.storageError(), saveFailure);
}

TEST(ScreenTimeMonitor, clearingAfterAFailedSaveGoesOnWithAnEmptyRecord) {
  Recording desktop;
  desktop.store.saveOutcome = ArchiveOutcome::failed;
  desktop.pass(30);
  desktop.store.saveOutcome = ArchiveOutcome::done;
  desktop.monitor.clear();
  EXPECT_EQ(desktop.monitor.storageError(), std::nullopt);
  EXPECT_TRUE(desktop.monitor.spans().empty());
  EXPECT_EQ(desktop.store.stored, std::nullopt);
  EXPECT_EQ(desktop.monitor.startedAt(), desktop.clock.now());
  desktop.pass(60);
  EXPECT_EQ(desktop.total(), 59);
  EXPECT_TRUE(desktop.store.stored && desktop.store.stored->validate());
}

TEST(ScreenTimeMonitor, aRecordThatCannotBeReadIsKeptUntilItIsCleared) {
  ScreenTimeFixture desktop;
  desktop.foreground.application = application("editor");
  desktop.store.loadError = EBADMSG;
  ScreenTimeMonitor monitor(desktop.dependencies());
  monitor.start();
  EXPECT_EQ(monitor.storageError(), readFailure);
  EXPECT_FALSE(monitor.canRetrySave());
  monitor.setEnabled(true);
  monitor.retrySave();
  monitor.setEnabled(false);
  EXPECT_FALSE(desktop.events.announce) << "nothing to react to";
  desktop.pass(60);
  monitor.willTerminate();
  EXPECT_FALSE(monitor.enabled());
  EXPECT_EQ(desktop.store.saves, 0);
  EXPECT_EQ(monitor.storageError(), readFailure);

  monitor.clear();
  EXPECT_EQ(monitor.storageError(), std::nullopt);
  monitor.setEnabled(true);
  desktop.pass(2);
  EXPECT_EQ(monitor.spans().size(), 1U);
}

TEST(ScreenTimeMonitor, aFailedClearingKeepsTheRecord) {
  Recording desktop;
  desktop.pass(5);
  desktop.store.removeOutcome = ArchiveOutcome::failed;
  desktop.monitor.clear();
  EXPECT_EQ(desktop.monitor.storageError(), clearFailure);
  EXPECT_EQ(desktop.total(), 5);
  desktop.pass(5);
  EXPECT_EQ(desktop.total(), 5) << "no counting while the error stands";
  desktop.monitor.retrySave();
  EXPECT_EQ(desktop.monitor.storageError(), std::nullopt);
  desktop.pass(5);
  EXPECT_EQ(desktop.total(), 10);
}

TEST(ScreenTimeMonitor, clearingWhileOffLeavesNothingBehind) {
  Recording desktop;
  desktop.pass(5);
  desktop.monitor.setEnabled(false);
  desktop.monitor.clear();
  EXPECT_EQ(desktop.monitor.startedAt(), std::nullopt);
  const int saves = desktop.store.saves;
  desktop.monitor.willTerminate();
  EXPECT_EQ(desktop.store.saves, saves);
  EXPECT_EQ(desktop.store.stored, std::nullopt);
}

TEST(ScreenTimeMonitor, theSecondProgramDoesNotRecordAndTakesOverOnRequest) {
  ScreenTimeFixture desktop;
  desktop.foreground.application = application("editor");
  desktop.store.stored = ActivityArchive{1, Date{0}, true, {}};
  desktop.store.claimOutcome = ArchiveOutcome::heldByOther;
  ScreenTimeMonitor monitor(desktop.dependencies());
  monitor.start();
  EXPECT_EQ(monitor.storageError(), heldByOther);
  EXPECT_EQ(monitor.state(), "当前不计时");
  desktop.pass(60);
  monitor.willTerminate();
  EXPECT_TRUE(monitor.spans().empty());
  EXPECT_EQ(desktop.store.saves, 0);

  // The first has recorded meanwhile and ended.
  const std::vector<ActivitySpan> others{{Date{1'000'000}, Date{2'000'000}, app("browser")}};
  desktop.clock.set(Date{10'000'000});
  desktop.store.stored = ActivityArchive{1, Date{0}, true, others};
  desktop.store.asLeft = false;
  desktop.store.claimOutcome = ArchiveOutcome::done;
  monitor.retrySave();
  EXPECT_EQ(monitor.storageError(), std::nullopt);
  EXPECT_EQ(monitor.spans(), others);
  desktop.pass(2);
  EXPECT_EQ(monitor.spans().size(), 2U);
}

TEST(ScreenTimeMonitor, switchingOffBesideAnotherProgramLeavesItsRecordAlone) {
  ScreenTimeFixture desktop;
  desktop.store.stored = ActivityArchive{1, Date{0}, true, {}};
  desktop.store.claimOutcome = ArchiveOutcome::heldByOther;
  ScreenTimeMonitor monitor(desktop.dependencies());
  monitor.setEnabled(false);
  EXPECT_EQ(monitor.storageError(), std::nullopt);
  EXPECT_TRUE(desktop.store.stored->enabled);
  EXPECT_EQ(desktop.store.saves, 0);
}

TEST(ScreenTimeMonitor, aRightToWriteThatIsLostWhileRunningStopsTheRecord) {
  Recording desktop;
  desktop.store.saveOutcome = ArchiveOutcome::heldByOther;
  desktop.store.claimOutcome = ArchiveOutcome::heldByOther;
  desktop.pass(30);
  EXPECT_EQ(desktop.monitor.storageError(), heldByOther);
  const int saves = desktop.store.saves;
  desktop.pass(60);
  desktop.monitor.willTerminate();
  EXPECT_EQ(desktop.store.saves, saves);
}

TEST(ScreenTimeMonitor, changesAreToldOnlyWhereThereAreAny) {
  Recording desktop;
  int changes = 0;
  const auto subscription = desktop.monitor.observe([&] { ++changes; });
  desktop.pass(3);
  EXPECT_EQ(changes, 3);
  desktop.idle.seconds = 300;
  desktop.pass(1);
  changes = 0;
  desktop.pass(60);
  EXPECT_EQ(changes, 0);
  desktop.locks.announce(true);
  EXPECT_GT(changes, 0);
}

}  // namespace
}  // namespace quillmeter::test
