#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmeter {

// One day of the year on which a daylight-saving rule switches, as POSIX writes it in TZ.
struct YearlySwitch {
  enum class Form { julianWithoutLeapDay, dayOfYear, weekdayOfMonth };
  Form form = Form::weekdayOfMonth;
  int month = 1;        // 1 ... 12 (weekdayOfMonth)
  int week = 1;         // 1 ... 5; 5 is the last one
  int day = 0;          // weekday 0 ... 6, or the day of the year
  int seconds = 7'200;  // local time of day; may be negative or beyond 24 h

  // Seconds from 1970-01-01 00:00 local time to the switch in `year`, in the wall-clock time that is left.
  std::int64_t localSeconds(int year) const;
};

// A POSIX zone: one offset for the whole year, or two with yearly switches.
struct PosixZone {
  int standardOffset = 0;  // seconds east of Greenwich
  bool hasDaylight = false;
  int daylightOffset = 0;
  YearlySwitch daylightBegins;
  YearlySwitch daylightEnds;

  // "CST-8", "<+0330>-3:30", "CET-1CEST,M3.5.0,M10.5.0/3". Without rules the switches of the United States count.
  static std::optional<PosixZone> parse(std::string_view text);
};

// The offsets of one time zone over all of time, read from one compiled zone file (RFC 8536) or a POSIX text. Reading
// one file costs microseconds, where listing the whole database costs milliseconds at each start of a program. The text
// at the end of a zone file, which continues it beyond its last transition, is honoured. Immutable.
class TimeZoneRules {
 public:
  // A stretch of time with one offset: [.., end).
  struct Stretch {
    int offset = 0;        // seconds east of Greenwich
    std::int64_t end = 0;  // seconds since 1970; the greatest integer when the offset stays for ever
  };

  static constexpr int maximumOffset = 26 * 3'600;

  static std::optional<TimeZoneRules> fromFile(const std::filesystem::path& file);
  static std::optional<TimeZoneRules> fromBytes(std::string_view bytes);
  explicit TimeZoneRules(const PosixZone& zone) : continuation_(zone) {}

  // The stretch that holds the instant.
  Stretch at(std::int64_t seconds) const;

 private:
  TimeZoneRules() = default;
  Stretch continuedAt(std::int64_t seconds) const;

  std::vector<std::int64_t> transitions_;  // ascending
  std::vector<int> offsets_;               // from each transition on
  int firstOffset_ = 0;                    // before the first transition
  std::optional<PosixZone> continuation_;  // after the last transition
};

}  // namespace quillmeter
