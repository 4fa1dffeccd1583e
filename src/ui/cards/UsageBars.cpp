#include "ui/cards/UsageBars.h"

#include "core/model/MetricFormatter.h"
#include "ui/theme/QtText.h"

namespace quillmeter {

namespace {

QString twoDigits(int value) {
  return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0'));
}

}  // namespace

std::vector<ChartBar> usageBars(const std::vector<AgentUsageBucket>& buckets, AgentUsageRange range, Date now,
                                const Calendar& calendar) {
  std::vector<ChartBar> bars;
  bars.reserve(buckets.size());
  for (std::size_t index = 0; index < buckets.size(); ++index) {
    const AgentUsageBucket& bucket = buckets[index];
    const CalendarTime time = calendar.components(bucket.start);
    const QString day = twoDigits(time.day.month) + QLatin1Char('-') + twoDigits(time.day.day);
    const QString name = range == AgentUsageRange::today ? twoDigits(time.hour) + QStringLiteral(":00") : day;
    ChartBar& bar = bars.emplace_back();
    bar.value = static_cast<double>(bucket.metrics.totalTokens);
    bar.label = range == AgentUsageRange::today   ? twoDigits(time.hour)
                : range == AgentUsageRange::month ? QString::number(time.day.day)
                                                  : day;
    bar.description = QStringLiteral("%1 · %2").arg(name, qtText(MetricFormatter::tokens(bucket.metrics.totalTokens)));
    bar.isCurrent = bucket.start <= now && (index + 1 == buckets.size() || now < buckets[index + 1].start);
  }
  return bars;
}

}  // namespace quillmeter
