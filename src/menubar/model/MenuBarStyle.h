#pragma once

#include <optional>
#include <string_view>

namespace quillmeter {

class PreferenceStore;

// What the item in the panel shows.
enum class MenuBarStyle {
  metrics,       // figures as text, each beside its symbol
  systemTrio,    // battery ring, network state in the middle, volume arc at the bottom
  resourceTrio,  // rings of battery, memory and processor from outside in
  symbol         // one chosen symbol
};

inline constexpr MenuBarStyle defaultMenuBarStyle = MenuBarStyle::systemTrio;

// The stored text: "metrics", "systemTrio" ...
std::string_view rawValue(MenuBarStyle style);
// Absent for a text that names no style.
std::optional<MenuBarStyle> menuBarStyle(std::string_view rawValue);
// What the settings choose; a stored text that names no style is drawn as the default one.
MenuBarStyle chosenMenuBarStyle(const PreferenceStore& preferences);

}  // namespace quillmeter
