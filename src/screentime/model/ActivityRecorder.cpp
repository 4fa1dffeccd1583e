#include "screentime/model/ActivityRecorder.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillmeter {
namespace {

constexpr double maximumDriftSeconds = 0.25;
constexpr double inputToleranceSeconds = 0.01;  // the idle counter and the uptime are not read at the same instant
constexpr std::int64_t mergeMicroseconds = 1'000;

Date moved(Date date, double seconds) {
  constexpr double bound = 1e9;  // far beyond any interval that is credited
  return Date{date.microseconds + std::llround(std::clamp(seconds, -bound, bound) * Date::microsecondsPerSecond)};
}

}  // namespace

void ActivityRecorder::sample(const Sample& current) {
  if (previous_) {
    const double elapsed = current.uptimeSeconds - previous_->uptimeSeconds;
    const double drift = std::abs(current.date.secondsSince(previous_->date) - elapsed);
    const bool continuous = elapsed > 0 && elapsed <= maximumGapSeconds && drift < maximumDriftSeconds;
    if (continuous && previous_->available && current.available) credit(*previous_, current, elapsed);
  }
  previous_ = current;
}

void ActivityRecorder::credit(const Sample& previous, const Sample& current, double elapsed) {
  if (!previous.app || !std::isfinite(previous.idleSeconds) || previous.idleSeconds < 0) return;
  // The user counts as active until the idle counter would reach the limit ...
  const Date activeUntil =
      std::min(moved(previous.date, std::max(idleLimitSeconds - previous.idleSeconds, 0.0)), current.date);
  if (activeUntil > previous.date) append(previous.date, activeUntil, *previous.app);
  // ... and again from the latest input on, if there was any since.
  const bool inputSince = current.idleSeconds < elapsed + previous.idleSeconds - inputToleranceSeconds;
  if (!inputSince || !(current.idleSeconds < idleLimitSeconds)) return;
  const Date resumed = std::max({moved(current.date, -current.idleSeconds), previous.date, activeUntil});
  if (resumed < current.date) append(resumed, current.date, *previous.app);
}

void ActivityRecorder::append(Date start, Date end, const ActivityApp& app) {
  if (!spans_.empty()) start = std::max(start, spans_.back().end);
  if (end <= start) return;
  ++revision_;
  if (!spans_.empty() && spans_.back().app == app &&
      start.microseconds - spans_.back().end.microseconds < mergeMicroseconds) {
    spans_.back().end = end;
  } else {
    spans_.push_back({start, end, app});
  }
}

void ActivityRecorder::restore(std::vector<ActivitySpan> spans) {
  spans_ = std::move(spans);
  ++revision_;
}

void ActivityRecorder::prune(Date date) {
  const auto removed = std::erase_if(spans_, [date](const ActivitySpan& span) { return span.end <= date; });
  bool changed = removed > 0;
  for (ActivitySpan& span : spans_) {
    if (span.start >= date) continue;
    span.start = date;
    changed = true;
  }
  if (changed) ++revision_;
}

void ActivityRecorder::clear() {
  if (!spans_.empty()) ++revision_;
  spans_.clear();
  spans_.shrink_to_fit();
  resetBoundary();
}

}  // namespace quillmeter
