#pragma once

#include <functional>
#include <memory>

namespace quillmeter {

// Ends the watch when destroyed (also from within its own call). The descriptor is not closed.
class DescriptorWatch {
 public:
  virtual ~DescriptorWatch() = default;
};

enum class DescriptorEvent { readable, writable };

// Lets the platform's own readers wait for sockets in the event loop of the main thread.
class DescriptorWatcher {
 public:
  virtual ~DescriptorWatcher() = default;
  // Calls `ready` on the main thread each time `descriptor` is ready (level-triggered).
  [[nodiscard]] virtual std::unique_ptr<DescriptorWatch> watch(int descriptor, DescriptorEvent event,
                                                               std::function<void()> ready) = 0;
};

}  // namespace quillmeter
