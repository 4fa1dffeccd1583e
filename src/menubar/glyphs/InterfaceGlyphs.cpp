#include <array>

#include "menubar/glyphs/GlyphCanvas.h"
#include "menubar/glyphs/GlyphTable.h"

namespace quillmeter {

namespace {

void grid(GlyphCanvas& c) {
  c.frame(3.2, 3.2, 7, 7, 1.8);
  c.frame(13.8, 3.2, 7, 7, 1.8);
  c.frame(3.2, 13.8, 7, 7, 1.8);
  c.frame(13.8, 13.8, 7, 7, 1.8);
}

void hourglass(GlyphCanvas& c) {
  c.stroke("M5.5 2.8H18.5M5.5 21.2H18.5");
  c.stroke(
      "M7 2.8V6.4C7 9.4 12 10 12 12C12 14 7 14.6 7 17.6V21.2M17 2.8V6.4C17 9.4 12 10 12 12C12 14 17 14.6 17 17.6V21.2");
}

void clock(GlyphCanvas& c) {
  c.circle(12, 12, 9.2);
  c.stroke("M12 6.6V12L15.6 14.4");
}

void gear(GlyphCanvas& c) {
  for (int tooth = 0; tooth < 8; ++tooth) {
    c.plate(10.3, 1.6, 3.4, 5.4, 1);
    c.turn(45, 12, 12);
  }
  c.dot(12, 12, 8.2);
  c.cutDot(12, 12, 6.1);
  c.circle(12, 12, 2.7);
}

void clockwise(GlyphCanvas& c) {
  c.arc(12, 12.4, 8.4, 40, 300);
  c.stroke("M18.8 2.6V7.6H13.8");
}

void undo(GlyphCanvas& c) {
  c.stroke("M8.4 4.4L3.2 9.4L8.4 14.4");
  c.stroke("M3.6 9.4H14.4C18 9.4 20.8 11.8 20.8 15C20.8 18.2 18 20.4 14.4 20.4H8.6");
}

void pencil(GlyphCanvas& c) {
  c.stroke("M3.4 20.6L4.6 15.4L16.2 3.8C17.2 2.8 18.8 2.8 19.8 3.8L20.2 4.2C21.2 5.2 21.2 6.8 20.2 7.8L8.6 19.4Z");
  c.stroke("M13.8 6.4L17.6 10.2");
}

void check(GlyphCanvas& c) {
  c.stroke("M3.6 12.8L9.2 18.4L20.4 6", 2.4);
}
void cross(GlyphCanvas& c) {
  c.stroke("M4.6 4.6L19.4 19.4M19.4 4.6L4.6 19.4", 2.2);
}
void plus(GlyphCanvas& c) {
  c.stroke("M12 3.6V20.4M3.6 12H20.4", 2.2);
}
void minus(GlyphCanvas& c) {
  c.stroke("M3.6 12H20.4", 2.8);
}
void pointLeft(GlyphCanvas& c) {
  c.stroke("M15.4 3.6L7.6 12L15.4 20.4", 2.4);
}
void pointRight(GlyphCanvas& c) {
  c.stroke("M8.6 3.6L16.4 12L8.6 20.4", 2.4);
}
void pointUp(GlyphCanvas& c) {
  c.stroke("M3.6 15.4L12 7.6L20.4 15.4", 2.4);
}
void pointDown(GlyphCanvas& c) {
  c.stroke("M3.6 8.6L12 16.4L20.4 8.6", 2.4);
}

void eye(GlyphCanvas& c) {
  c.stroke("M1.8 12C4.2 7.4 7.8 5 12 5C16.2 5 19.8 7.4 22.2 12C19.8 16.6 16.2 19 12 19C7.8 19 4.2 16.6 1.8 12Z");
  c.circle(12, 12, 3.2);
}

void eyeOff(GlyphCanvas& c) {
  eye(c);
  c.slash();
}

void folder(GlyphCanvas& c) {
  c.stroke(
      "M2.6 18.4V5.8C2.6 4.7 3.4 4 4.4 4H9L11.2 6.8H19.6C20.7 6.8 21.4 7.5 21.4 8.6V18.4C21.4 19.4 20.7 20 19.6 "
      "20H4.4C3.4 20 2.6 19.4 2.6 18.4Z");
}

void bin(GlyphCanvas& c) {
  c.stroke(
      "M3.4 6.2H20.6M9 6V3.2H15V6M5.6 6.4L6.6 19.4C6.7 20.6 7.5 21.4 8.6 21.4H15.4C16.5 21.4 17.3 20.6 17.4 19.4L18.4 "
      "6.4M10 10.4V17M14 10.4V17");
}

void information(GlyphCanvas& c) {
  c.circle(12, 12, 9.4);
  c.dot(12, 7.6, 1.4);
  c.stroke("M12 11.4V17");
}

void warning(GlyphCanvas& c) {
  c.stroke("M12 3.2L22 20.6H2Z");
  c.stroke("M12 9.6V14");
  c.dot(12, 17.2, 1.3);
}

void done(GlyphCanvas& c) {
  c.circle(12, 12, 9.4);
  c.stroke("M7.4 12.4L10.8 15.8L16.6 9");
}

void failed(GlyphCanvas& c) {
  c.circle(12, 12, 9.4);
  c.stroke("M8.4 8.4L15.6 15.6M15.6 8.4L8.4 15.6");
}

void lines(GlyphCanvas& c) {
  c.stroke("M3.4 6H20.6M3.4 12H20.6M3.4 18H20.6");
}

void grip(GlyphCanvas& c) {
  for (const double y : {4.6, 12.0, 19.4}) {
    c.dot(8.4, y, 1.9);
    c.dot(15.6, y, 1.9);
  }
}

void widen(GlyphCanvas& c) {
  c.stroke("M7 6.4L1.8 12L7 17.6M17 6.4L22.2 12L17 17.6M2.4 12H21.6");
}
void narrow(GlyphCanvas& c) {
  c.stroke("M3.4 6.4L8.6 12L3.4 17.6M20.6 6.4L15.4 12L20.6 17.6M1.6 12H8M16 12H22.4");
}
void power(GlyphCanvas& c) {
  c.arc(12, 13, 8.4, 130, 280);
  c.stroke("M12 2.6V11.4");
}

void more(GlyphCanvas& c) {
  c.dot(4.4, 12, 2.1);
  c.dot(12, 12, 2.1);
  c.dot(19.6, 12, 2.1);
}

void globe(GlyphCanvas& c) {
  c.circle(12, 12, 9.4);
  c.stroke("M3.6 8.4H20.4M3.6 15.6H20.4");
  c.ellipse(12, 12, 4, 9.4, 0);
}

void menuBar(GlyphCanvas& c) {
  c.frame(2.4, 4, 19.2, 16, 2.6);
  c.plate(2.4, 4, 19.2, 5.4, 1.8);
}

void outward(GlyphCanvas& c) {
  c.stroke("M9.4 4.6H4.6V19.4H19.4V14.6M13.6 3.4H20.6V10.4M20.2 3.8L11.4 12.6");
}

}  // namespace

std::span<const GlyphEntry> interfaceGlyphs() {
  static constexpr auto table = std::to_array<GlyphEntry>({{"square.grid.2x2", grid},
                                                           {"hourglass", hourglass},
                                                           {"clock", clock},
                                                           {"gearshape", gear},
                                                           {"arrow.clockwise", clockwise},
                                                           {"arrow.uturn.backward", undo},
                                                           {"pencil", pencil},
                                                           {"checkmark", check},
                                                           {"xmark", cross},
                                                           {"plus", plus},
                                                           {"minus", minus},
                                                           {"chevron.left", pointLeft},
                                                           {"chevron.right", pointRight},
                                                           {"chevron.up", pointUp},
                                                           {"chevron.down", pointDown},
                                                           {"eye", eye},
                                                           {"eye.slash", eyeOff},
                                                           {"folder", folder},
                                                           {"trash", bin},
                                                           {"info.circle", information},
                                                           {"exclamationmark.triangle", warning},
                                                           {"checkmark.circle", done},
                                                           {"xmark.circle", failed},
                                                           {"line.3.horizontal", lines},
                                                           {"circle.grid.2x3", grip},
                                                           {"arrow.left.and.right", widen},
                                                           {"arrow.right.and.line.vertical.and.arrow.left", narrow},
                                                           {"power", power},
                                                           {"ellipsis", more},
                                                           {"globe", globe},
                                                           {"menubar.rectangle", menuBar},
                                                           {"arrow.up.right.square", outward}});
  return table;
}

}  // namespace quillmeter
