#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "base/Calendar.h"
#include "platform/TimerFactory.h"
#include "screentime/model/ActivitySummary.h"

namespace quillmeter {

class Clock;
class ScreenTimeMonitor;

// The summary of the shown period, made as seldom as the page allows: anew when the period changed, and while recording
// goes on at most once in a while, and then only when the period's own uses changed. Looks at the uses within the
// period alone, however long the record is. Owned by the page; main thread.
class ActivityUse {
 public:
  static constexpr double renewalSeconds = 5.0;

  // All outlive this object.
  ActivityUse(const ScreenTimeMonitor& monitor, const Clock& clock, TimerFactory& timers)
      : monitor_(monitor), clock_(clock), timers_(timers) {}

  // From now on `changed` is called when the summary has to be asked for again: uses were added, a new day began.
  void start(std::function<void()> changed);
  void stop();
  // The monitor published something.
  void monitorChanged();

  const ActivitySummary& summary(const DateInterval& interval, bool hourly, const Calendar& calendar);
  // How often it was made; for tests.
  int made() const { return made_; }

 private:
  // The uses of the period, to tell whether one was added, extended or dropped.
  struct Fingerprint {
    std::size_t count = 0;
    Date start;
    Date end;
    friend bool operator==(const Fingerprint&, const Fingerprint&) = default;
  };
  std::span<const ActivitySpan> spansWithin(const DateInterval& interval) const;
  static Fingerprint fingerprintOf(std::span<const ActivitySpan> spans);
  void awaitTomorrow(const Calendar& calendar);
  void dayEnded();
  void announce();

  const ScreenTimeMonitor& monitor_;
  const Clock& clock_;
  TimerFactory& timers_;
  std::function<void()> changed_;
  std::unique_ptr<Timer> renewal_;
  std::unique_ptr<Timer> midnight_;

  ActivitySummary summary_;
  std::optional<DateInterval> interval_;
  bool hourly_ = true;
  std::string zone_;
  Fingerprint fingerprint_;
  std::uint64_t revision_ = 0;
  Date madeAt_;
  Date tomorrow_;
  int made_ = 0;
};

}  // namespace quillmeter
