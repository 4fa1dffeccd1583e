#pragma once

#include <optional>
#include <string>

#include "base/LocaleConventions.h"

namespace quillmeter {

// The shortest decimal text that reads back as the same number, never in exponent form, with at least one fractional
// digit: 3.5, 4.0, 12.25. The decimal point is POSIX's. "nan", "inf" and "-inf" for what is not finite.
std::string defaultDecimalText(double value);

// `value` with exactly `fractionDigits` digits, halves to even on the binary value as printf rounds them. POSIX.
std::string fixedDecimalText(double value, int fractionDigits);

// The same with the locale's separators; absent for what is not finite.
std::optional<std::string> localizedDecimalText(double value, int fractionDigits, const LocaleConventions& locale);

// A share in percent, 0 ... 100 (limited above, not below), with two fraction digits, a space and the percent sign:
// "12.50 %".
std::string percentageText(double percent, const LocaleConventions& locale);

}  // namespace quillmeter
