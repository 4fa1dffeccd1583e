#pragma once

#include <string>
#include <vector>

#include "ui/tray/TrayMenu.h"

class QImage;
class QRect;

namespace quillmeter {

// What a tray shows and tells of the item. Asked by the backend when the tray wants it, so that nothing is made that
// nobody looks at. Main thread.
class TrayContent {
 public:
  virtual ~TrayContent() = default;
  virtual QImage iconImage(int pixels) = 0;
  virtual std::string tooltipText() = 0;
  virtual std::vector<TrayMenuEntry> menu() = 0;

  virtual void activated(const QRect& icon) = 0;
  virtual void secondaryActivated() = 0;
  virtual void chosen(TrayCommand command) = 0;
};

// One way to be in a tray. Shown from creation to destruction.
class TrayBackend {
 public:
  virtual ~TrayBackend() = default;
  virtual void iconChanged() = 0;
  // The figures of the tooltip have changed, at this time (seconds); passed on as far as it is worth it.
  virtual void tooltipChanged(double now) = 0;
  virtual void textsChanged() = 0;
};

}  // namespace quillmeter
