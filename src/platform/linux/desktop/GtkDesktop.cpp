#include "platform/linux/desktop/GtkDesktop.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace quillmeter {
namespace {

struct Named {
  const char* name;
  GtkDesktop desktop;
};

constexpr Named known[] = {
    {"GNOME", {true}}, {"Unity", {true}}, {"Pantheon", {true}}, {"X-Cinnamon", {}},
    {"MATE", {}},      {"XFCE", {}},      {"LXDE", {}},
};

}  // namespace

std::optional<GtkDesktop> gtkDesktopNamed(std::string_view names) {
  while (!names.empty()) {
    const std::size_t end = std::min(names.find(':'), names.size());
    const std::string name(names.substr(0, end));
    const auto* const found = std::find_if(std::begin(known), std::end(known),
                                           [&](const Named& row) { return strcasecmp(name.c_str(), row.name) == 0; });
    if (found != std::end(known)) return found->desktop;
    names.remove_prefix(std::min(end + 1, names.size()));
  }
  return std::nullopt;
}

std::optional<GtkDesktop> currentGtkDesktop() {
  const char* const names = std::getenv("XDG_CURRENT_DESKTOP");
  return gtkDesktopNamed(names == nullptr ? "" : names);
}

}  // namespace quillmeter
