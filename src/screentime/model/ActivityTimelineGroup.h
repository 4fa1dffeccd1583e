#pragma once

#include <span>
#include <vector>

#include "screentime/model/ActivitySummary.h"

namespace quillmeter {

// One hour or day of the timeline in which something was used.
struct ActivityTimelineGroup {
  Date start;
  Date end;
  std::vector<ActivitySpan> spans;              // clipped to the bucket
  std::vector<ActivitySummary::AppTotal> apps;  // most used first, equal ones by id
  double total = 0;                             // seconds

  // The buckets of the interval with any use, in time order.
  static std::vector<ActivityTimelineGroup> make(std::span<const ActivitySpan> spans, const DateInterval& interval,
                                                 bool hourly, const Calendar& calendar);
  // The same from a summary that is there already.
  static std::vector<ActivityTimelineGroup> make(const ActivitySummary& summary);

  friend bool operator==(const ActivityTimelineGroup&, const ActivityTimelineGroup&) = default;
};

}  // namespace quillmeter
