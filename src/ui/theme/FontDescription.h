#pragma once

#include <optional>
#include <string_view>

#include <QStringList>

namespace quillmeter {

// A font as GTK's desktops describe it: "Noto Sans, Cantarell Semi-Bold Italic 11". Its style is left out: each text of
// the interface has a weight of its own.
struct FontDescription {
  QStringList families;
  double points = 0;  // 0 where it tells none that could be read
  friend bool operator==(const FontDescription&, const FontDescription&) = default;
};

// Nothing where no family is named.
std::optional<FontDescription> parseFontDescription(std::string_view text);

}  // namespace quillmeter
