#include <array>

#include "menubar/glyphs/GlyphCanvas.h"
#include "menubar/glyphs/GlyphTable.h"

namespace quillmeter {

namespace {

constexpr std::string_view chevrons = "M6.8 7L1.8 12L6.8 17M17.2 7L22.2 12L17.2 17";

void forwardSlash(GlyphCanvas& c) {
  c.stroke(chevrons);
  c.stroke("M14 4.5L10 19.5");
}

void backSlash(GlyphCanvas& c) {
  c.stroke(chevrons);
  c.stroke("M10 4.5L14 19.5");
}

void searchedDocument(GlyphCanvas& c) {
  c.stroke("M18.5 9V6L14.5 2.2H6.5C5.1 2.2 4 3.2 4 4.6V19.4C4 20.8 5.1 21.8 6.5 21.8H9.5");
  c.stroke("M8 7.5H13M8 12H9.5");
  c.circle(15, 15.2, 3.9);
  c.stroke("M17.9 18.1L21 21.2");
}

void people(GlyphCanvas& c) {
  c.dot(17, 8.2, 3);
  c.fill("M13 19C13 15.4 14.4 13 17.2 13C20.2 13 22 15.4 22 19Z");
  c.cutDot(9, 7.2, 5);
  c.cut("M0 23C0 16 3 11.4 9 11.4C15 11.4 18 16 17.4 23Z");
  c.dot(9, 7.2, 3.8);
  c.fill("M2 20.5C2 16 4.6 13.2 9 13.2C13.4 13.2 16 16 16 20.5Z");
}

void paperPlane(GlyphCanvas& c) {
  c.stroke("M21.2 2.8L2.8 9.6L10.4 13.6L14.4 21.2ZM21.2 2.8L10.4 13.6");
}

}  // namespace

std::span<const GlyphEntry> agentGlyphs() {
  static constexpr auto table = std::to_array<GlyphEntry>({{"chevron.left.forwardslash.chevron.right", forwardSlash},
                                                           {"chevron.left.slash.chevron.right", backSlash},
                                                           {"doc.text.magnifyingglass", searchedDocument},
                                                           {"person.2.fill", people},
                                                           {"paperplane", paperPlane}});
  return table;
}

}  // namespace quillmeter
