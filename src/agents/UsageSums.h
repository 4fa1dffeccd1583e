#pragma once

#include "agents/CounterBounds.h"
#include "agents/UsageBuckets.h"
#include "agents/UsageTimeline.h"
#include "base/Calendar.h"

namespace quillmeter {

// Where today, this week and this month begin.
struct UsageRangeStarts {
  Date today;
  Date week;
  Date month;

  UsageRangeStarts(const Calendar& calendar, Date now);
};

struct UsageRangeMetrics {
  AgentTokenMetrics today;
  AgentTokenMetrics week;
  AgentTokenMetrics month;
};

// The three series of bars of one scan, and the ranges that dated usage falls into.
class UsageSums {
 public:
  UsageSums(const Calendar& calendar, const UsageRangeStarts& starts);

  // Puts usage into the bars; what lies before the month is in none.
  void addToBuckets(Date date, const AgentTokenMetrics& metrics);
  // The same for a file's or session's events, which also sums them by range. `first` and `last` are the earliest and
  // the latest event date and `sum` the sum of all.
  UsageRangeMetrics add(const UsageTimeline& events, const AgentTokenMetrics& sum, Date first, Date last);
  void add(Date date, const AgentTokenMetrics& metrics, UsageRangeMetrics& ranges);

  // Whether a file's counters can be added to all that was admitted before; then they count as admitted.
  bool admit(const CounterMagnitude& magnitude);

  const std::vector<AgentUsageBucket>& hourly() const { return hourly_.buckets(); }
  const std::vector<AgentUsageBucket>& weekly() const { return weekly_.buckets(); }
  const std::vector<AgentUsageBucket>& monthly() const { return monthly_.buckets(); }

 private:
  // Everything that the place of an event depends on. Dates with one cell have all dates between them in it.
  struct Cell {
    bool inToday = false;
    bool inWeek = false;
    bool inMonth = false;
    std::optional<std::size_t> hour;
    std::optional<std::size_t> weekDay;
    std::optional<std::size_t> monthDay;
    friend bool operator==(const Cell&, const Cell&) = default;
  };
  Cell cellOf(Date date) const;
  void addAt(const Cell& cell, const AgentTokenMetrics& metrics, UsageRangeMetrics& ranges);

  UsageRangeStarts starts_;
  UsageBuckets hourly_;
  UsageBuckets weekly_;
  UsageBuckets monthly_;
  CounterMagnitude admitted_;
};

}  // namespace quillmeter
