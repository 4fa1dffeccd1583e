#pragma once

#include <memory>

#include "platform/MainExecutor.h"

class QObject;

namespace quillmeter {

// Jobs for the thread that made it, by the queue of its Qt event loop. Jobs that were not run when it is destroyed are
// dropped.
class QtMainExecutor final : public MainExecutor {
 public:
  QtMainExecutor();
  ~QtMainExecutor() override;
  void post(std::function<void()> job) override;

 private:
  std::unique_ptr<QObject> context_;
};

}  // namespace quillmeter
