#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <utility>

#include "base/SerialQueue.h"
#include "platform/MainExecutor.h"

namespace quillmeter {

// Jobs that wait until the test runs them, in the order they came.
class ManualJobs {
 public:
  void add(std::function<void()> job) { jobs_.push_back(std::move(job)); }
  std::size_t pending() const { return jobs_.size(); }
  // False when nothing waits.
  bool runNext() {
    if (jobs_.empty()) return false;
    const auto job = std::move(jobs_.front());
    jobs_.pop_front();
    job();
    return true;
  }
  // Runs also what the jobs add meanwhile; gives the number of jobs run.
  std::size_t runAll() {
    std::size_t count = 0;
    while (runNext()) ++count;
    return count;
  }
  void dropAll() { jobs_.clear(); }

 private:
  std::deque<std::function<void()>> jobs_;
};

class ManualQueue final : public SerialQueue, public ManualJobs {
 public:
  void post(Job job) override { add(std::move(job)); }
};

class ManualExecutor final : public MainExecutor, public ManualJobs {
 public:
  void post(std::function<void()> job) override { add(std::move(job)); }
};

}  // namespace quillmeter
