#pragma once

#include <cstdint>

#include "agents/model/AgentTokenMetrics.h"

namespace quillmeter {

// Overflow of a counter is fatal, so no log may come near it: a record with a counter beyond maximumCounter is skipped,
// and what cannot be summed within maximumSum is left out.
inline constexpr std::int64_t maximumCounter = std::int64_t{1} << 59;
inline constexpr std::int64_t maximumSum = std::int64_t{1} << 62;

inline bool isCounterInBounds(std::int64_t value) {
  return value <= maximumCounter && value >= -maximumCounter;
}

// Adds up how much a group of counters can sum to at the very most, whatever their signs; stays at the top once it is
// beyond.
class CounterMagnitude {
 public:
  void add(const AgentTokenMetrics& metrics);
  void add(const CounterMagnitude& other);
  // Whether every partial sum of what was added stays within maximumSum.
  bool isSummable() const;

 private:
  std::uint64_t total_ = 0;
  std::uint64_t input_ = 0;
  std::uint64_t output_ = 0;
  std::uint64_t cached_ = 0;
};

}  // namespace quillmeter
