#include "base/Clock.h"

#include <ctime>

namespace quillmeter {

Date SystemClock::now() const {
  timespec time{};
  clock_gettime(CLOCK_REALTIME, &time);
  return Date{static_cast<std::int64_t>(time.tv_sec) * Date::microsecondsPerSecond + time.tv_nsec / 1000};
}

double SystemMonotonicClock::uptime() const {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

}  // namespace quillmeter
