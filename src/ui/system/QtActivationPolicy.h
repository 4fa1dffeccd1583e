#pragma once

#include <memory>

#include "platform/ActivationPolicy.h"

namespace quillmeter {

class X11Taskbar;

// Taskbar presence of this program's windows: those that are open and those that open later. On X11 by the state that
// window managers keep; elsewhere there is no way to leave the taskbar, so that hiding is refused. Owned by the
// composition, which keeps the QApplication alive longer; main thread.
class QtActivationPolicy final : public ActivationPolicy {
 public:
  QtActivationPolicy();
  ~QtActivationPolicy() override;
  bool setListed(bool listed) override;
  void activate() override;

 private:
  std::unique_ptr<X11Taskbar> taskbar_;  // absent where the display is no X server
};

}  // namespace quillmeter
