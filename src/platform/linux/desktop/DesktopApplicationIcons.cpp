#include "platform/linux/desktop/DesktopApplicationIcons.h"

#include <algorithm>
#include <array>

#include <sys/stat.h>

#include "platform/linux/desktop/ApplicationEntryIndex.h"

namespace quillmeter {
namespace {

constexpr std::array<std::string_view, 3> imageEndings = {".png", ".svg", ".xpm"};

bool hasImageEnding(std::string_view name) {
  return std::ranges::any_of(imageEndings, [&](std::string_view ending) { return name.ends_with(ending); });
}

// A link is followed: packages link their icons.
bool isImageFile(const std::string& path) {
  struct stat status {};
  return hasImageEnding(path) && stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         status.st_size <= DesktopApplicationIcons::maximumFileBytes;
}

// A theme looks for the name in its folders: a relative path would lead out of them.
bool isThemeName(std::string_view name) {
  return name.find('/') == std::string_view::npos && name != "." && name != "..";
}

}  // namespace

std::string DesktopApplicationIcons::iconName(std::string_view applicationId) {
  const ApplicationEntry* entry = entries_.entryOf(applicationId);
  if (entry == nullptr || entry->icon.empty()) return {};
  std::string icon = entry->icon;
  if (icon.starts_with('/')) return isImageFile(icon) ? icon : std::string();
  if (!isThemeName(icon)) return {};
  // Many entries add the ending that a name of a theme must not have.
  if (hasImageEnding(icon)) icon.resize(icon.size() - imageEndings.front().size());
  return icon;
}

}  // namespace quillmeter
