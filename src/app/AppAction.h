#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <utility>

namespace quillmeter {

// What the program does when it is asked from outside: by a desktop entry's action, a second start or a script.
enum class AppAction { openDashboard, openSettings, togglePopover, refresh, quit };

// The names of the actions on the session bus and the command line.
inline constexpr std::array<std::pair<std::string_view, AppAction>, 5> appActionNames = {{
    {"open-dashboard", AppAction::openDashboard},
    {"open-settings", AppAction::openSettings},
    {"toggle-popover", AppAction::togglePopover},
    {"refresh", AppAction::refresh},
    {"quit", AppAction::quit},
}};

constexpr std::optional<AppAction> appActionNamed(std::string_view name) {
  for (const auto& [known, action] : appActionNames) {
    if (known == name) return action;
  }
  return std::nullopt;
}

}  // namespace quillmeter
