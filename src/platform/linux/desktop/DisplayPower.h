#pragma once

#include <functional>

namespace quillmeter {

// Whether the displays are dark to save power. Main thread.
class DisplayPower {
 public:
  virtual ~DisplayPower() = default;
  // Called at each change, with true when all displays have gone dark. One handler; an empty one ends it. Never from
  // within a question that somebody else asks of the same window system.
  virtual void setHandler(std::function<void(bool asleep)> handler) = 0;
  virtual bool areAsleep() const = 0;
};

}  // namespace quillmeter
