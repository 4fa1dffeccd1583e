#pragma once

#include <functional>

namespace quillmeter {

// What the user set for all programs of the desktop. Where nobody tells, nothing is preferred.
struct AppearancePreferences {
  bool dark = false;
  bool highContrast = false;
  bool reducedMotion = false;
  friend bool operator==(const AppearancePreferences&, const AppearancePreferences&) = default;
};

// The desktop's appearance settings, kept up to date. Main thread; does not block.
class DesktopAppearance {
 public:
  virtual ~DesktopAppearance() = default;
  virtual AppearancePreferences current() const = 0;
  // Called after each change, the first answer among them. One handler; an empty one ends it.
  virtual void setChangeHandler(std::function<void()> handler) = 0;
};

}  // namespace quillmeter
