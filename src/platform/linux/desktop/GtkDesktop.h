#pragma once

#include <optional>
#include <string_view>

namespace quillmeter {

// A desktop made with GTK. What holds for its programs holds for no others: elsewhere the same settings may exist, but
// nobody chose them.
struct GtkDesktop {
  // Whether the user's text settings are GNOME's; the others have their own and may leave GNOME's as they came.
  bool hasGnomeSettings = false;
  friend bool operator==(const GtkDesktop&, const GtkDesktop&) = default;
};

// By names as in XDG_CURRENT_DESKTOP ("ubuntu:GNOME").
std::optional<GtkDesktop> gtkDesktopNamed(std::string_view names);
std::optional<GtkDesktop> currentGtkDesktop();

}  // namespace quillmeter
