#pragma once

#include <QPointer>
#include <QRect>

#include "base/Date.h"
#include "ui/UiServices.h"

namespace quillmeter {

class PopoverWindow;

// Opens and closes the popover for clicks on the tray icon. A click on the icon first takes the focus away, which closes
// the popover, and only then arrives: it must not open it again. One, main thread; owns the window while it is open.
class PopoverToggle {
 public:
  // A click that comes so soon after the popover lost the focus is the one that took it.
  static constexpr double sameClickSeconds = 0.4;

  explicit PopoverToggle(const UiServices& services) : services_(services) {}
  ~PopoverToggle();
  PopoverToggle(const PopoverToggle&) = delete;
  PopoverToggle& operator=(const PopoverToggle&) = delete;

  // `icon` in global coordinates, empty when unknown.
  void toggle(const QRect& icon);
  void close();
  // Null while it is closed.
  PopoverWindow* window() const { return window_; }

 private:
  const UiServices& services_;
  QPointer<PopoverWindow> window_;
  Date lostFocusAt_ = Date::distantPast();
};

}  // namespace quillmeter
