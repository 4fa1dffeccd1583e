#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/Date.h"

namespace quillmeter {

// Reads an internet date-time, "2026-11-21T03:04:05.678Z" or with an offset "+08:00"; first with fractional seconds,
// then without. The whole text has to match: date with dashes, 'T', time with colons, a zone that is 'Z' or a signed
// offset with or without colon (hours and minutes). Fractions beyond microseconds are cut off. Anything else is no
// date: lower-case letters, a comma before the fraction, days that the calendar lacks, 24:00:00, and the leap second
// :60, which POSIX time does not count.
std::optional<Date> parseIso8601(std::string_view text);

// "2026-11-21T03:04:05Z", in UTC; fractional seconds only when they are not zero, without trailing zeros.
std::string formatIso8601(Date date);

}  // namespace quillmeter
