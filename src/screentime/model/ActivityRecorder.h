#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "screentime/model/ActivitySpan.h"

namespace quillmeter {

// Builds spans of active use from samples taken about once a second. A value, owned by ScreenTimeMonitor. Its spans are
// in time order and do not overlap; time without input, of a moment that may not be counted or across a gap is in none
// of them.
class ActivityRecorder {
 public:
  static constexpr double idleLimitSeconds = 60.0;
  static constexpr double maximumGapSeconds = 5.0;

  struct Sample {
    Date date;
    double uptimeSeconds = 0;        // of a clock that stands still during sleep
    double idleSeconds = 0;          // since the last input; not finite or negative when unknown
    std::optional<ActivityApp> app;  // in front
    bool available = false;          // whether this moment may be counted at all
    friend bool operator==(const Sample&, const Sample&) = default;
  };

  // The time since the previous sample goes to the application that was in front then, as far as the user was active.
  void sample(const Sample& current);
  // Nothing is credited between the last sample and the next one.
  void resetBoundary() { previous_.reset(); }
  void restore(std::vector<ActivitySpan> spans);
  // Drops what ended at or before `date` and cuts the start of a span across it.
  void prune(Date date);
  void clear();

  const std::vector<ActivitySpan>& spans() const { return spans_; }
  const std::optional<Sample>& previous() const { return previous_; }
  // Goes up with each change of the spans, so that nobody has to compare them.
  std::uint64_t revision() const { return revision_; }

 private:
  void credit(const Sample& previous, const Sample& current, double elapsed);
  void append(Date start, Date end, const ActivityApp& app);

  std::vector<ActivitySpan> spans_;
  std::optional<Sample> previous_;
  std::uint64_t revision_ = 0;
};

}  // namespace quillmeter
