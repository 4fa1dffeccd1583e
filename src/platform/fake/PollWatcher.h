#pragma once

#include <memory>
#include <vector>

#include "platform/DescriptorWatcher.h"

namespace quillmeter {

// Watches real descriptors for a test, which polls them itself instead of running an event loop.
class PollWatcher final : public DescriptorWatcher {
 public:
  PollWatcher();
  ~PollWatcher() override;
  std::unique_ptr<DescriptorWatch> watch(int descriptor, DescriptorEvent event, std::function<void()> ready) override;

  // Waits up to `timeoutMilliseconds` for one of the descriptors and calls what is ready; false when nothing was.
  bool pollOnce(int timeoutMilliseconds);
  std::size_t watches() const;

 private:
  struct Entry;
  class PollWatch;
  std::vector<std::shared_ptr<Entry>> entries_;
};

}  // namespace quillmeter
