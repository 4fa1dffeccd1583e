#pragma once

#include <cstdint>
#include <optional>

#include "base/CheckedInt.h"

namespace quillmeter {

// Token counters of one interval; every agent source reports usage in this shape.
struct AgentTokenMetrics {
  std::int64_t totalTokens = 0;  // as the source reports them
  std::int64_t inputTokens = 0;  // not served from a cache
  std::int64_t outputTokens = 0;
  std::int64_t cachedTokens = 0;  // input read from a cache
  std::int64_t sessionCount = 0;  // sessions that contributed

  static constexpr AgentTokenMetrics zero() { return {}; }

  // Field by field; an overflow is fatal.
  friend AgentTokenMetrics operator+(const AgentTokenMetrics& a, const AgentTokenMetrics& b);
  AgentTokenMetrics& operator+=(const AgentTokenMetrics& other) { return *this = *this + other; }
  AgentTokenMetrics subtracting(const AgentTokenMetrics& other) const;
  // The same figures with sessionCount 1 when there is any usage, else 0.
  AgentTokenMetrics countingSessionWhenUsed() const;
  // Share of the input that came from a cache; absent without input.
  std::optional<double> cacheHitRate() const;

  friend bool operator==(const AgentTokenMetrics&, const AgentTokenMetrics&) = default;
};

}  // namespace quillmeter
