#pragma once

#include <QApplication>

#include "base/Observers.h"
#include "platform/DesktopAppearance.h"
#include "ui/theme/InterfaceFont.h"

namespace quillmeter {

class PreferenceStore;

// Gives the application its style, palette and font: by the setting "settings.appTheme" light, dark or what the desktop
// prefers, followed while it runs; high contrast, reduced motion and font are the desktop's. One, made after the
// QApplication and before any window. Main thread.
class Theme {
 public:
  // Worth calling before the QApplication is made, which then does not load the desktop's own style first.
  static void installStyle();

  // All outlive the theme.
  Theme(QApplication& application, PreferenceStore& preferences, DesktopAppearance& appearance);
  ~Theme();
  Theme(const Theme&) = delete;
  Theme& operator=(const Theme&) = delete;

  // Whether the desktop itself is dark, whatever the setting says: what panels go by.
  bool isDesktopDark() const { return appearance_.current().dark; }
  // Also when only the desktop's appearance changed.
  [[nodiscard]] Subscription onChange(std::function<void()> changed) { return observers_.add(std::move(changed)); }

 private:
  void apply();

  QApplication& application_;
  PreferenceStore& preferences_;
  DesktopAppearance& appearance_;
  InterfaceFont font_;
  bool isApplied_ = false;
  Observers<> observers_;
  Subscription settingChanges_;
};

// Milliseconds that a movement takes: 0 where the user wants none.
int motionMilliseconds(int usual);

}  // namespace quillmeter
