#pragma once

#include "base/Calendar.h"
#include "core/model/SystemSnapshot.h"
#include "ctl/Console.h"

namespace quillmeter::ctl {

// One sample of the machine as a table: a gauge and the details of each part.
void printSystemReport(Console& console, const SystemSnapshot& system, const Calendar& calendar);

}  // namespace quillmeter::ctl
