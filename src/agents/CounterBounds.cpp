#include "agents/CounterBounds.h"

#include <algorithm>

namespace quillmeter {

namespace {

// Two such values do not wrap; everything above maximumSum means the same.
constexpr std::uint64_t top = std::uint64_t{1} << 63;

std::uint64_t magnitude(std::int64_t value) {
  const auto bits = static_cast<std::uint64_t>(value);
  return value < 0 ? std::uint64_t{0} - bits : bits;
}

std::uint64_t saturatingAdd(std::uint64_t a, std::uint64_t b) {
  return std::min(top, a + std::min(b, top - a));
}

}  // namespace

void CounterMagnitude::add(const AgentTokenMetrics& metrics) {
  total_ = saturatingAdd(total_, magnitude(metrics.totalTokens));
  input_ = saturatingAdd(input_, magnitude(metrics.inputTokens));
  output_ = saturatingAdd(output_, magnitude(metrics.outputTokens));
  cached_ = saturatingAdd(cached_, magnitude(metrics.cachedTokens));
}

void CounterMagnitude::add(const CounterMagnitude& other) {
  total_ = saturatingAdd(total_, other.total_);
  input_ = saturatingAdd(input_, other.input_);
  output_ = saturatingAdd(output_, other.output_);
  cached_ = saturatingAdd(cached_, other.cached_);
}

bool CounterMagnitude::isSummable() const {
  constexpr auto bound = static_cast<std::uint64_t>(maximumSum);
  return total_ <= bound && input_ <= bound && output_ <= bound && cached_ <= bound;
}

}  // namespace quillmeter
