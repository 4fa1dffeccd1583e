#include "ui/tray/PanelAppearance.h"

#include <algorithm>

namespace quillmeter {

namespace {

constexpr std::array<std::string_view, 8> desktopsWithDarkPanels = {"GNOME",  "Unity", "XFCE",     "X-Cinnamon",
                                                                    "Budgie", "sway",  "Hyprland", "i3"};

bool hasDarkPanel(std::string_view desktops) {
  while (!desktops.empty()) {
    const std::size_t end = desktops.find(':');
    if (std::ranges::find(desktopsWithDarkPanels, desktops.substr(0, end)) != desktopsWithDarkPanels.end()) return true;
    desktops = end == std::string_view::npos ? std::string_view() : desktops.substr(end + 1);
  }
  return false;
}

}  // namespace

bool isPanelDark(const std::optional<TrayForeground>& foreground, std::string_view currentDesktop, bool desktopIsDark) {
  if (foreground) {
    constexpr double middle = 65535.0 / 2;
    const auto& [red, green, blue] = *foreground;
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue > middle;
  }
  return desktopIsDark || hasDarkPanel(currentDesktop);
}

}  // namespace quillmeter
