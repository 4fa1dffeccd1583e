#include <array>

#include "menubar/glyphs/GlyphCanvas.h"
#include "menubar/glyphs/GlyphTable.h"

namespace quillmeter {

namespace {

void headphones(GlyphCanvas& c) {
  c.stroke("M3.5 16V12.5C3.5 7.6 7.2 4 12 4C16.8 4 20.5 7.6 20.5 12.5V16");
  c.plate(2.5, 13, 5.5, 8, 2.2);
  c.plate(16, 13, 5.5, 8, 2.2);
}

void earbuds(GlyphCanvas& c) {
  c.dot(6.3, 7.2, 4.2);
  c.stroke("M8.6 8V20", 3.2);
  c.dot(17.7, 7.2, 4.2);
  c.stroke("M15.4 8V20", 3.2);
  c.cutDot(5, 7, 1.2);
  c.cutDot(19, 7, 1.2);
}

void box(GlyphCanvas& c, double x, double width) {
  c.plate(x, 2, width, 20, 2.6);
  const double centre = x + width / 2;
  c.cutDot(centre, 6.8, 1.7);
  c.cutDot(centre, 15, 3.7);
  c.dot(centre, 15, 1.5);
}

void speakerBox(GlyphCanvas& c) {
  box(c, 5.5, 13);
}

void speakerBoxes(GlyphCanvas& c) {
  box(c, 1.2, 10);
  box(c, 12.8, 10);
}

constexpr std::string_view cone = "M2.5 9.5H6L11 5V19L6 14.5H2.5Z";

void speaker(GlyphCanvas& c) {
  c.fill(cone, 1.6);
  c.arc(10.5, 12, 5, -45, 90);
  c.arc(10.5, 12, 9.6, -48, 96);
}

void speakerOff(GlyphCanvas& c) {
  c.fill("M4.5 9.5H8L14 4.5V19.5L8 14.5H4.5Z", 1.6);
  c.slash();
}

void airplay(GlyphCanvas& c) {
  c.arc(12, 11, 9, -38, 256);
  c.arc(12, 11, 4.8, -32, 244);
  c.fill("M12 14.5L18 21.2H6Z", 1.4);
}

void waveform(GlyphCanvas& c) {
  c.stroke("M3 10V14M7.5 6.5V17.5M12 3V21M16.5 7.5V16.5M21 10V14");
}

void car(GlyphCanvas& c) {
  c.fill("M6.6 4.5H17.4L19.8 10.4C21.2 11 22 12 22 13.5V18H2V13.5C2 12 2.8 11 4.2 10.4Z", 1.4);
  c.plate(3, 16, 4, 5, 1.4);
  c.plate(17, 16, 4, 5, 1.4);
  c.cut("M8 6.6H16L17.4 10H6.6Z");
  c.cutDot(6.2, 14, 1.4);
  c.cutDot(17.8, 14, 1.4);
}

}  // namespace

std::span<const GlyphEntry> audioGlyphs() {
  static constexpr auto table = std::to_array<GlyphEntry>({{"headphones", headphones},
                                                           {"airpods", earbuds},
                                                           {"hifispeaker.fill", speakerBox},
                                                           {"hifispeaker.2.fill", speakerBoxes},
                                                           {"speaker.wave.2.fill", speaker},
                                                           {"speaker.slash.fill", speakerOff},
                                                           {"airplayaudio", airplay},
                                                           {"waveform", waveform},
                                                           {"car.fill", car}});
  return table;
}

}  // namespace quillmeter
