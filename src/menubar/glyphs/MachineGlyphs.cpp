#include <array>

#include "menubar/glyphs/GlyphCanvas.h"
#include "menubar/glyphs/GlyphTable.h"

namespace quillmeter {

namespace {

void ecg(GlyphCanvas& c) {
  c.stroke("M2 12.5H6L9 4L14.5 20L17.5 12.5H22");
}

void cpu(GlyphCanvas& c) {
  c.frame(5, 5, 14, 14, 3);
  c.plate(9, 9, 6, 6, 1.2);
  c.stroke("M9 2V4M15 2V4M9 20V22M15 20V22M2 9H4M2 15H4M20 9H22M20 15H22");
}

void memoryChip(GlyphCanvas& c) {
  c.frame(2, 6.5, 20, 9.5, 2);
  c.stroke("M7.5 10V12.5M12 10V12.5M16.5 10V12.5");
  c.stroke("M5.5 17V19.5M9.8 17V19.5M14.2 17V19.5M18.5 17V19.5");
}

void gauge(GlyphCanvas& c) {
  c.arc(12, 13, 9, -38, 256);
  c.stroke("M12 13V8.2");
  c.dot(12, 13.2, 2);
  c.dot(7.3, 13.2, 1.1);
  c.dot(16.7, 13.2, 1.1);
}

void chartBars(GlyphCanvas& c) {
  c.plate(3, 13, 4.6, 8, 1.3);
  c.plate(9.7, 8, 4.6, 13, 1.3);
  c.plate(16.4, 3, 4.6, 18, 1.3);
}

void bolt(GlyphCanvas& c) {
  c.fill("M13.5 2L4.8 13.4H11L9.6 22L19.2 9.9H12.6Z", 1.4);
}

void plug(GlyphCanvas& c) {
  c.stroke("M8.5 2.5V7M15.5 2.5V7");
  c.fill("M5.5 7.5H18.5V11.5C18.5 15.2 15.6 17.5 12 17.5C8.4 17.5 5.5 15.2 5.5 11.5Z", 1.4);
  c.stroke("M12 17V21.5");
}

void batteryWithBolt(GlyphCanvas& c) {
  c.frame(2, 6.5, 17.5, 11, 3);
  c.stroke("M22 10.5V13.5");
  c.cutStroke("M12 3.5L6.6 12.8H10.6L9.7 20.5L15.2 11.2H11.2Z", 2.6);
  c.fill("M12 3.5L6.6 12.8H10.6L9.7 20.5L15.2 11.2H11.2Z", 0.8);
}

void drive(GlyphCanvas& c) {
  c.stroke("M3 14L6.2 6.2C6.6 5.4 7.3 5 8.2 5H15.8C16.7 5 17.4 5.4 17.8 6.2L21 14");
  c.frame(3, 12.5, 18, 7, 2.5);
  c.dot(17, 16, 1.2);
  c.stroke("M7 16H11.5");
}

void fan(GlyphCanvas& c) {
  for (int blade = 0; blade < 4; ++blade) {
    c.fill("M12 10.6C10 8.6 9.6 5.8 10.9 3.8C11.9 2.3 14.2 1.9 15.6 3.1C17.4 4.6 16.6 8.2 13.2 11Z", 0.8);
    c.turn(90, 12, 12);
  }
  c.cutDot(12, 12, 2.6);
  c.dot(12, 12, 1.5);
}

void laptop(GlyphCanvas& c) {
  c.frame(4.5, 5, 15, 10.5, 2);
  c.stroke("M2 19H22");
}

void display(GlyphCanvas& c) {
  c.frame(2.5, 4, 19, 12.5, 2.2);
  c.stroke("M12 16.5V20M8 20.5H16");
}

void television(GlyphCanvas& c) {
  c.frame(2.5, 7.5, 19, 12.5, 2.6);
  c.stroke("M8 2.8L12 7L16 2.8");
}

void terminal(GlyphCanvas& c) {
  c.frame(2.5, 4, 19, 16, 3);
  c.stroke("M7 9L10.5 12L7 15M13 15.3H17");
}

void terminalFilled(GlyphCanvas& c) {
  c.plate(1.5, 3, 21, 18, 4);
  c.cutStroke("M6.5 8.5L10.5 12L6.5 15.5M13 15.8H17.5");
}

void gameController(GlyphCanvas& c) {
  c.fill(
      "M7 6H17C19.6 6 20.8 8 21.4 11L22.2 15.6C22.6 18.6 19.6 19.8 17.9 17.6L16.4 15.5H7.6L6.1 17.6"
      "C4.4 19.8 1.4 18.6 1.8 15.6L2.6 11C3.2 8 4.4 6 7 6Z");
  c.cutStroke("M8 8.8V12.8M6 10.8H10", 1.6);
  c.cutDot(15.2, 12, 1.2);
  c.cutDot(17.6, 9.6, 1.2);
}

}  // namespace

std::span<const GlyphEntry> machineGlyphs() {
  static constexpr auto table = std::to_array<GlyphEntry>({{"waveform.path.ecg", ecg},
                                                           {"cpu", cpu},
                                                           {"memorychip", memoryChip},
                                                           {"gauge.with.dots.needle.50percent", gauge},
                                                           {"chart.bar.fill", chartBars},
                                                           {"bolt.fill", bolt},
                                                           {"powerplug.fill", plug},
                                                           {"battery.100.bolt", batteryWithBolt},
                                                           {"internaldrive", drive},
                                                           {"fanblades.fill", fan},
                                                           {"laptopcomputer", laptop},
                                                           {"display", display},
                                                           {"tv", television},
                                                           {"terminal", terminal},
                                                           {"terminal.fill", terminalFilled},
                                                           {"gamecontroller.fill", gameController}});
  return table;
}

}  // namespace quillmeter
