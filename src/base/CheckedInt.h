#pragma once

#include <cstdint>
#include <string_view>

namespace quillmeter {

// Ends the process with `message` on standard error. For broken invariants of our own, never for bad input.
[[noreturn]] void fatalError(std::string_view message);

// Sums and differences of counters: an overflow is a broken invariant, since every input is bounded before it gets
// here.
inline std::int64_t checkedAdd(std::int64_t a, std::int64_t b) {
  std::int64_t result = 0;
  if (__builtin_add_overflow(a, b, &result)) fatalError("integer overflow in an addition");
  return result;
}

inline std::int64_t checkedSubtract(std::int64_t a, std::int64_t b) {
  std::int64_t result = 0;
  if (__builtin_sub_overflow(a, b, &result)) fatalError("integer overflow in a subtraction");
  return result;
}

}  // namespace quillmeter
