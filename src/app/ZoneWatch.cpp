#include "app/ZoneWatch.h"

#include <sys/stat.h>

#include <cstdlib>

namespace quillmeter {

bool ZoneWatch::Stamp::operator==(const Stamp& other) const {
  return changedAt.tv_sec == other.changedAt.tv_sec && changedAt.tv_nsec == other.changedAt.tv_nsec &&
         inode == other.inode;
}

ZoneWatch::ZoneWatch(Weekday firstWeekday)
    : firstWeekday_(firstWeekday), stamp_(stamp()), calendar_(Calendar::current(firstWeekday)) {}

// The link itself: zones are changed by making it point elsewhere.
std::optional<ZoneWatch::Stamp> ZoneWatch::stamp() {
  struct stat status {};
  if (std::getenv("TZ") != nullptr || ::lstat("/etc/localtime", &status) != 0) return std::nullopt;
  return Stamp{status.st_ctim, status.st_ino};
}

bool ZoneWatch::hasChanged() {
  auto now = stamp();
  if (now == stamp_) return false;
  stamp_ = now;
  calendar_ = Calendar::current(firstWeekday_);
  return true;
}

}  // namespace quillmeter
