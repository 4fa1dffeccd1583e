#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "agents/UsageTimeline.h"
#include "agents/model/AgentUsageSnapshot.h"
#include "base/Calendar.h"

namespace quillmeter {

// One series of bars: `count` hours or days from `start` on, as the calendar counts them. The borders are worked out
// once, so that an event is placed by a search among a few dates instead of by calendar arithmetic.
class UsageBuckets {
 public:
  UsageBuckets(Date start, int count, CalendarUnit unit, const Calendar& calendar);

  // The bucket that holds `date`; absent outside of the series.
  std::optional<std::size_t> indexOf(Date date) const;
  void addAt(std::size_t index, const AgentTokenMetrics& metrics) { buckets_[index].metrics += metrics; }
  const std::vector<AgentUsageBucket>& buckets() const { return buckets_; }

 private:
  std::vector<AgentUsageBucket> buckets_;
  std::optional<Date> end_;  // absent when the calendar cannot form it: then no event has a place
};

std::vector<AgentUsageBucket> makeBuckets(const std::vector<AgentUsageEvent>& events, Date start, int count,
                                          CalendarUnit unit, const Calendar& calendar);

}  // namespace quillmeter
