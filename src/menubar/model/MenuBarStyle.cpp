#include "menubar/model/MenuBarStyle.h"

#include <algorithm>
#include <iterator>

#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {

static_assert(SettingsKeys::menuBarStyles[static_cast<std::size_t>(defaultMenuBarStyle)] ==
              SettingsKeys::defaultMenuBarStyle);

std::string_view rawValue(MenuBarStyle style) {
  return SettingsKeys::menuBarStyles[static_cast<std::size_t>(style)];
}

std::optional<MenuBarStyle> menuBarStyle(std::string_view rawValue) {
  const auto& names = SettingsKeys::menuBarStyles;
  const auto found = std::ranges::find(names, rawValue);
  if (found == names.end()) return std::nullopt;
  return static_cast<MenuBarStyle>(std::distance(names.begin(), found));
}

MenuBarStyle chosenMenuBarStyle(const PreferenceStore& preferences) {
  return menuBarStyle(SettingsKeys::chosenMenuBarStyle(preferences)).value_or(defaultMenuBarStyle);
}

}  // namespace quillmeter
