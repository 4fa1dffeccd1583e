#include "platform/fake/ManualTimerFactory.h"

#include <algorithm>
#include <utility>

namespace quillmeter {

struct ManualTimerFactory::Entry {
  Running timer;
  std::function<void()> fire;
  double due = 0;
  bool ended = false;
};

class ManualTimerFactory::ManualTimer final : public Timer {
 public:
  explicit ManualTimer(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}
  ~ManualTimer() override { entry_->ended = true; }

 private:
  std::shared_ptr<Entry> entry_;
};

ManualTimerFactory::ManualTimerFactory(ManualClock* clock, ManualMonotonicClock* monotonic)
    : clock_(clock), monotonic_(monotonic) {}

ManualTimerFactory::~ManualTimerFactory() = default;

std::unique_ptr<Timer> ManualTimerFactory::repeating(double interval, double tolerance, std::function<void()> fire) {
  return add({interval, tolerance, true}, std::move(fire));
}

std::unique_ptr<Timer> ManualTimerFactory::once(double delay, std::function<void()> fire) {
  return add({delay, 0, false}, std::move(fire));
}

std::unique_ptr<Timer> ManualTimerFactory::add(Running timer, std::function<void()> fire) {
  auto entry = std::make_shared<Entry>(Entry{timer, std::move(fire), now_ + std::max(timer.interval, 0.0)});
  entries_.push_back(entry);
  return std::make_unique<ManualTimer>(std::move(entry));
}

void ManualTimerFactory::moveTo(double time) {
  const double step = time - now_;
  now_ = time;
  if (clock_ != nullptr) clock_->advance(step);
  if (monotonic_ != nullptr) monotonic_->advance(step);
}

void ManualTimerFactory::advance(double seconds) {
  const double end = now_ + seconds;
  for (;;) {
    std::erase_if(entries_, [](const auto& entry) { return entry->ended; });
    const auto next = std::min_element(entries_.begin(), entries_.end(),
                                       [](const auto& a, const auto& b) { return a->due < b->due; });
    if (next == entries_.end() || (*next)->due > end) break;
    const std::shared_ptr<Entry> entry = *next;  // its call may end it or start others
    moveTo(std::max(entry->due, now_));
    if (entry->timer.repeats) {
      entry->due += entry->timer.interval;
    } else {
      entry->ended = true;
    }
    entry->fire();
  }
  moveTo(end);
}

std::vector<ManualTimerFactory::Running> ManualTimerFactory::running() const {
  std::vector<Running> timers;
  for (const auto& entry : entries_) {
    if (!entry->ended) timers.push_back(entry->timer);
  }
  return timers;
}

}  // namespace quillmeter
