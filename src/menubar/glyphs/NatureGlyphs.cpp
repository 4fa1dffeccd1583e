#include <array>

#include "menubar/glyphs/GlyphCanvas.h"
#include "menubar/glyphs/GlyphTable.h"

namespace quillmeter {

namespace {

constexpr std::string_view pad =
    "M12 11.5C14.4 11.5 15.6 13.4 17 15.2C18.6 17.2 18.2 20.6 15.4 20.8C14.2 20.9 13.2 20.2 12 20.2"
    "C10.8 20.2 9.8 20.9 8.6 20.8C5.8 20.6 5.4 17.2 7 15.2C8.4 13.4 9.6 11.5 12 11.5Z";

void pawFilled(GlyphCanvas& c) {
  c.fill(pad);
  c.dot(4.4, 11, 2.3);
  c.dot(9, 5.6, 2.6);
  c.dot(15, 5.6, 2.6);
  c.dot(19.6, 11, 2.3);
}

void paw(GlyphCanvas& c) {
  c.stroke(pad, 1.8);
  c.circle(4.2, 10.6, 1.5);
  c.circle(9, 5.2, 1.8);
  c.circle(15, 5.2, 1.8);
  c.circle(19.8, 10.6, 1.5);
}

void cat(GlyphCanvas& c) {
  c.fill(
      "M4 3L9.2 6.6C11 6.1 13 6.1 14.8 6.6L20 3C20.8 6 21.2 9 21 12.4C20.7 17.4 16.8 20.8 12 20.8"
      "C7.2 20.8 3.3 17.4 3 12.4C2.8 9 3.2 6 4 3Z",
      1.4);
  c.cutDot(8.4, 12, 1.5);
  c.cutDot(15.6, 12, 1.5);
  c.cut("M10.5 15.2H13.5L12 17.2Z");
}

constexpr std::string_view largeSparkle =
    "M9.5 5C10.3 10.2 11.8 11.7 17 12.5C11.8 13.3 10.3 14.8 9.5 20"
    "C8.7 14.8 7.2 13.3 2 12.5C7.2 11.7 8.7 10.2 9.5 5Z";

void sparkles(GlyphCanvas& c) {
  c.fill(largeSparkle, 1.2);
  c.fill("M18 2C18.4 4.6 19.2 5.4 21.8 5.8C19.2 6.2 18.4 7 18 9.6C17.6 7 16.8 6.2 14.2 5.8C16.8 5.4 17.6 4.6 18 2Z");
  c.fill(
      "M18.5 16C18.8 17.7 19.3 18.2 21 18.5C19.3 18.8 18.8 19.3 18.5 21C18.2 19.3 17.7 18.8 16 18.5"
      "C17.7 18.2 18.2 17.7 18.5 16Z");
}

void sparkle(GlyphCanvas& c) {
  c.fill("M12 2.5C13 9.4 14.6 11 21.5 12C14.6 13 13 14.6 12 21.5C11 14.6 9.4 13 2.5 12C9.4 11 11 9.4 12 2.5Z", 1.4);
}

void leaf(GlyphCanvas& c) {
  c.fill("M20.5 3.5C21.8 12.4 18.4 19 11.6 19C7.6 19 5 16.4 5 13C5 7 11.4 6.4 20.5 3.5Z");
  c.cutStroke("M16 8.5C12 11 9 13.6 7 17.4", 1.6);
  c.stroke("M3.5 21.5C4.4 19.6 5.2 18.2 6.4 16.8", 1.8);
}

void heart(GlyphCanvas& c) {
  c.fill(
      "M12 20.5C6.6 16.6 3 13.2 3 9C3 5.9 5.2 4 7.7 4C9.5 4 11.1 5 12 6.7C12.9 5 14.5 4 16.3 4"
      "C18.8 4 21 5.9 21 9C21 13.2 17.4 16.6 12 20.5Z");
}

void star(GlyphCanvas& c) {
  c.fill("M12 2.8L14.8 8.9L21.5 9.7L16.5 14.2L17.9 20.8L12 17.5L6.1 20.8L7.5 14.2L2.5 9.7L9.2 8.9Z", 1.6);
}

void moon(GlyphCanvas& c) {
  c.dot(11.5, 12.5, 9.5);
  c.cutDot(16.4, 8.4, 7.8);
}

void sun(GlyphCanvas& c) {
  c.dot(12, 12, 4.8);
  for (int ray = 0; ray < 8; ++ray) {
    c.stroke("M12 2.2V4");
    c.turn(45, 12, 12);
  }
}

void cloud(GlyphCanvas& c) {
  c.fill(
      "M6.8 19C4 19 2 17 2 14.5C2 12.1 3.8 10.2 6.1 10C6.8 7.2 9.2 5.2 12.2 5.2C15.6 5.2 18.3 7.7 18.7 11"
      "C20.6 11.2 22 12.8 22 14.9C22 17.2 20.2 19 17.9 19Z");
}

void flame(GlyphCanvas& c) {
  c.fill(
      "M12.6 2C13 6 19 8.6 19 14.6C19 18.8 15.9 22 12 22C8.1 22 5 18.9 5 14.9C5 12.2 6.4 10.4 7.6 8.8"
      "C8 10.2 8.6 11 9.6 11.4C9.4 7.8 10.4 4.4 12.6 2Z");
  c.cut(
      "M12.3 13.2C12.6 15 14.8 15.8 14.8 17.8C14.8 19.4 13.6 20.4 12.1 20.4C10.5 20.4 9.3 19.3 9.3 17.8"
      "C9.3 16 11.4 15.2 12.3 13.2Z");
}

void atom(GlyphCanvas& c) {
  c.ellipse(12, 12, 10, 4, 0);
  c.ellipse(12, 12, 10, 4, 60);
  c.ellipse(12, 12, 10, 4, 120);
  c.dot(12, 12, 1.6);
}

}  // namespace

std::span<const GlyphEntry> natureGlyphs() {
  static constexpr auto table = std::to_array<GlyphEntry>({{"pawprint.fill", pawFilled},
                                                           {"pawprint", paw},
                                                           {"cat.fill", cat},
                                                           {"sparkles", sparkles},
                                                           {"sparkle", sparkle},
                                                           {"leaf.fill", leaf},
                                                           {"heart.fill", heart},
                                                           {"star.fill", star},
                                                           {"moon.fill", moon},
                                                           {"sun.max.fill", sun},
                                                           {"cloud.fill", cloud},
                                                           {"flame.fill", flame},
                                                           {"atom", atom}});
  return table;
}

}  // namespace quillmeter
