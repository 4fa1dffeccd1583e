#include "base/Iso8601.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>

namespace quillmeter {

namespace {

// Takes what it reads off the front of the text; any mismatch leaves `failed` set.
struct Reader {
  std::string_view rest;
  bool failed = false;

  int digits(std::size_t count) {
    if (rest.size() < count) return fail();
    int value = 0;
    for (std::size_t i = 0; i < count; ++i) {
      const char c = rest[i];
      if (c < '0' || c > '9') return fail();
      value = value * 10 + (c - '0');
    }
    rest.remove_prefix(count);
    return value;
  }

  void literal(char c) {
    if (!take(c)) fail();
  }

  bool take(char c) {
    if (rest.empty() || rest.front() != c) return false;
    rest.remove_prefix(1);
    return true;
  }

  int fail() {
    failed = true;
    rest = {};
    return 0;
  }
};

int readFraction(Reader& reader) {
  if (!reader.take('.')) return 0;
  int microseconds = 0;
  int digits = 0;
  while (!reader.rest.empty() && reader.rest.front() >= '0' && reader.rest.front() <= '9') {
    if (digits < 6) microseconds = microseconds * 10 + (reader.rest.front() - '0');
    ++digits;
    reader.rest.remove_prefix(1);
  }
  if (digits == 0) reader.fail();
  for (; digits < 6; ++digits) microseconds *= 10;
  return microseconds;
}

// Seconds east of Greenwich.
int readZone(Reader& reader) {
  if (reader.take('Z')) return 0;
  const bool west = reader.take('-');
  if (!west) reader.literal('+');
  const int hours = reader.digits(2);
  reader.take(':');
  const int minutes = reader.digits(2);
  if (hours > 23 || minutes > 59) reader.fail();
  const int offset = (hours * 60 + minutes) * 60;
  return west ? -offset : offset;
}

}  // namespace

std::optional<Date> parseIso8601(std::string_view text) {
  Reader reader{text};
  const int year = reader.digits(4);
  reader.literal('-');
  const int month = reader.digits(2);
  reader.literal('-');
  const int day = reader.digits(2);
  reader.literal('T');
  const int hour = reader.digits(2);
  reader.literal(':');
  const int minute = reader.digits(2);
  reader.literal(':');
  const int second = reader.digits(2);
  const int fraction = readFraction(reader);
  const int offset = readZone(reader);
  if (reader.failed || !reader.rest.empty() || hour > 23 || minute > 59 || second > 59) return std::nullopt;

  const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(month)},
                                         std::chrono::day{static_cast<unsigned>(day)}};
  if (!date.ok()) return std::nullopt;
  const std::int64_t days = std::chrono::sys_days{date}.time_since_epoch().count();
  const std::int64_t seconds = days * 86'400 + hour * 3'600 + minute * 60 + second - offset;
  const Date result{seconds * Date::microsecondsPerSecond + fraction};
  if (result < Date::distantPast() || result > Date::distantFuture()) return std::nullopt;
  return result;
}

std::string formatIso8601(Date date) {
  date = std::clamp(date, Date::distantPast(), Date::distantFuture());
  const std::chrono::sys_time<std::chrono::microseconds> time{std::chrono::microseconds{date.microseconds}};
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day calendar{day};
  const std::int64_t inDay = (time - day).count();
  const auto seconds = static_cast<int>(inDay / Date::microsecondsPerSecond);
  char buffer[48];
  int length = std::snprintf(buffer, sizeof buffer, "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(calendar.year()),
                             static_cast<unsigned>(calendar.month()), static_cast<unsigned>(calendar.day()),
                             seconds / 3600, seconds / 60 % 60, seconds % 60);
  std::string text(buffer, static_cast<std::size_t>(length));
  if (const auto fraction = static_cast<int>(inDay % Date::microsecondsPerSecond); fraction != 0) {
    length = std::snprintf(buffer, sizeof buffer, ".%06d", fraction);
    text.append(buffer, static_cast<std::size_t>(length));
    text.erase(text.find_last_not_of('0') + 1);
  }
  return text += 'Z';
}

}  // namespace quillmeter
