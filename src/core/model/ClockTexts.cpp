#include "core/model/ClockTexts.h"

#include <algorithm>
#include <cstdint>

#include <fmt/format.h>

#include "base/L10n.h"

namespace quillmeter {

namespace {

constexpr std::int64_t minutesPerDay = 24 * 60;

std::int64_t minuteOf(Date date) {
  return date.microseconds / (60 * Date::microsecondsPerSecond);
}

}  // namespace

std::string clockText(Date date, const Calendar& calendar) {
  const CalendarTime time = calendar.components(date);
  return fmt::format("{:02}:{:02}", time.hour, time.minute);
}

std::string monthDayText(Date date, const Calendar& calendar) {
  const CalendarDay day = calendar.components(date).day;
  return fmt::format("{:02}-{:02}", day.month, day.day);
}

std::optional<std::string> timeLeftText(Date end, Date now) {
  if (end <= now) return std::nullopt;
  const std::int64_t minutes = std::max<std::int64_t>(minuteOf(end) - minuteOf(now), 1);
  const std::string clock = fmt::format("{:02}:{:02}", minutes / 60 % 24, minutes % 60);
  if (minutes < minutesPerDay) return clock;
  return L10n::format(QM_TR("%d 天 %@"), {std::to_string(minutes / minutesPerDay), clock});
}

}  // namespace quillmeter
