#include <chrono>

#include "base/TimeZoneRules.h"

namespace quillmeter {

namespace {

bool isLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

struct Reader {
  std::string_view rest;
  bool failed = false;

  bool take(char c) {
    if (rest.empty() || rest.front() != c) return false;
    rest.remove_prefix(1);
    return true;
  }

  void name() {
    std::size_t length = 0;
    if (take('<')) {
      while (length < rest.size() &&
             (isLetter(rest[length]) || isDigit(rest[length]) || rest[length] == '+' || rest[length] == '-'))
        ++length;
      if (length < 3 || length == rest.size() || rest[length] != '>') failed = true;
      rest.remove_prefix(failed ? rest.size() : length + 1);
      return;
    }
    while (length < rest.size() && isLetter(rest[length])) ++length;
    if (length < 3) failed = true;
    rest.remove_prefix(length);
  }

  int number(int least, int greatest) {
    if (rest.empty() || !isDigit(rest.front())) failed = true;
    int value = 0;
    for (; !rest.empty() && isDigit(rest.front()) && value <= greatest; rest.remove_prefix(1)) {
      value = value * 10 + (rest.front() - '0');
    }
    if (value < least || value > greatest) failed = true;
    return failed ? least : value;
  }

  // [+-]hh[:mm[:ss]]
  int time(int maximumHours) {
    const bool negative = take('-');
    if (!negative) take('+');
    int seconds = number(0, maximumHours) * 3'600;
    if (take(':')) {
      seconds += number(0, 59) * 60;
      if (take(':')) seconds += number(0, 59);
    }
    return negative ? -seconds : seconds;
  }

  YearlySwitch yearlySwitch() {
    YearlySwitch result;
    if (take('M')) {
      result.month = number(1, 12);
      if (!take('.')) failed = true;
      result.week = number(1, 5);
      if (!take('.')) failed = true;
      result.day = number(0, 6);
    } else if (take('J')) {
      result.form = YearlySwitch::Form::julianWithoutLeapDay;
      result.day = number(1, 365);
    } else {
      result.form = YearlySwitch::Form::dayOfYear;
      result.day = number(0, 365);
    }
    constexpr int maximumSwitchHours = 167;
    if (take('/')) result.seconds = time(maximumSwitchHours);
    return result;
  }
};

}  // namespace

std::int64_t YearlySwitch::localSeconds(int year) const {
  using namespace std::chrono;
  const std::chrono::year calendarYear{year};
  sys_days date{calendarYear / January / 1};
  if (form == Form::dayOfYear) {
    date += days{day};
  } else if (form == Form::julianWithoutLeapDay) {
    constexpr int lastDayOfFebruary = 59;
    date += days{day - 1 + (calendarYear.is_leap() && day > lastDayOfFebruary ? 1 : 0)};
  } else {
    const auto ofMonth = calendarYear / std::chrono::month{static_cast<unsigned>(month)};
    const std::chrono::weekday wanted{static_cast<unsigned>(day)};
    date = week == 5 ? sys_days{ofMonth / wanted[last]} : sys_days{ofMonth / wanted[static_cast<unsigned>(week)]};
  }
  return static_cast<std::int64_t>(date.time_since_epoch().count()) * 86'400 + seconds;
}

std::optional<PosixZone> PosixZone::parse(std::string_view text) {
  constexpr int maximumZoneHours = 24;
  Reader reader{text};
  PosixZone zone;
  reader.name();
  zone.standardOffset = -reader.time(maximumZoneHours);
  if (!reader.failed && !reader.rest.empty()) {
    zone.hasDaylight = true;
    reader.name();
    const bool ownOffset = !reader.rest.empty() && reader.rest.front() != ',';
    zone.daylightOffset = ownOffset ? -reader.time(maximumZoneHours) : zone.standardOffset + 3'600;
    Reader rules{reader.rest.empty() ? ",M3.2.0,M11.1.0" : reader.rest};
    if (!rules.take(',')) reader.failed = true;
    zone.daylightBegins = rules.yearlySwitch();
    if (!rules.take(',')) reader.failed = true;
    zone.daylightEnds = rules.yearlySwitch();
    if (rules.failed || !rules.rest.empty()) reader.failed = true;
  }
  if (reader.failed) return std::nullopt;
  return zone;
}

}  // namespace quillmeter
