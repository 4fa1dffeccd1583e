#include "base/SerialQueue.h"

#include <pthread.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#include "base/CheckedInt.h"

namespace quillmeter {

namespace {

void nameThread(const std::string& label) {
  constexpr std::size_t maximumNameBytes = 15;
  const std::string name = label.substr(label.rfind('.') + 1).substr(0, maximumNameBytes);
  pthread_setname_np(pthread_self(), name.c_str());
}

// Best effort: a container may forbid either, and the work is the same without.
void lowerPriority() {
  constexpr int niceness = 10;
  constexpr int ioprioWhoProcess = 1;
  constexpr int ioprioClassIdle = 3 << 13;
  const auto thread = static_cast<pid_t>(syscall(SYS_gettid));
  // Linux keeps niceness for each thread, so the thread's id moves this one only.
  setpriority(PRIO_PROCESS, static_cast<id_t>(thread), niceness);
  syscall(SYS_ioprio_set, ioprioWhoProcess, thread, ioprioClassIdle);
}

}  // namespace

struct ThreadSerialQueue::State {
  std::string label;
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<Job> jobs;
  bool stopping = false;
  std::jthread thread;

  void run(QueuePriority priority) {
    nameThread(label);
    if (priority == QueuePriority::utility) lowerPriority();
    while (Job job = nextJob()) job();
  }

  Job nextJob() {
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return stopping || !jobs.empty(); });
    if (stopping) return {};
    Job job = std::move(jobs.front());
    jobs.pop_front();
    return job;
  }
};

ThreadSerialQueue::ThreadSerialQueue(std::string label, QueuePriority priority) : state_(std::make_unique<State>()) {
  state_->label = std::move(label);
  state_->thread = std::jthread([state = state_.get(), priority] { state->run(priority); });
}

ThreadSerialQueue::~ThreadSerialQueue() {
  if (state_->thread.get_id() == std::this_thread::get_id()) fatalError("a serial queue was destroyed by its own job");
  std::deque<Job> dropped;
  {
    const std::lock_guard lock(state_->mutex);
    state_->stopping = true;
    dropped.swap(state_->jobs);
  }
  state_->changed.notify_one();
  dropped.clear();
  state_->thread.join();
}

void ThreadSerialQueue::post(Job job) {
  if (!job) return;
  {
    const std::lock_guard lock(state_->mutex);
    if (state_->stopping) return;
    state_->jobs.push_back(std::move(job));
  }
  state_->changed.notify_one();
}

const std::string& ThreadSerialQueue::label() const {
  return state_->label;
}

}  // namespace quillmeter
