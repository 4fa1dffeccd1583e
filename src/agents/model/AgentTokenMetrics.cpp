#include "agents/model/AgentTokenMetrics.h"

namespace quillmeter {

AgentTokenMetrics operator+(const AgentTokenMetrics& a, const AgentTokenMetrics& b) {
  return {checkedAdd(a.totalTokens, b.totalTokens), checkedAdd(a.inputTokens, b.inputTokens),
          checkedAdd(a.outputTokens, b.outputTokens), checkedAdd(a.cachedTokens, b.cachedTokens),
          checkedAdd(a.sessionCount, b.sessionCount)};
}

AgentTokenMetrics AgentTokenMetrics::subtracting(const AgentTokenMetrics& other) const {
  return {checkedSubtract(totalTokens, other.totalTokens), checkedSubtract(inputTokens, other.inputTokens),
          checkedSubtract(outputTokens, other.outputTokens), checkedSubtract(cachedTokens, other.cachedTokens),
          checkedSubtract(sessionCount, other.sessionCount)};
}

AgentTokenMetrics AgentTokenMetrics::countingSessionWhenUsed() const {
  AgentTokenMetrics result = *this;
  result.sessionCount = totalTokens > 0 ? 1 : 0;
  return result;
}

std::optional<double> AgentTokenMetrics::cacheHitRate() const {
  const double input = static_cast<double>(inputTokens) + static_cast<double>(cachedTokens);  // may exceed 64 bits
  if (input < 1) return std::nullopt;
  return static_cast<double>(cachedTokens) / input;
}

}  // namespace quillmeter
