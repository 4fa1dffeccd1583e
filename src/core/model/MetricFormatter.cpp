#include "core/model/MetricFormatter.h"

#include <algorithm>
#include <cmath>

#include "base/CheckedInt.h"
#include "base/L10n.h"
#include "core/model/NumberText.h"

namespace quillmeter::MetricFormatter {
namespace {

// Whole seconds from `now` to `date`, halves away from zero.
std::int64_t roundedSecondsBetween(Date date, Date now) {
  const std::int64_t microseconds = checkedSubtract(date.microseconds, now.microseconds);
  const std::int64_t half = Date::microsecondsPerSecond / 2;
  const std::int64_t whole = microseconds / Date::microsecondsPerSecond;
  const std::int64_t rest = microseconds % Date::microsecondsPerSecond;
  if (rest >= half) return whole + 1;
  if (rest <= -half) return whole - 1;
  return whole;
}

std::string spanText(std::int64_t seconds) {
  if (seconds < 60) return std::to_string(seconds) + " " + QM_TR("秒");
  if (seconds < 3'600) return std::to_string(seconds / 60) + " " + QM_TR("分钟");
  if (seconds >= 86'400) return std::to_string(seconds / 86'400) + " " + QM_TR("天");
  return std::to_string(seconds / 3'600) + " " + QM_TR("小时");
}

}  // namespace

std::string tokens(std::int64_t count) {
  if (count < 1'000) return std::to_string(count);
  const auto figure = static_cast<double>(count);
  if (count < 1'000'000) return fixedDecimalText(figure / 1e3, 1) + "K";
  return fixedDecimalText(figure / 1e6, 1) + "M";
}

std::string percent(double fraction) {
  if (!std::isfinite(fraction)) fatalError("a percentage of what is not finite");
  if (fraction <= 0) return "0%";
  return std::to_string(std::lround(std::min(fraction, 1.0) * 100)) + "%";
}

std::string relative(Date date, Date now) {
  if (date <= Date::distantPast()) return "—";
  const std::int64_t seconds = roundedSecondsBetween(date, now);
  const std::int64_t distance = seconds < 0 ? -seconds : seconds;
  if (distance <= 4) return QM_TR("刚刚");
  const std::string span = spanText(distance);
  return seconds < 1 ? L10n::format(QM_TR("%@前"), {span}) : L10n::format(QM_TR("%@后"), {span});
}

}  // namespace quillmeter::MetricFormatter
