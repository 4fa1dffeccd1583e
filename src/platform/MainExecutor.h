#pragma once

#include <functional>

namespace quillmeter {

// Runs jobs on the main thread, in the order they were posted, after the current turn of its event loop. Any thread may
// post.
class MainExecutor {
 public:
  virtual ~MainExecutor() = default;
  virtual void post(std::function<void()> job) = 0;
};

}  // namespace quillmeter
