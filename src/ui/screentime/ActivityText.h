#pragma once

#include <QString>

#include "base/Calendar.h"
#include "screentime/model/ActivitySummary.h"

namespace quillmeter {

// How dates and durations read on the page of the screen-time record, in the interface language.
namespace ActivityText {

// An application's name as one line: desktops and windows name themselves what they like.
QString name(const ActivityApp& app);
// "1 小时 05 分", "12 分 03 秒", "7 秒".
QString duration(double seconds);
// For the scale of a chart: "30 分钟", "2 小时".
QString scale(double seconds);
// "09:05"
QString clock(Date date, const Calendar& calendar);
// "09:05–10:20"; the end of a day is 24:00.
QString clockRange(Date start, Date end, const Calendar& calendar);
// "11月21日"
QString day(Date date, const Calendar& calendar);
// "11月21日 周六"
QString longDay(Date date, const Calendar& calendar);
// "周六"
QString weekday(Date date, const Calendar& calendar);
// A day, or the first and the last day of a week.
QString period(const DateInterval& interval, bool isWeek, const Calendar& calendar);

}  // namespace ActivityText

}  // namespace quillmeter
