#include "platform/fake/PollWatcher.h"

#include <poll.h>

#include <algorithm>
#include <utility>

namespace quillmeter {

struct PollWatcher::Entry {
  int descriptor;
  short events;
  std::function<void()> ready;
  bool ended = false;
};

class PollWatcher::PollWatch final : public DescriptorWatch {
 public:
  explicit PollWatch(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}
  ~PollWatch() override { entry_->ended = true; }

 private:
  std::shared_ptr<Entry> entry_;
};

PollWatcher::PollWatcher() = default;
PollWatcher::~PollWatcher() = default;

std::unique_ptr<DescriptorWatch> PollWatcher::watch(int descriptor, DescriptorEvent event,
                                                    std::function<void()> ready) {
  const short events = event == DescriptorEvent::readable ? POLLIN : POLLOUT;
  auto entry = std::make_shared<Entry>(Entry{descriptor, events, std::move(ready)});
  entries_.push_back(entry);
  return std::make_unique<PollWatch>(std::move(entry));
}

bool PollWatcher::pollOnce(int timeoutMilliseconds) {
  std::erase_if(entries_, [](const auto& entry) { return entry->ended; });
  std::vector<pollfd> descriptors;
  for (const auto& entry : entries_) descriptors.push_back({entry->descriptor, entry->events, 0});
  if (::poll(descriptors.data(), descriptors.size(), timeoutMilliseconds) <= 0) return false;
  const auto polled = entries_;  // a call may add and end watches
  for (std::size_t i = 0; i < polled.size(); ++i) {
    if (descriptors[i].revents != 0 && !polled[i]->ended) polled[i]->ready();
  }
  return true;
}

std::size_t PollWatcher::watches() const {
  return static_cast<std::size_t>(
      std::count_if(entries_.begin(), entries_.end(), [](const auto& entry) { return !entry->ended; }));
}

}  // namespace quillmeter
