#include "agents/UsageSums.h"

namespace quillmeter {

namespace {

constexpr int hoursPerDay = 24;
constexpr int daysPerWeek = 7;

}  // namespace

UsageRangeStarts::UsageRangeStarts(const Calendar& calendar, Date now)
    : today(calendar.startOfDay(now)), week(calendar.startOfWeek(now)), month(calendar.startOfMonth(now)) {}

UsageSums::UsageSums(const Calendar& calendar, const UsageRangeStarts& starts)
    : starts_(starts),
      hourly_(starts.today, hoursPerDay, CalendarUnit::hour, calendar),
      weekly_(starts.week, daysPerWeek, CalendarUnit::day, calendar),
      monthly_(starts.month, calendar.daysInMonth(starts.month), CalendarUnit::day, calendar) {}

UsageSums::Cell UsageSums::cellOf(Date date) const {
  Cell cell;
  cell.inToday = date >= starts_.today;
  cell.inWeek = date >= starts_.week;
  cell.inMonth = date >= starts_.month;
  if (!cell.inMonth) return cell;
  cell.hour = hourly_.indexOf(date);
  cell.weekDay = weekly_.indexOf(date);
  cell.monthDay = monthly_.indexOf(date);
  return cell;
}

void UsageSums::addAt(const Cell& cell, const AgentTokenMetrics& metrics, UsageRangeMetrics& ranges) {
  if (cell.inToday) ranges.today += metrics;
  if (cell.inWeek) ranges.week += metrics;
  if (cell.inMonth) ranges.month += metrics;
  if (cell.hour) hourly_.addAt(*cell.hour, metrics);
  if (cell.weekDay) weekly_.addAt(*cell.weekDay, metrics);
  if (cell.monthDay) monthly_.addAt(*cell.monthDay, metrics);
}

void UsageSums::addToBuckets(Date date, const AgentTokenMetrics& metrics) {
  UsageRangeMetrics unused;
  addAt(cellOf(date), metrics, unused);
}

void UsageSums::add(Date date, const AgentTokenMetrics& metrics, UsageRangeMetrics& ranges) {
  addAt(cellOf(date), metrics, ranges);
}

UsageRangeMetrics UsageSums::add(const UsageTimeline& events, const AgentTokenMetrics& sum, Date first, Date last) {
  UsageRangeMetrics ranges;
  const Cell cell = cellOf(first);
  if (cell == cellOf(last)) {  // most files lie in one day, and in one hour of today or in none
    addAt(cell, sum, ranges);
    return ranges;
  }
  UsageTimeline::Reader reader(events);
  for (AgentUsageEvent event; reader.next(event);) add(event.date, event.metrics, ranges);
  return ranges;
}

bool UsageSums::admit(const CounterMagnitude& magnitude) {
  CounterMagnitude all = admitted_;
  all.add(magnitude);
  if (!all.isSummable()) return false;
  admitted_ = all;
  return true;
}

}  // namespace quillmeter
