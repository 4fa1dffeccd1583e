#include "ui/screentime/ActivityUse.h"

#include <algorithm>
#include <utility>

#include "base/Clock.h"
#include "screentime/ScreenTimeMonitor.h"

namespace quillmeter {

void ActivityUse::start(std::function<void()> changed) {
  changed_ = std::move(changed);
}

void ActivityUse::stop() {
  changed_ = {};
  renewal_.reset();
  midnight_.reset();
}

void ActivityUse::monitorChanged() {
  if (!changed_ || !interval_) return;
  const Date now = clock_.now();
  if (now >= tomorrow_) return announce();  // also after a sleep, during which no timer runs
  if (monitor_.spansRevision() == revision_ || renewal_) return;
  if (fingerprintOf(spansWithin(*interval_)) == fingerprint_) {
    revision_ = monitor_.spansRevision();
    return;
  }
  // A record that was cleared or came back must not stand there for seconds; one that grows may.
  const double since = now.secondsSince(madeAt_);
  const bool grew = spansWithin(*interval_).size() >= fingerprint_.count;
  if (!grew || since >= renewalSeconds || since < 0) return announce();
  renewal_ = timers_.once(renewalSeconds - since, [this] { announce(); });
}

void ActivityUse::announce() {
  renewal_.reset();
  if (changed_) changed_();
}

const ActivitySummary& ActivityUse::summary(const DateInterval& interval, bool hourly, const Calendar& calendar) {
  const std::span<const ActivitySpan> spans = spansWithin(interval);
  const Fingerprint fingerprint = fingerprintOf(spans);
  const std::string zone = calendar.zoneName();
  if (changed_) awaitTomorrow(calendar);
  revision_ = monitor_.spansRevision();
  if (interval_ == interval && hourly_ == hourly && zone_ == zone && fingerprint_ == fingerprint) return summary_;
  interval_ = interval;
  hourly_ = hourly;
  zone_ = zone;
  fingerprint_ = fingerprint;
  madeAt_ = clock_.now();
  ++made_;
  summary_ = ActivitySummary::make(spans, interval, hourly, calendar);
  return summary_;
}

// The record is in time order and does not overlap.
std::span<const ActivitySpan> ActivityUse::spansWithin(const DateInterval& interval) const {
  const std::vector<ActivitySpan>& all = monitor_.spans();
  const auto begin = std::ranges::upper_bound(all, interval.start, {}, &ActivitySpan::end);
  const auto end = std::ranges::lower_bound(begin, all.end(), interval.end, {}, &ActivitySpan::start);
  return {begin, end};
}

ActivityUse::Fingerprint ActivityUse::fingerprintOf(std::span<const ActivitySpan> spans) {
  if (spans.empty()) return {};
  return {spans.size(), spans.front().start, spans.back().end};
}

void ActivityUse::awaitTomorrow(const Calendar& calendar) {
  const Date now = clock_.now();
  const Date today = calendar.startOfDay(now);
  const Date tomorrow = calendar.startOfDay(calendar.adding(1, CalendarUnit::day, today).value_or(today));
  if (tomorrow == tomorrow_ && midnight_) return;
  tomorrow_ = tomorrow;
  midnight_ = timers_.once(tomorrow.secondsSince(now), [this] { dayEnded(); });
}

void ActivityUse::dayEnded() {
  midnight_.reset();
  announce();
}

}  // namespace quillmeter
