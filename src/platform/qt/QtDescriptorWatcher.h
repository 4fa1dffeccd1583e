#pragma once

#include "platform/DescriptorWatcher.h"

namespace quillmeter {

// Watches descriptors in the Qt event loop of the calling thread.
class QtDescriptorWatcher final : public DescriptorWatcher {
 public:
  std::unique_ptr<DescriptorWatch> watch(int descriptor, DescriptorEvent event, std::function<void()> ready) override;
};

}  // namespace quillmeter
