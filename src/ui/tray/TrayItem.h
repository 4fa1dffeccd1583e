#pragma once

#include <functional>
#include <memory>

#include "ui/UiServices.h"

class QRect;

namespace quillmeter {

class Theme;

// The program's item in the panel: draws the chosen style, again only when what it shows has changed, keeps the tooltip
// with the figures, and turns clicks into wishes. It goes to the panel's message-bus tray (StatusNotifierItem) where
// one shows items, else to the X11 tray; it follows trays that appear late, vanish or are replaced by another kind.
// One, main thread.
class TrayItem {
 public:
  // A tray that vanishes may be a panel that restarts; it is given so long to come back before it counts as gone.
  static constexpr double vanishedSeconds = 5.0;

  struct Handlers {
    std::function<void(const QRect& icon)> togglePopover;  // left click; where the icon is, empty when unknown
    std::function<void()> refresh;                         // middle click
    // A tray was found, in show() or later, or the last one has vanished for good.
    std::function<void(bool available)> availabilityChanged;
  };

  TrayItem(const UiServices& services, Theme& theme, Handlers handlers);
  ~TrayItem();
  TrayItem(const TrayItem&) = delete;
  TrayItem& operator=(const TrayItem&) = delete;

  void show();
  bool isAvailable() const;
  // Texts in the present language.
  void retranslate();
  // How often the icon was painted; for tests of "nothing changed, nothing painted".
  int paintCount() const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillmeter
