#include "base/Calendar.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <string_view>
#include <utility>

#include "base/TimeZoneRules.h"

namespace quillmeter {

namespace {

constexpr std::int64_t secondsPerHour = 3'600;
constexpr std::int64_t secondsPerDay = 86'400;
constexpr int firstYear = 1;
constexpr int lastYear = 9999;

std::int64_t floorDivide(std::int64_t value, std::int64_t divisor) {
  return value / divisor - (value % divisor < 0 ? 1 : 0);
}

Date clamped(Date date) {
  return std::clamp(date, Date::distantPast(), Date::distantFuture());
}

std::chrono::year_month_day calendarDay(std::int64_t localDay) {
  return std::chrono::sys_days{std::chrono::days{localDay}};
}

std::int64_t dayNumber(const std::chrono::year_month_day& day) {
  return std::chrono::sys_days{day}.time_since_epoch().count();
}

std::filesystem::path databaseFolder() {
  const char* folder = std::getenv("TZDIR");
  return folder != nullptr && *folder == '/' ? folder : "/usr/share/zoneinfo";
}

// A name that stays within the database.
bool isDatabaseName(std::string_view name) {
  return !name.empty() && name.front() != '/' && name.find("..") == std::string_view::npos &&
         name.find('\0') == std::string_view::npos;
}

// "/usr/share/zoneinfo/Asia/Shanghai" is called "Asia/Shanghai".
std::string nameOfFile(const std::string& path) {
  constexpr std::string_view folder = "zoneinfo/";
  const std::size_t at = path.rfind(folder);
  return at == std::string::npos ? path : path.substr(at + folder.size());
}

}  // namespace

struct Calendar::Zone {
  std::string name;
  TimeZoneRules rules;

  // Days since 1970-01-01 of the local date at an instant.
  std::int64_t localDay(Date date) const { return floorDivide(localSeconds(date), secondsPerDay); }

  std::int64_t localSeconds(Date date) const {
    const std::int64_t seconds = floorDivide(date.microseconds, Date::microsecondsPerSecond);
    return seconds + rules.at(seconds).offset;
  }

  struct Instant {
    std::int64_t
        seconds;  // the first instant with the wall-clock time; where it is skipped, the time carried on behind the gap
    std::int64_t afterGap;  // the first instant at or behind the wall-clock time
  };

  // Walks the stretches of equal offset around a wall-clock time, earliest first.
  Instant instantOf(std::int64_t local) const {
    std::int64_t begin = local - TimeZoneRules::maximumOffset;
    for (;;) {
      const TimeZoneRules::Stretch stretch = rules.at(begin);
      const std::int64_t candidate = local - stretch.offset;
      // Earlier than the stretch: skipped by the change that began it, so the offset before that change is the one to
      // count with.
      if (candidate < begin) return {local - rules.at(begin - 1).offset, begin};
      if (candidate < stretch.end) return {candidate, candidate};
      begin = stretch.end;
    }
  }

  Date startOfLocalDay(std::int64_t day) const {
    return Date::fromWholeSeconds(instantOf(day * secondsPerDay).afterGap);
  }
};

Calendar::Calendar(std::shared_ptr<const Zone> zone, Weekday firstWeekday)
    : zone_(std::move(zone)), firstWeekday_((firstWeekday % 7 + 7) % 7) {}

std::optional<Calendar> Calendar::forZone(const std::string& zone, Weekday firstWeekday) {
  if (!isDatabaseName(zone)) return std::nullopt;
  auto rules = TimeZoneRules::fromFile(databaseFolder() / zone);
  if (!rules) return std::nullopt;
  return Calendar(std::make_shared<const Zone>(Zone{zone, std::move(*rules)}), firstWeekday);
}

Calendar Calendar::utc(Weekday firstWeekday) {
  static const auto zone = std::make_shared<const Zone>(Zone{"UTC", TimeZoneRules(PosixZone{})});
  return Calendar(zone, firstWeekday);
}

Calendar Calendar::current(Weekday firstWeekday) {
  const char* variable = std::getenv("TZ");
  std::string text = variable == nullptr ? "/etc/localtime" : variable;
  if (text.starts_with(':')) text.erase(0, 1);
  if (text.starts_with('/')) {
    std::error_code error;
    const std::filesystem::path file = std::filesystem::canonical(text, error);
    if (error) return utc(firstWeekday);
    if (auto rules = TimeZoneRules::fromFile(file)) {
      return Calendar(std::make_shared<const Zone>(Zone{nameOfFile(file.native()), std::move(*rules)}), firstWeekday);
    }
    return utc(firstWeekday);
  }
  if (auto calendar = forZone(text, firstWeekday)) return *calendar;
  if (const auto posix = PosixZone::parse(text)) {
    return Calendar(std::make_shared<const Zone>(Zone{text, TimeZoneRules(*posix)}), firstWeekday);
  }
  return utc(firstWeekday);
}

Date Calendar::startOfDay(Date date) const {
  return zone_->startOfLocalDay(zone_->localDay(clamped(date)));
}

Date Calendar::startOfWeek(Date date) const {
  const Weekday sinceFirst = (weekday(date) - firstWeekday_ + 7) % 7;
  return zone_->startOfLocalDay(zone_->localDay(clamped(date)) - sinceFirst);
}

Date Calendar::startOfMonth(Date date) const {
  const auto day = calendarDay(zone_->localDay(clamped(date)));
  return zone_->startOfLocalDay(dayNumber(day.year() / day.month() / 1));
}

int Calendar::daysInMonth(Date date) const {
  const auto day = calendarDay(zone_->localDay(clamped(date)));
  const std::chrono::year_month_day_last last{day.year() / day.month() / std::chrono::last};
  return static_cast<int>(static_cast<unsigned>(last.day()));
}

std::optional<Date> Calendar::adding(int count, CalendarUnit unit, Date date) const {
  if (date < Date::distantPast() || date > Date::distantFuture()) return std::nullopt;
  if (count == 0) return date;
  const std::int64_t seconds = floorDivide(date.microseconds, Date::microsecondsPerSecond);
  const std::int64_t fraction = date.microseconds - seconds * Date::microsecondsPerSecond;
  std::int64_t moved = 0;
  if (unit == CalendarUnit::hour) {
    moved = seconds + count * secondsPerHour;
  } else {
    moved = zone_->instantOf(zone_->localSeconds(date) + count * secondsPerDay).seconds;
  }
  constexpr std::int64_t first = Date::distantPast().microseconds / Date::microsecondsPerSecond;
  constexpr std::int64_t last = Date::distantFuture().microseconds / Date::microsecondsPerSecond;
  if (moved < first || moved > last) return std::nullopt;
  return Date{moved * Date::microsecondsPerSecond + fraction};
}

int Calendar::wholeUnits(CalendarUnit unit, Date start, Date end) const {
  start = clamped(start);
  end = clamped(end);
  if (unit == CalendarUnit::hour) {
    constexpr std::int64_t microsecondsPerHour = secondsPerHour * Date::microsecondsPerSecond;
    return static_cast<int>(floorDivide(end.microseconds - start.microseconds, microsecondsPerHour));
  }
  // The difference of the dates is right or, with the time of day or a change of offset between them, off by a few.
  auto count = static_cast<int>(zone_->localDay(end) - zone_->localDay(start));
  const auto isAfterEnd = [&](int days) {
    const auto date = adding(days, CalendarUnit::day, start);
    return date ? *date > end : days > 0;
  };
  while (isAfterEnd(count)) --count;
  while (!isAfterEnd(count + 1)) ++count;
  return count;
}

std::optional<Date> Calendar::dateFrom(int year, int month, int day) const {
  if (year < firstYear || year > lastYear || month < 1 || month > 12 || day < 1 || day > 31) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(month)},
                                         std::chrono::day{static_cast<unsigned>(day)}};
  if (!date.ok()) return std::nullopt;
  const Date start = zone_->startOfLocalDay(dayNumber(date));
  // A zone that moved over the date line has skipped a whole day; and a day may begin before Date does.
  if (zone_->localDay(start) != dayNumber(date)) return std::nullopt;
  return start;
}

CalendarTime Calendar::components(Date date) const {
  const std::int64_t local = zone_->localSeconds(clamped(date));
  const std::int64_t dayIndex = floorDivide(local, secondsPerDay);
  const auto inDay = static_cast<int>(local - dayIndex * secondsPerDay);
  const auto day = calendarDay(dayIndex);
  return {{static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
           static_cast<int>(static_cast<unsigned>(day.day()))},
          inDay / 3600,
          inDay / 60 % 60,
          inDay % 60};
}

Weekday Calendar::weekday(Date date) const {
  return static_cast<Weekday>(
      std::chrono::weekday{std::chrono::sys_days{calendarDay(zone_->localDay(clamped(date)))}}.c_encoding());
}

std::string Calendar::zoneName() const {
  return zone_->name;
}

}  // namespace quillmeter
