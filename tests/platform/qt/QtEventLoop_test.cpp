#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/qt/QtDescriptorWatcher.h"
#include "platform/qt/QtMainExecutor.h"
#include "platform/qt/QtTimerFactory.h"

namespace quillmeter {
namespace {

struct QtEventLoopTest : testing::Test {
  // Turns the event loop until the condition holds; false after ten seconds.
  bool wait(const std::function<bool()>& condition) {
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
      if (elapsed.elapsed() > 10'000) return false;
      QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
  }
  void turn() { QCoreApplication::processEvents(); }

  int argumentCount = 1;
  char name[5] = "test";
  char* arguments[2] = {name, nullptr};
  QCoreApplication application{argumentCount, arguments};
};

TEST_F(QtEventLoopTest, jobsOfEveryThreadRunOnTheMainThreadInTheirOrder) {
  QtMainExecutor executor;
  std::vector<int> order;
  bool onMainThread = true;
  const auto main = std::this_thread::get_id();
  const auto job = [&](int number) {
    return [&, number] {
      order.push_back(number);
      onMainThread = onMainThread && std::this_thread::get_id() == main;
    };
  };
  executor.post(job(1));
  std::thread([&] { executor.post(job(2)); }).join();
  executor.post([&] { executor.post(job(4)); });
  executor.post(job(3));
  EXPECT_TRUE(order.empty());  // never within the call
  EXPECT_TRUE(wait([&] { return order.size() == 4; }));
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
  EXPECT_TRUE(onMainThread);
}

TEST_F(QtEventLoopTest, jobsOfAnExecutorThatIsGoneAreDropped) {
  auto executor = std::make_unique<QtMainExecutor>();
  const auto token = std::make_shared<int>();
  executor->post([token] { ADD_FAILURE(); });
  executor.reset();
  turn();
  EXPECT_EQ(token.use_count(), 1);
}

TEST_F(QtEventLoopTest, timersRepeatOrFireOnceUntilTheyEnd) {
  QtTimerFactory timers;
  int repeated = 0, once = 0;
  auto repeating = timers.repeating(0.001, 0, [&] { ++repeated; });
  const auto single = timers.once(0, [&] { ++once; });
  const auto negative = timers.once(-5, [&] { ++once; });
  EXPECT_TRUE(wait([&] { return repeated >= 3 && once == 2; }));
  repeating.reset();
  const int last = repeated;
  QElapsedTimer elapsed;
  elapsed.start();
  EXPECT_TRUE(wait([&] { return elapsed.elapsed() > 5; }));
  EXPECT_EQ(repeated, last);
  EXPECT_EQ(once, 2);
}

TEST_F(QtEventLoopTest, aTimerMayEndItselfInItsOwnCall) {
  QtTimerFactory timers;
  std::unique_ptr<Timer> timer;
  int fired = 0;
  const auto token = std::make_shared<int>();
  timer = timers.repeating(0.001, 0, [&fired, &timer, token] {
    timer.reset();
    fired += 1 + *token;  // what the call holds is still there
  });
  EXPECT_TRUE(wait([&] { return fired > 0 && token.use_count() == 1; }));
  EXPECT_EQ(fired, 1);
}

TEST_F(QtEventLoopTest, aWatchCallsWhileThereIsSomethingToReadAndMayEndItself) {
  int ends[2];
  ASSERT_EQ(::pipe2(ends, O_CLOEXEC | O_NONBLOCK), 0);
  QtDescriptorWatcher watcher;
  std::string read;
  std::unique_ptr<DescriptorWatch> watch;
  watch = watcher.watch(ends[0], DescriptorEvent::readable, [&] {
    char letter = 0;
    ASSERT_EQ(::read(ends[0], &letter, 1), 1);
    read += letter;
    if (letter == 'c') watch.reset();
  });
  turn();
  EXPECT_EQ(read, "");
  ASSERT_EQ(::write(ends[1], "abcd", 4), 4);
  EXPECT_TRUE(wait([&] { return !watch; }));
  turn();
  EXPECT_EQ(read, "abc");

  int written = 0;
  const auto writable = watcher.watch(ends[1], DescriptorEvent::writable, [&] { ++written; });
  EXPECT_TRUE(wait([&] { return written > 0; }));
  ::close(ends[0]);
  ::close(ends[1]);
}

}  // namespace
}  // namespace quillmeter
