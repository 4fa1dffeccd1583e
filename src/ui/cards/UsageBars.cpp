#include "ui/cards/UsageBars.h"

#include <algorithm>

#include "base/Clock.h"
#include "base/L10n.h"
#include "core/model/ClockTexts.h"
#include "core/model/MetricFormatter.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/BarChart.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {

namespace {

ChartBar barOf(const AgentUsageBucket& bucket, AgentUsageRange range, const Calendar& calendar) {
  const bool isHour = range == AgentUsageRange::today;
  const QString name = qtText(isHour ? clockText(bucket.start, calendar) : monthDayText(bucket.start, calendar));
  ChartBar bar;
  bar.value = static_cast<double>(bucket.metrics.totalTokens);
  bar.label = isHour                           ? name.left(2)
              : range == AgentUsageRange::week ? name
                                               : QString::number(calendar.components(bucket.start).day.day);
  bar.description = QStringLiteral("%1 · %2").arg(name, qtText(MetricFormatter::tokens(bucket.metrics.totalTokens)));
  return bar;
}

}  // namespace

std::optional<std::size_t> currentBucket(const std::vector<AgentUsageBucket>& buckets, Date now) {
  const auto next = std::ranges::upper_bound(buckets, now, {}, &AgentUsageBucket::start);
  if (next == buckets.begin()) return std::nullopt;
  return static_cast<std::size_t>(next - buckets.begin()) - 1;
}

void showUsageBars(BarChart& chart, const AgentUsageSnapshot& agents, AgentUsageRange range,
                   const UiServices& services) {
  const std::vector<AgentUsageBucket>& buckets = agents.buckets(range);
  const Calendar calendar = services.currentCalendar();
  std::vector<ChartBar> bars;
  bars.reserve(buckets.size());
  for (const AgentUsageBucket& bucket : buckets) bars.push_back(barOf(bucket, range, calendar));
  if (const auto current = currentBucket(buckets, services.clock.now())) bars[*current].isCurrent = true;
  const bool isKnown = agents.lastUpdated > Date::distantPast();
  chart.setEmptyText(isKnown ? qtText(QM_TR("这段时间没有用量")) : QString());
  WidgetAccessibility::setName(chart, qtText(courseTitle(range)));
  chart.setBars(std::move(bars));
}

}  // namespace quillmeter
