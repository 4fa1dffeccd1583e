#include "base/SerialQueue.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <ctime>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "base/Clock.h"

namespace quillmeter {
namespace {

TEST(SerialQueue, runsTheJobsOfEachThreadInItsOrderAndNeverTwoAtOnce) {
  constexpr int threads = 4;
  constexpr int jobsEach = 500;
  std::vector<std::pair<int, int>> seen;  // only the queue touches it: the thread sanitizer would see a second one
  std::atomic<int> running = 0;
  std::promise<void> done;
  ThreadSerialQueue queue("com.kesto.Quillmeter.test");
  {
    std::vector<std::jthread> posters;
    for (int thread = 0; thread < threads; ++thread) {
      posters.emplace_back([&, thread] {
        for (int job = 0; job < jobsEach; ++job) {
          queue.post([&, thread, job] {
            EXPECT_EQ(++running, 1);
            seen.emplace_back(thread, job);
            --running;
          });
        }
      });
    }
  }
  queue.post([&] { done.set_value(); });
  done.get_future().wait();
  ASSERT_EQ(seen.size(), static_cast<std::size_t>(threads * jobsEach));
  std::vector<int> next(threads, 0);
  for (const auto& [thread, job] : seen) EXPECT_EQ(job, next[static_cast<std::size_t>(thread)]++);
}

TEST(SerialQueue, aJobMayPostAnother) {
  std::promise<int> result;
  ThreadSerialQueue queue("queue");
  queue.post([&] { queue.post([&] { result.set_value(7); }); });
  EXPECT_EQ(result.get_future().get(), 7);
}

// Holds the running job until a job that waits behind it is destroyed, which only the destructor does.
TEST(SerialQueue, theDestructorDropsWhatWaitsAndLetsTheRunningJobFinish) {
  std::promise<void> dropped;
  auto signal = std::shared_ptr<void>(nullptr, [&](void*) { dropped.set_value(); });
  bool finished = false;
  std::atomic<int> others = 0;
  {
    ThreadSerialQueue queue("queue");
    std::promise<void> began;
    queue.post([&] {
      began.set_value();
      dropped.get_future().wait();
      queue.post([&] { ++others; });  // comes too late
      finished = true;
    });
    queue.post([&others, held = std::move(signal)] { ++others; });
    queue.post(nullptr);  // no job at all
    began.get_future().wait();
  }
  EXPECT_TRUE(finished);
  EXPECT_EQ(others, 0);
}

TEST(SerialQueue, theThreadIsNamedAndAUtilityThreadGivesWay) {
  struct Seen {
    std::string name;
    int niceness = 0;
  };
  const auto look = [](ThreadSerialQueue& queue) {
    std::promise<Seen> seen;
    queue.post([&] {
      char name[16] = {};
      pthread_getname_np(pthread_self(), name, sizeof name);
      seen.set_value({name, ::getpriority(PRIO_PROCESS, static_cast<id_t>(::syscall(SYS_gettid)))});
    });
    return seen.get_future().get();
  };
  const int own = ::getpriority(PRIO_PROCESS, 0);
  ThreadSerialQueue normal("com.kesto.Quillmeter.quick-status");
  ThreadSerialQueue utility("com.kesto.Quillmeter.a-name-beyond-the-bound", QueuePriority::utility);
  EXPECT_EQ(look(normal).name, "quick-status");
  EXPECT_EQ(look(normal).niceness, own);
  EXPECT_EQ(look(utility).name, "a-name-beyond-t");
  EXPECT_EQ(look(utility).niceness, std::max(own, 10));
  EXPECT_EQ(::getpriority(PRIO_PROCESS, 0), own) << "only the queue's own thread";
  EXPECT_EQ(utility.label(), "com.kesto.Quillmeter.a-name-beyond-the-bound");
}

TEST(Clock, goesForward) {
  const SystemMonotonicClock monotonic;
  const double first = monotonic.uptime();
  EXPECT_LE(first, monotonic.uptime());
  EXPECT_NEAR(SystemClock().now().seconds(), static_cast<double>(std::time(nullptr)), 5.0);
}

}  // namespace
}  // namespace quillmeter
