#include "agents/adapters/AssistantUsage.h"

#include <string_view>

#include "agents/adapters/LocalUsageReader.h"

namespace quillmeter {

AgentTokenMetrics AssistantUsage::metrics() const {
  AgentTokenMetrics metrics;
  metrics.totalTokens = total;
  metrics.inputTokens = input + cacheWrite;
  metrics.outputTokens = output;
  metrics.cachedTokens = cacheRead;
  return metrics;
}

std::optional<AssistantUsage> AssistantUsage::from(const JsonObject& line, const UsageValue& fallbackTimestamp) {
  if (line.string("type") != "message") return std::nullopt;
  const auto message = line.object("message");
  if (!message || message->string("role") != "assistant") return std::nullopt;
  const auto usage = message->object("usage");
  if (!usage) return std::nullopt;
  if (const auto report = message->object("usageReport"); report && report->string("state") == "unavailable") {
    return std::nullopt;
  }

  auto date = LocalUsageReader::date(message->value("timestamp"));
  if (!date) date = LocalUsageReader::date(line.value("timestamp"));
  if (!date) date = LocalUsageReader::date(fallbackTimestamp);
  if (!date) return std::nullopt;

  const auto figure = [&](std::string_view key) { return LocalUsageReader::integer(usage->value(key)); };
  AssistantUsage result{*date, figure("input"), figure("output"), figure("cacheRead"), figure("cacheWrite"), 0};
  result.total = result.input + result.output + result.cacheRead + result.cacheWrite;
  if (result.total < 1) result.total = figure("totalTokens");
  if (result.total < 1) return std::nullopt;
  return result;
}

}  // namespace quillmeter
