#pragma once

#include "base/Date.h"
#include "screentime/model/ActivityApp.h"

namespace quillmeter {

// One continuous use of an application; `start` < `end`.
struct ActivitySpan {
  Date start;
  Date end;
  ActivityApp app;

  double seconds() const { return end.secondsSince(start); }
  friend bool operator==(const ActivitySpan&, const ActivitySpan&) = default;
};

}  // namespace quillmeter
