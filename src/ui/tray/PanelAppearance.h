#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quillmeter {

// Red, green and blue, each 0 ... 65535, of the text that a tray wants on its ground.
using TrayForeground = std::array<std::uint32_t, 3>;

// Whether the icon stands on a dark panel. An X11 tray that says its text colour decides. Else the panel is taken to be
// dark where it is so in every theme or by default (GNOME's shell, Xfce, Cinnamon, the bars of tiling managers), and to
// follow the desktop's appearance elsewhere. `currentDesktop` is $XDG_CURRENT_DESKTOP, names between colons. Pure.
bool isPanelDark(const std::optional<TrayForeground>& foreground, std::string_view currentDesktop, bool desktopIsDark);

}  // namespace quillmeter
