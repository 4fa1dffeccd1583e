#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "screentime/ScreenTimeFixture.h"
#include "screentime/model/ActivitySummary.h"

namespace quillmeter::test {
namespace {

// A user and a machine that do things at random, and beside them a ledger that knows at every moment what is true:
// which application was in front, when the user last touched a key, whether the screen was locked. The ledger puts each
// stretch of wall time into one account; the monitor only sees what its sources tell it. All times are whole
// milliseconds.
class SimulatedDesktop {
 public:
  SimulatedDesktop(unsigned seed, Date start) : desktop_(start), random_(seed), start_(start), creditedUntil_(start) {
    desktop_.foreground.application = application("a");
    monitor_.start();
    monitor_.setEnabled(true);
    afterTick(false);
  }

  void run(int steps) {
    for (int step = 0; step < steps; ++step) {
      switch (random_() % 100) {
        case 0:
          toggle(displaysAsleep_, SessionEvent::displaysDidSleep, SessionEvent::displaysDidWake);
          break;
        case 1:
          toggle(sessionInactive_, SessionEvent::sessionDidResignActive, SessionEvent::sessionDidBecomeActive);
          break;
        case 2:
          sleepAndWake();
          break;
        case 3:
          toggleLock();
          break;
        case 4:
          jumpWallClock();
          break;
        case 5:
          standStill();
          break;
        case 6:
          away_ = !away_;
          break;
        case 7:
        case 8:
        case 9:
          activate();
          break;
        default:
          second();
          break;
      }
    }
    monitor_.willTerminate();
    afterTick(false);
  }

  void check() const {
    Date previousEnd = Date::distantPast();
    std::map<std::string, std::int64_t> recorded;
    std::int64_t total = 0;
    for (const ActivitySpan& span : monitor_.spans()) {
      EXPECT_LT(span.start, span.end);
      EXPECT_GE(span.start, previousEnd) << "spans overlap";
      previousEnd = span.end;
      recorded[span.app.id] += span.end.microseconds - span.start.microseconds;
      total += span.end.microseconds - span.start.microseconds;
    }
    EXPECT_EQ(recorded, credited_);
    EXPECT_EQ(total + idle_ + locked_ + gaps_ + wallJumps_, desktop_.clock.now().microseconds - start_.microseconds);
    EXPECT_GT(total, 0);
    EXPECT_EQ(desktop_.store.stored->spans, monitor_.spans());
  }

  const std::vector<ActivitySpan>& spans() const { return monitor_.spans(); }
  Date now() const { return desktop_.clock.now(); }

 private:
  static constexpr std::int64_t millisecond = 1'000;
  static constexpr std::int64_t idleLimit = 60'000'000;

  int upTo(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)) + 1; }
  bool available() const { return !displaysAsleep_ && !sessionInactive_ && !locked_now_; }

  // Time passes on both clocks; the user may touch a key on the way.
  void live(int milliseconds) {
    for (int passed = 0; passed < milliseconds;) {
      const int piece = std::min(milliseconds - passed, upTo(700));
      passed += piece;
      desktop_.clock.advance(piece / 1000.0);
      uptime_ += piece * millisecond;
      if (!away_ && random_() % 4 == 0) touch();
    }
    desktop_.monotonic.advance(static_cast<double>(uptime_) / 1e6 - (desktop_.monotonic.uptime() - 1000));
  }

  void touch() { inputs_.push_back(uptime_); }

  void setIdle() {
    desktop_.idle.seconds = static_cast<double>(uptime_ - (inputs_.empty() ? 0 : inputs_.back())) / 1e6;
  }

  void second() {
    live(900 + upTo(200));
    setIdle();
    desktop_.pass(0);
    monitor_.tick(desktop_.foreground.application);
    afterTick(false);
  }

  void activate() {
    live(upTo(900));
    setIdle();
    const std::string id(1, static_cast<char>('a' + random_() % 4));
    desktop_.foreground.activate(application(id));
    afterTick(false);
  }

  void toggle(bool& flag, SessionEvent begin, SessionEvent end) {
    live(upTo(900));
    setIdle();
    flag = !flag;
    if (!flag) boundary_ = true;
    desktop_.events.announce(flag ? begin : end);
    afterTick(flag);
  }

  void toggleLock() {
    live(upTo(900));
    setIdle();
    locked_now_ = !locked_now_;
    // The sources follow sooner or later; an unlock may be announced before or after them.
    desktop_.locks.registry = locked_now_;
    if (!locked_now_) boundary_ = true;
    desktop_.locks.announce(locked_now_);
    afterTick(locked_now_);
  }

  void sleepAndWake() {
    live(upTo(900));
    setIdle();
    asleep_ = true;
    desktop_.events.announce(SessionEvent::willSleep);
    afterTick(true);
    const int minutes = upTo(600);
    desktop_.clock.advance(minutes * 60.0);  // the monotonic clock stands still
    live(upTo(300));
    setIdle();
    asleep_ = false;
    boundary_ = true;
    desktop_.events.announce(SessionEvent::didWake);
    afterTick(false);
  }

  void jumpWallClock() {
    const double seconds = (random_() % 2 == 0 ? 1 : -1) * (1 + upTo(1'800));
    live(upTo(900));
    desktop_.clock.advance(seconds);
    wallJumps_ += std::llround(seconds * 1e6);
    jumped_ = true;
    second();
  }

  // The process is stopped, the world goes on.
  void standStill() {
    live(5'000 + upTo(100'000));
    second();
  }

  // Books the stretch since the last sample.
  void afterTick(bool boundaryAfter) {
    const std::int64_t elapsed = uptime_ - lastUptime_;
    const std::int64_t wall =
        desktop_.clock.now().microseconds - lastDate_.microseconds - (jumped_ ? wallJumps_ - bookedJumps_ : 0);
    const bool nowAvailable = available() && !asleep_;
    if (lastUptime_ < 0) {
      // the first sample
    } else if (jumped_ || elapsed > 5'000'000 || wall != elapsed) {
      gaps_ += wall;
    } else if (boundary_ || !lastAvailable_ || !nowAvailable) {
      locked_ += wall;
    } else {
      book(elapsed);
    }
    lastApp_ = desktop_.foreground.application->identifier.value();
    lastUptime_ = uptime_;
    lastDate_ = desktop_.clock.now();
    lastAvailable_ = nowAvailable;
    boundary_ = boundaryAfter;
    bookedJumps_ = wallJumps_;
    jumped_ = false;
    while (inputs_.size() > 64) inputs_.erase(inputs_.begin(), inputs_.end() - 32);
  }

  // Active is who touched something in the last minute; of several touches that end an absence only the latest is
  // known.
  void book(std::int64_t elapsed) {
    const std::int64_t begin = lastUptime_;
    std::int64_t lastBefore = 0;
    std::int64_t latest = -1;
    for (const std::int64_t input : inputs_) {
      if (input <= begin) lastBefore = input;
      if (input > begin && input <= uptime_) latest = input;
    }
    const std::int64_t activeUntil = std::clamp(lastBefore + idleLimit, begin, uptime_);
    std::int64_t resumed = uptime_;
    // The counters are read within a hundredth of a second of each other, so input that recent is not told from none.
    if (latest >= 0 && latest - lastBefore > 10 * millisecond) resumed = std::max(latest, activeUntil);
    std::int64_t active = 0;
    active += creditable(begin, activeUntil);
    active += creditable(resumed, uptime_);
    idle_ += elapsed - (activeUntil - begin) - (uptime_ - resumed);
    gaps_ += (activeUntil - begin) + (uptime_ - resumed) -
             active;  // a clock that went back: this wall time is credited already
    if (active > 0) credited_[lastApp_] += active;
  }

  std::int64_t creditable(std::int64_t from, std::int64_t to) {
    if (to <= from) return 0;
    const std::int64_t wallOffset = desktop_.clock.now().microseconds - uptime_;
    const Date begin = std::max(Date{from + wallOffset}, creditedUntil_);
    const Date end{to + wallOffset};
    if (end <= begin) return 0;
    creditedUntil_ = end;
    return end.microseconds - begin.microseconds;
  }

  ScreenTimeFixture desktop_;
  ScreenTimeMonitor monitor_{desktop_.dependencies()};
  std::mt19937 random_;
  Date start_;

  bool displaysAsleep_ = false;
  bool sessionInactive_ = false;
  bool locked_now_ = false;
  bool asleep_ = false;
  bool away_ = false;
  std::int64_t uptime_ = 0;  // microseconds
  std::vector<std::int64_t> inputs_{0};

  bool boundary_ = false;
  bool jumped_ = false;
  bool lastAvailable_ = false;
  std::int64_t lastUptime_ = -1;
  Date lastDate_;
  std::string lastApp_;
  Date creditedUntil_;
  std::map<std::string, std::int64_t> credited_;  // all accounts in microseconds
  std::int64_t idle_ = 0;
  std::int64_t locked_ = 0;
  std::int64_t gaps_ = 0;
  std::int64_t wallJumps_ = 0;
  std::int64_t bookedJumps_ = 0;
};

TEST(ScreenTimeSimulation, everySecondOfWallTimeIsCreditedIdleLockedOrAGap) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    SimulatedDesktop desktop(seed, Date::fromWholeSeconds(1'750'000'000));
    desktop.run(3'000);
    desktop.check();
    if (testing::Test::HasFailure()) return;
  }
}

TEST(ScreenTimeSimulation, daysAcrossASummerTimeChangeAddUp) {
  for (const char* zone : {"America/New_York", "Europe/Berlin", "Australia/Lord_Howe", "Asia/Shanghai"}) {
    const Calendar calendar = *Calendar::forZone(zone, 1);
    for (unsigned seed = 1; seed <= 4; ++seed) {
      SCOPED_TRACE(std::string(zone) + " seed " + std::to_string(seed));
      SimulatedDesktop desktop(seed, *calendar.dateFrom(2026, seed % 2 == 0 ? 3 : 10, 24));
      desktop.run(6'000);
      double all = 0;
      for (const ActivitySpan& span : desktop.spans()) all += span.seconds();
      double byDay = 0;
      for (Date day = calendar.startOfDay(desktop.spans().front().start); day < desktop.now();) {
        const Date next = *calendar.adding(1, CalendarUnit::day, day);
        byDay += ActivitySummary::make(desktop.spans(), {day, next}, true, calendar).total;
        day = next;
      }
      EXPECT_NEAR(byDay, all, 1e-6);
    }
  }
}

}  // namespace
}  // namespace quillmeter::test
