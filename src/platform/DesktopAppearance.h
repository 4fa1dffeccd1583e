#pragma once

#include <functional>
#include <string>

namespace quillmeter {

// What the user set for all programs of the desktop. Where nobody tells, nothing is preferred.
struct AppearancePreferences {
  bool dark = false;
  bool highContrast = false;
  bool reducedMotion = false;
  // Family, style and points ("Noto Sans Bold 11"), as the user wrote or chose them. Empty: the toolkit's own.
  std::string fontName = {};
  // What text is to be enlarged by, beside everything else that a display's scale enlarges.
  double textScale = 1;
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
