#include "ui/screentime/ActivityPeriod.h"

#include <algorithm>

#include "screentime/ScreenTimeMonitor.h"

namespace quillmeter {
namespace {

constexpr int daysOfWeek = 7;

Date dayAfter(Date day, int count, const Calendar& calendar) {
  return calendar.startOfDay(calendar.adding(count, CalendarUnit::day, day).value_or(day));
}

Date firstKeptDay(Date today, const Calendar& calendar) {
  return dayAfter(today, -(ScreenTimeMonitor::keptDays - 1), calendar);
}

}  // namespace

void ActivityPeriod::update(Date now, const Calendar& calendar) {
  today_ = calendar.startOfDay(now);
  hold(calendar);
}

void ActivityPeriod::showDay(Date day, const Calendar& calendar) {
  day_ = calendar.startOfDay(day);
  followsToday_ = day_ == today_;
  hold(calendar);
}

void ActivityPeriod::showToday(const Calendar& calendar) {
  showDay(today_, calendar);
}

void ActivityPeriod::move(int steps, const Calendar& calendar) {
  showDay(dayAfter(day_, kind_ == Kind::week ? steps * daysOfWeek : steps, calendar), calendar);
}

bool ActivityPeriod::canMove(int steps, const Calendar& calendar) const {
  const DateInterval moved =
      intervalOf(dayAfter(day_, kind_ == Kind::week ? steps * daysOfWeek : steps, calendar), calendar);
  return steps < 0 ? moved.end > firstKeptDay(today_, calendar) : moved.start <= today_;
}

bool ActivityPeriod::isCurrent(const Calendar& calendar) const {
  const DateInterval shown = interval(calendar);
  return shown.start <= today_ && today_ < shown.end;
}

DateInterval ActivityPeriod::intervalOf(Date day, const Calendar& calendar) const {
  if (kind_ == Kind::day) return {day, dayAfter(day, 1, calendar)};
  const Date start = calendar.startOfWeek(day);
  return {start, dayAfter(start, daysOfWeek, calendar)};
}

void ActivityPeriod::hold(const Calendar& calendar) {
  if (followsToday_) day_ = today_;
  // In a zone that was left, a day began at another instant.
  day_ = calendar.startOfDay(std::clamp(day_, firstKeptDay(today_, calendar), today_));
}

}  // namespace quillmeter
