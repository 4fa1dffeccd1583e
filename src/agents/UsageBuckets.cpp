#include "agents/UsageBuckets.h"

#include <algorithm>

namespace quillmeter {

UsageBuckets::UsageBuckets(Date start, int count, CalendarUnit unit, const Calendar& calendar)
    : end_(calendar.adding(count, unit, start)) {
  buckets_.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    if (const std::optional<Date> bucketStart = calendar.adding(i, unit, start)) buckets_.push_back({*bucketStart, {}});
  }
}

std::optional<std::size_t> UsageBuckets::indexOf(Date date) const {
  if (!end_ || date >= *end_) return std::nullopt;
  const auto behind = std::upper_bound(buckets_.begin(), buckets_.end(), date,
                                       [](Date value, const AgentUsageBucket& bucket) { return value < bucket.start; });
  if (behind == buckets_.begin()) return std::nullopt;
  return static_cast<std::size_t>(behind - buckets_.begin()) - 1;
}

std::vector<AgentUsageBucket> makeBuckets(const std::vector<AgentUsageEvent>& events, Date start, int count,
                                          CalendarUnit unit, const Calendar& calendar) {
  UsageBuckets series(start, count, unit, calendar);
  for (const AgentUsageEvent& event : events) {
    if (const std::optional<std::size_t> index = series.indexOf(event.date)) series.addAt(*index, event.metrics);
  }
  return series.buckets();
}

}  // namespace quillmeter
