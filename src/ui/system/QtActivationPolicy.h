#pragma once

#include <memory>

#include "platform/ActivationPolicy.h"

namespace quillmeter {

// Taskbar presence of this program's windows: those that are open and those that open later. On X11 by the window
// manager's "skip taskbar" state; elsewhere windows are always listed, so that hiding them is refused. Owned by the
// composition, which keeps the QApplication alive longer; main thread.
class QtActivationPolicy final : public ActivationPolicy {
 public:
  QtActivationPolicy();
  ~QtActivationPolicy() override;
  bool setListed(bool listed) override;
  void activate() override;

 private:
  class WindowFilter;
  std::unique_ptr<WindowFilter> filter_;
};

}  // namespace quillmeter
