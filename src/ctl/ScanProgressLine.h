#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "agents/AgentUsageCollector.h"
#include "ctl/Console.h"

namespace quillmeter::ctl {

// Shows how far a scan has come while this object lives, from half a second on, on standard error when that is a
// terminal; the line is gone afterwards. The thread that draws it exists only then; the console belongs to it until the
// destructor returns.
class ScanProgressLine {
 public:
  ScanProgressLine(Console& console, const AgentUsageCollector& collector);
  ScanProgressLine(const ScanProgressLine&) = delete;
  ScanProgressLine& operator=(const ScanProgressLine&) = delete;
  ~ScanProgressLine();

 private:
  void draw(std::stop_token stop);

  Console& console_;
  const AgentUsageCollector& collector_;
  std::mutex mutex_;
  std::condition_variable_any stopped_;
  std::jthread thread_;
};

}  // namespace quillmeter::ctl
