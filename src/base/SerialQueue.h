#pragma once

#include <functional>
#include <memory>
#include <string>

namespace quillmeter {

// Runs jobs one after another, in the order they came. Jobs take values and give values; a result goes back by
// MainExecutor.
class SerialQueue {
 public:
  using Job = std::function<void()>;
  virtual ~SerialQueue() = default;
  virtual void post(Job job) = 0;
};

// How much the scheduler favours a queue's thread. `utility`: nice 10 and the idle I/O class (Linux), for work nobody
// waits for.
enum class QueuePriority { normal, utility };

// A serial queue on a thread of its own. The destructor drops the jobs that have not begun, lets the running one finish
// and joins. An exception that leaves a job ends the process: jobs are written not to throw.
class ThreadSerialQueue final : public SerialQueue {
 public:
  // `label` names the queue; the thread gets its last dotted part (15 bytes at most, the kernel's bound).
  explicit ThreadSerialQueue(std::string label, QueuePriority priority = QueuePriority::normal);
  ~ThreadSerialQueue() override;
  void post(Job job) override;
  const std::string& label() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quillmeter
