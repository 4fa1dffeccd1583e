#pragma once

#include <optional>
#include <string>

#include "base/Calendar.h"
#include "base/Date.h"

namespace quillmeter {

// "14:05": on the clock of the calendar's zone.
std::string clockText(Date date, const Calendar& calendar);

// "11-21": its month and day there.
std::string monthDayText(Date date, const Calendar& calendar);

// What is left until `end`: "02:05", "3 天 04:10". Changes only with the minute of the clock. Absent when the moment is
// over.
std::optional<std::string> timeLeftText(Date end, Date now);

}  // namespace quillmeter
