#pragma once

#include <string>
#include <string_view>

#include <QColor>
#include <QPalette>

namespace quillmeter {

// Every colour of the interface, for one appearance. A value; the four of them (light, dark, each also in high
// contrast) are constant.
struct ThemeColors {
  bool dark = false;
  bool highContrast = false;
  QColor window;    // behind the cards
  QColor sidebar;   // beside the page
  QColor surface;   // a card
  QColor raised;    // a control on a card: button, field
  QColor floating;  // a menu, a tool tip
  QColor hover;     // a row or control under the pointer
  QColor border;
  QColor separator;
  QColor text;
  QColor secondaryText;  // at least 4.5:1 on surface and window
  QColor tertiaryText;   // of what is off or unknown: at least 3:1
  QColor accent;
  QColor accentText;  // on accent
  QColor selection;   // behind the chosen row
  QColor track;       // the empty part of a gauge
  QColor success;
  QColor warning;
  QColor danger;
  QColor focus;  // the focus frame

  static const ThemeColors& of(bool dark, bool highContrast);
  // The colours that a widget paints with: those whose palette it has.
  static const ThemeColors& of(const QPalette& palette);

  // A component's colour ("4C8DFF") made legible on this appearance's surface: as a shape or as large text.
  QColor tint(std::string_view hex) const;
  // The same for small text.
  QColor textTint(std::string_view hex) const;
  QPalette palette() const;
};

// The relation of luminances, 1 ... 21, that says how legible one opaque colour is on another.
double contrastRatio(const QColor& first, const QColor& second);
// As tints are written: "4C8DFF".
std::string hexText(const QColor& color);
// So much (0 ... 1) of `over` laid on `under`; opaque.
QColor mixed(const QColor& under, const QColor& over, double share);

}  // namespace quillmeter
