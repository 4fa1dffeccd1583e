#pragma once

#include <ctime>
#include <optional>

#include "base/Calendar.h"

namespace quillmeter {

// The user's calendar, made anew when the machine's time zone was changed: laptops travel. Main thread.
class ZoneWatch {
 public:
  explicit ZoneWatch(Weekday firstWeekday);

  const Calendar& calendar() const { return calendar_; }
  // Whether the zone is another one since the last call. One status call; none where TZ names the zone.
  bool hasChanged();

 private:
  struct Stamp {
    std::timespec changedAt{};
    unsigned long inode = 0;
    bool operator==(const Stamp& other) const;
  };
  static std::optional<Stamp> stamp();

  const Weekday firstWeekday_;
  std::optional<Stamp> stamp_;
  Calendar calendar_;
};

}  // namespace quillmeter
