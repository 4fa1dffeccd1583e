#pragma once

#include <cstdint>
#include <string>

#include "base/Date.h"

namespace quillmeter {

// The texts of token counts, fractions and relative times. Stateless; every thread.
namespace MetricFormatter {

// 999, 12.3K, 1.5M. Never a larger unit, never promoted by rounding (999,999 is 1000.0K); always with a POSIX decimal
// point.
std::string tokens(std::int64_t count);

// A fraction 0 ... 1 as a whole percentage, halves away from zero: "37%". What is not finite is fatal: callers clamp.
std::string percent(double fraction);

// "刚刚", "5 秒前", "2 小时后"; "—" for the distant past, which stands for never.
std::string relative(Date date, Date now);

}  // namespace MetricFormatter

}  // namespace quillmeter
