#include "core/model/WidgetSharedSnapshot.h"

#include <array>
#include <cmath>
#include <iterator>
#include <string_view>

#include <fmt/format.h>

namespace quillmeter {

namespace {

constexpr std::int64_t referenceDateSeconds = 978'307'200;  // 2001-01-01 00:00:00 UTC, since 1970

void append(fmt::memory_buffer& out, std::string_view key, double value) {
  fmt::format_to(std::back_inserter(out), R"("{}":{},)", key, value);
}

}  // namespace

std::optional<std::string> encodeWidgetSharedSnapshot(const WidgetSharedSnapshot& snapshot) {
  struct Figure {
    std::string_view key;
    std::optional<double> value;
  };
  const std::array<Figure, 6> figures = {{{"cpuUsage", snapshot.cpuUsage},
                                          {"memoryUsage", snapshot.memoryUsage},
                                          {"diskUsage", snapshot.diskUsage},
                                          {"batteryLevel", snapshot.batteryLevel},
                                          {"primaryLimitUsed", snapshot.primaryLimitUsed},
                                          {"weeklyLimitUsed", snapshot.weeklyLimitUsed}}};
  fmt::memory_buffer out;
  out.push_back('{');
  for (const Figure& figure : figures) {
    if (!figure.value) continue;
    if (!std::isfinite(*figure.value)) return std::nullopt;
    append(out, figure.key, *figure.value);
  }
  const std::int64_t sinceReference =
      snapshot.updatedAt.microseconds - referenceDateSeconds * Date::microsecondsPerSecond;
  fmt::format_to(std::back_inserter(out), R"("todayTokens":{},"weekTokens":{},"updatedAt":{}}})", snapshot.todayTokens,
                 snapshot.weekTokens, static_cast<double>(sinceReference) / Date::microsecondsPerSecond);
  return fmt::to_string(out);
}

}  // namespace quillmeter
