#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Calendar.h"
#include "base/Clock.h"
#include "base/Observers.h"
#include "platform/ActivitySources.h"
#include "platform/TimerFactory.h"
#include "screentime/ActivityArchiveStore.h"
#include "screentime/model/ActivityRecorder.h"
#include "screentime/model/ScreenLockTracker.h"

namespace quillmeter {

// What the monitor needs; all of it outlives the monitor.
struct ScreenTimeDependencies {
  const Clock& clock;
  const MonotonicClock& monotonicClock;
  std::function<Calendar()> currentCalendar;  // asked anew each time: the user travels
  TimerFactory& timers;
  std::function<ActivitySources()> sources;  // asked once, when there is something to record or somebody looks
  ActivityArchiveStore& store;
};

// The one owner of the screen-time record: samples once a second while recording is on, reacts to sleep, lock and
// session changes and keeps the stored archive. Main thread. One instance, made by the composition; it loads the
// archive when it is made.
class ScreenTimeMonitor {
 public:
  static constexpr double tickSeconds = 1.0;
  static constexpr double tickToleranceSeconds = 0.1;
  static constexpr double saveIntervalSeconds = 30.0;
  static constexpr int keptDays = 30;  // today and the days before it

  explicit ScreenTimeMonitor(ScreenTimeDependencies dependencies);
  ScreenTimeMonitor(const ScreenTimeMonitor&) = delete;
  ScreenTimeMonitor& operator=(const ScreenTimeMonitor&) = delete;
  ~ScreenTimeMonitor();

  // From now on it observes and samples while recording is on; a second call does nothing.
  void start();
  // Ignored while the stored archive cannot be read.
  void setEnabled(bool on);
  // Takes one sample with `foreground` in front. Nothing happens while recording is off or a storage error is pending.
  void tick(const std::optional<RunningApplication>& foreground);
  // For the user's "retry" while canRetrySave().
  void retrySave();
  // Removes the stored record and empties this one.
  void clear();
  // The program is about to end.
  void willTerminate();

  bool enabled() const { return enabled_; }
  const std::optional<Date>& startedAt() const { return startedAt_; }
  const std::vector<ActivitySpan>& spans() const { return recorder_.spans(); }
  // The application being counted right now; absent while idle or not counting.
  const std::optional<ActivityApp>& currentApp() const { return currentApp_; }
  // Both texts in the language of the moment they are asked for.
  std::string state() const;
  std::optional<std::string> storageError() const;
  bool canRetrySave() const { return canRetrySave_; }
  // Whether setEnabled() does anything: the stored archive is none that cannot be read.
  bool canEnable() const { return !loadFailed_; }
  // Goes up with each change of the spans.
  std::uint64_t spansRevision() const { return recorder_.revision(); }
  // Calls `changed` after each change of any of the above.
  [[nodiscard]] Subscription observe(std::function<void()> changed);

 private:
  // What of the record a save writes, to tell whether there is anything new to write.
  struct Fingerprint {
    std::uint64_t revision = 0;
    std::optional<Date> startedAt;
    bool enabled = false;
    friend bool operator==(const Fingerprint&, const Fingerprint&) = default;
  };

  const ActivitySources& sources();
  void listen();
  void followSwitch();
  void tickNow();
  void switchOn();
  void switchOff();
  void handle(SessionEvent event);
  void handleLock(bool locked);
  void pauseFor(bool& flag);
  void resumeFrom(bool& flag);
  ActivityRecorder::Sample readSample(const std::optional<RunningApplication>& foreground,
                                      std::optional<bool> locked);
  std::string_view stateFor(const ActivityRecorder::Sample& sample, std::optional<bool> locked) const;
  bool load();
  ArchiveOutcome acquire();
  void report(ArchiveOutcome outcome);
  void prune(Date now);
  bool save();
  void saveUnlessFailed();
  void fail(std::string_view message, bool canRetry);
  void clearError();
  void stopCounting();
  void publish();
  Fingerprint fingerprint() const { return {recorder_.revision(), startedAt_, enabled_}; }

  ScreenTimeDependencies dependencies_;
  std::optional<ActivitySources> sources_;
  ActivityRecorder recorder_;
  ScreenLockTracker lockTracker_;
  bool enabled_ = false;
  std::optional<Date> startedAt_;
  std::optional<ActivityApp> currentApp_;
  std::string_view state_;  // this and the next: ids of texts
  std::optional<std::string_view> storageError_;
  bool canRetrySave_ = false;
  bool loadFailed_ = false;
  bool systemAsleep_ = false;
  bool displaysAsleep_ = false;
  bool sessionInactive_ = false;
  bool started_ = false;
  bool isListening_ = false;
  std::optional<double> lastSaveUptime_;
  Fingerprint saved_;
  std::unique_ptr<Timer> timer_;
  Observers<> observers_;
};

}  // namespace quillmeter
