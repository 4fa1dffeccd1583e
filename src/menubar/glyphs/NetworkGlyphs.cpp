#include <array>

#include "menubar/glyphs/GlyphCanvas.h"
#include "menubar/glyphs/GlyphTable.h"

namespace quillmeter {

namespace {

void wifi(GlyphCanvas& c) {
  c.arc(12, 18.5, 14, 45, 90);
  c.arc(12, 18.5, 9.2, 45, 90);
  c.arc(12, 18.5, 4.6, 45, 90);
  c.dot(12, 18.8, 1.7);
}

void wifiOff(GlyphCanvas& c) {
  wifi(c);
  c.slash();
}

void wifiTrouble(GlyphCanvas& c) {
  wifi(c);
  c.cutPlate(15.4, 8.4, 7.6, 15, 3);
  c.stroke("M19.2 11V16.2", 2.4);
  c.dot(19.2, 20.4, 1.5);
}

void network(GlyphCanvas& c) {
  c.circle(12, 12, 9.5);
  c.ellipse(12, 12, 4.2, 9.5, 0);
  c.stroke("M2.5 12H21.5");
}

void link(GlyphCanvas& c) {
  c.stroke(
      "M10 13.9C11.9 15.9 14.6 15.9 16.4 14.1L19.6 10.9C21.4 9.1 21.4 6.2 19.6 4.4C17.8 2.6 14.9 2.6 13.1 4.4L11.8 "
      "5.7");
  c.stroke(
      "M14 10.1C12.1 8.1 9.4 8.1 7.6 9.9L4.4 13.1C2.6 14.9 2.6 17.8 4.4 19.6C6.2 21.4 9.1 21.4 10.9 19.6L12.2 18.3");
}

void questionMark(GlyphCanvas& c) {
  c.stroke("M7.2 7.6C7.5 5 9.5 3.4 12.2 3.4C15 3.4 17 5.1 17 7.6C17 11.2 12.2 11.2 12.2 15", 2.4);
  c.dot(12.2, 20, 1.7);
}

void upAndDown(GlyphCanvas& c) {
  c.stroke("M7.5 20V4.5M3 9L7.5 4.5L12 9M16.5 4V19.5M12 15L16.5 19.5L21 15");
}

void arrowUp(GlyphCanvas& c) {
  c.stroke("M12 20.5V4M5.5 10.5L12 4L18.5 10.5", 2.4);
}

void arrowDown(GlyphCanvas& c) {
  c.stroke("M12 3.5V20M5.5 13.5L12 20L18.5 13.5", 2.4);
}

}  // namespace

std::span<const GlyphEntry> networkGlyphs() {
  static constexpr auto table = std::to_array<GlyphEntry>({{"wifi", wifi},
                                                           {"wifi.slash", wifiOff},
                                                           {"wifi.exclamationmark", wifiTrouble},
                                                           {"network", network},
                                                           {"link", link},
                                                           {"questionmark", questionMark},
                                                           {"arrow.up.arrow.down", upAndDown},
                                                           {"arrow.up", arrowUp},
                                                           {"arrow.down", arrowDown}});
  return table;
}

}  // namespace quillmeter
