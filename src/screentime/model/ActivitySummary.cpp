#include "screentime/model/ActivitySummary.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "screentime/model/ActivityTimelineGroup.h"

namespace quillmeter {
namespace {

double inSeconds(std::int64_t microseconds) {
  return static_cast<double>(microseconds) / Date::microsecondsPerSecond;
}

std::int64_t length(Date start, Date end) {
  return end.microseconds - start.microseconds;
}

std::vector<ActivitySpan> clip(std::span<const ActivitySpan> spans, const DateInterval& interval) {
  std::vector<ActivitySpan> clipped;
  clipped.reserve(static_cast<std::size_t>(std::ranges::count_if(
      spans, [&](const ActivitySpan& span) { return span.start < interval.end && span.end > interval.start; })));
  for (const ActivitySpan& span : spans) {
    const Date start = std::max(span.start, interval.start);
    const Date end = std::min(span.end, interval.end);
    if (end > start) clipped.push_back({start, end, span.app});
  }
  return clipped;
}

double totalOf(const std::vector<ActivitySpan>& spans) {
  std::int64_t microseconds = 0;
  for (const ActivitySpan& span : spans) microseconds += length(span.start, span.end);
  return inSeconds(microseconds);
}

// Summed in whole microseconds, so that the order of the spans makes no difference.
std::vector<ActivitySummary::AppTotal> totalsByApp(const std::vector<ActivitySpan>& spans) {
  struct Sum {
    const ActivityApp* app = nullptr;
    std::int64_t microseconds = 0;
  };
  std::unordered_map<std::string_view, Sum> sums;
  for (const ActivitySpan& span : spans) {
    Sum& sum = sums[span.app.id];
    if (sum.app == nullptr) sum.app = &span.app;
    sum.microseconds += length(span.start, span.end);
  }
  std::vector<ActivitySummary::AppTotal> totals;
  totals.reserve(sums.size());
  for (const auto& [id, sum] : sums) totals.push_back({*sum.app, inSeconds(sum.microseconds)});
  std::ranges::sort(totals, [](const auto& a, const auto& b) {
    return a.seconds != b.seconds ? a.seconds > b.seconds : a.app.id < b.app.id;
  });
  return totals;
}

// Each start is counted from the interval's, so that a day whose midnight does not exist leaves the following ones at
// midnight.
std::vector<ActivitySummary::Bucket> makeBuckets(const DateInterval& interval, bool hourly, const Calendar& calendar) {
  std::vector<ActivitySummary::Bucket> buckets;
  const CalendarUnit unit = hourly ? CalendarUnit::hour : CalendarUnit::day;
  Date start = interval.start;
  for (int count = 1; start < interval.end; ++count) {
    const Date next = calendar.adding(count, unit, interval.start).value_or(interval.end);
    const Date end = next > start ? std::min(next, interval.end) : interval.end;
    buckets.push_back({start, end, 0});
    start = end;
  }
  return buckets;
}

void fillBuckets(std::vector<ActivitySummary::Bucket>& buckets, const std::vector<ActivitySpan>& spans) {
  std::vector<std::int64_t> microseconds(buckets.size());
  for (const ActivitySpan& span : spans) {
    auto bucket = std::ranges::upper_bound(buckets, span.start, {}, &ActivitySummary::Bucket::end);
    for (; bucket != buckets.end() && bucket->start < span.end; ++bucket) {
      const auto index = static_cast<std::size_t>(bucket - buckets.begin());
      microseconds[index] += length(std::max(span.start, bucket->start), std::min(span.end, bucket->end));
    }
  }
  for (std::size_t index = 0; index < buckets.size(); ++index) buckets[index].seconds = inSeconds(microseconds[index]);
}

}  // namespace

ActivitySummary ActivitySummary::make(std::span<const ActivitySpan> spans, const DateInterval& interval, bool hourly,
                                      const Calendar& calendar) {
  ActivitySummary summary;
  summary.spans = clip(spans, interval);
  summary.apps = totalsByApp(summary.spans);
  summary.buckets = makeBuckets(interval, hourly, calendar);
  fillBuckets(summary.buckets, summary.spans);
  summary.total = totalOf(summary.spans);
  return summary;
}

std::vector<ActivityTimelineGroup> ActivityTimelineGroup::make(const ActivitySummary& summary) {
  std::vector<ActivityTimelineGroup> groups;
  for (const ActivitySummary::Bucket& bucket : summary.buckets) {
    if (!(bucket.seconds > 0)) continue;
    ActivityTimelineGroup group{bucket.start, bucket.end, clip(summary.spans, {bucket.start, bucket.end}), {}, 0};
    group.apps = totalsByApp(group.spans);
    group.total = totalOf(group.spans);
    groups.push_back(std::move(group));
  }
  return groups;
}

std::vector<ActivityTimelineGroup> ActivityTimelineGroup::make(std::span<const ActivitySpan> spans,
                                                               const DateInterval& interval, bool hourly,
                                                               const Calendar& calendar) {
  return make(ActivitySummary::make(spans, interval, hourly, calendar));
}

const ActivitySpan* ActivitySummary::longestSpan() const {
  const auto longest =
      std::ranges::max_element(spans, {}, [](const ActivitySpan& span) { return length(span.start, span.end); });
  return longest == spans.end() ? nullptr : &*longest;
}

}  // namespace quillmeter
