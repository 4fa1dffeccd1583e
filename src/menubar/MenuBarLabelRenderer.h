#pragma once

#include <optional>
#include <string>
#include <vector>

class QImage;

namespace quillmeter {

// Pairs side by side, or the first of them as a square: trays squeeze a wide icon into a square, a panel's own label
// does not. In the square the symbol stands above the figure; a figure with a unit ("1.4 MB/s"), which would become too
// small beside it, fills the square alone, the unit below.
enum class MenuBarLabelLayout { row, square };

// One figure of the label with its symbol.
struct MenuBarLabelEntry {
  std::string symbol;
  std::string value;
  std::string widest;  // the room that the value is given whatever it is ("100%"); empty: its own

  friend bool operator==(const MenuBarLabelEntry&, const MenuBarLabelEntry&) = default;
};

// All that a label's drawing depends on: equal labels give equal images. A value.
struct MenuBarLabel {
  std::vector<MenuBarLabelEntry> entries;
  MenuBarLabelLayout layout = MenuBarLabelLayout::row;
  double height = 22;  // points
  bool dark = false;
  bool selected = false;
  double devicePixelRatio = 1;

  friend bool operator==(const MenuBarLabel&, const MenuBarLabel&) = default;
};

// Draws figures as text beside their symbols. All digits take the width of the widest one, so that a changing figure
// does not move what follows it. Stateless; text needs a running QGuiApplication, so the main thread.
namespace MenuBarLabelRenderer {

// Absent without entries.
std::optional<QImage> image(const MenuBarLabel& label);

}  // namespace MenuBarLabelRenderer

}  // namespace quillmeter
