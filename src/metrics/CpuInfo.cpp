#include "metrics/CpuInfo.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/model/NumberText.h"

namespace quillmeter {
namespace {

double share(double part, double total) {
  const double percent = part * 100 / total;
  if (percent >= 100) return 100;
  return std::round(std::max(percent, 0.0) * 100) / 100;
}

}  // namespace

CpuInfo::CpuInfo(ProcessorTicks& ticks, LocaleConventions locale) : ticks_(ticks), locale_(std::move(locale)) {}

std::optional<CpuLoadSnapshot> CpuInfo::takeSnapshot() {
  if (!ticks_.read(processors_) || processors_.empty()) return std::nullopt;
  CpuLoadSnapshot sum;
  for (const auto& processor : processors_) {
    sum.user += static_cast<double>(processor.user);
    sum.system += static_cast<double>(processor.system);
    sum.idle += static_cast<double>(processor.idle);
    sum.nice += static_cast<double>(processor.nice);
  }
  return sum;
}

void CpuInfo::update() {
  const auto snapshot = takeSnapshot();
  if (!snapshot) return applyFallbackMetrics();
  const auto previous = std::exchange(previousSnapshot_, snapshot);
  if (!previous) return applyFallbackMetrics();

  // A counter that went back (reset, processor taken away) counts as 0.
  const double user = std::max(snapshot->user - previous->user, 0.0);
  const double system = std::max(snapshot->system - previous->system, 0.0);
  const double idle = std::max(snapshot->idle - previous->idle, 0.0);
  const double nice = std::max(snapshot->nice - previous->nice, 0.0);
  const double total = user + system + idle + nice;
  if (!(total > 0)) return applyFallbackMetrics();

  lastValidMetrics_ = CpuMetrics{share(user + system + nice, total), share(system, total), share(user + nice, total),
                                 share(idle, total)};
  show(*lastValidMetrics_);
}

void CpuInfo::applyFallbackMetrics() {
  show(lastValidMetrics_.value_or(CpuMetrics{0, 0, 0, 100}));
}

void CpuInfo::show(const CpuMetrics& metrics) {
  percentage_ = metrics.usage;
  system_ = percentageText(metrics.system, locale_);
  user_ = percentageText(metrics.user, locale_);
  idle_ = percentageText(metrics.idle, locale_);
}

}  // namespace quillmeter
