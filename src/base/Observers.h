#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace quillmeter {

// Ends an observation when it is released. May outlive what it observes.
class Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::shared_ptr<void> keepAlive) : keepAlive_(std::move(keepAlive)) {}
  void reset() { keepAlive_.reset(); }
  explicit operator bool() const { return keepAlive_ != nullptr; }

 private:
  std::shared_ptr<void> keepAlive_;
};

// Those who want to hear of one kind of change. Any thread may add, release and notify; the callbacks run on the
// notifying thread, in the order in which they were added, without a lock held. A callback that is released during a
// notification on the same thread is not called any more.
template <typename... Arguments>
class Observers {
 public:
  using Callback = std::function<void(Arguments...)>;

  [[nodiscard]] Subscription add(Callback callback) {
    auto entry = std::make_shared<Callback>(std::move(callback));
    const std::lock_guard lock(mutex_);
    std::erase_if(entries_, [](const auto& known) { return known.expired(); });
    entries_.push_back(entry);
    return Subscription(std::move(entry));
  }

  void notify(Arguments... arguments) const {
    std::vector<std::weak_ptr<Callback>> entries;
    {
      const std::lock_guard lock(mutex_);
      entries = entries_;
    }
    for (const auto& entry : entries) {
      if (const auto callback = entry.lock()) (*callback)(arguments...);
    }
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::weak_ptr<Callback>> entries_;
};

}  // namespace quillmeter
