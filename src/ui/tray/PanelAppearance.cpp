#include "ui/tray/PanelAppearance.h"

namespace quillmeter {

namespace {

bool names(std::string_view desktops, std::string_view wanted) {
  while (!desktops.empty()) {
    const std::size_t end = desktops.find(':');
    if (desktops.substr(0, end) == wanted) return true;
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
  return desktopIsDark || names(currentDesktop, "GNOME") || names(currentDesktop, "Unity");
}

}  // namespace quillmeter
