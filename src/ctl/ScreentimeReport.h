#pragma once

#include <string>
#include <vector>

#include "base/Calendar.h"
#include "ctl/Console.h"
#include "screentime/model/ActivityArchive.h"
#include "screentime/model/ActivitySummary.h"

namespace quillmeter::ctl {

struct ScreentimeReportInput {
  const ActivityArchive& archive;
  const ActivitySummary& summary;
  const Calendar& calendar;
  DateInterval interval;
  bool isWeek = false;
};

// "1 小时 05 分", "12 分 03 秒", "7 秒".
std::string durationText(double seconds);

// Totals, a bar an hour or a day, applications and the timeline.
void printScreentimeReport(Console& console, const ScreentimeReportInput& input);
// The same as one JSON object: the summary's fields by name, dates as ISO 8601.
std::string encodeScreentime(const ScreentimeReportInput& input);
// A line of heads and one a span: start, end, seconds, id, name; quoted as RFC 4180 has it.
std::string screentimeCsv(const std::vector<ActivitySpan>& spans);

}  // namespace quillmeter::ctl
