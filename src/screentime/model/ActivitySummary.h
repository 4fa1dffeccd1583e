#pragma once

#include <span>
#include <vector>

#include "base/Calendar.h"
#include "screentime/model/ActivitySpan.h"

namespace quillmeter {

// [start, end)
struct DateInterval {
  Date start;
  Date end;
  friend bool operator==(const DateInterval&, const DateInterval&) = default;
};

// Use of each application and a bar for each hour or day of one interval. A pure computation over values.
struct ActivitySummary {
  struct AppTotal {
    ActivityApp app;  // with the first name seen for its id
    double seconds = 0;
    friend bool operator==(const AppTotal&, const AppTotal&) = default;
  };
  struct Bucket {
    Date start;
    Date end;
    double seconds = 0;
    friend bool operator==(const Bucket&, const Bucket&) = default;
  };

  std::vector<ActivitySpan> spans;  // clipped to the interval
  std::vector<AppTotal> apps;       // most used first, equal ones by id
  std::vector<Bucket>
      buckets;       // cover the interval; hours or days of the calendar, the last one ends with the interval
  double total = 0;  // seconds

  static ActivitySummary make(std::span<const ActivitySpan> spans, const DateInterval& interval, bool hourly,
                              const Calendar& calendar);
  // Null when there is no span; of equally long ones the first.
  const ActivitySpan* longestSpan() const;

  friend bool operator==(const ActivitySummary&, const ActivitySummary&) = default;
};

}  // namespace quillmeter
