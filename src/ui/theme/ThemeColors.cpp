#include "ui/theme/ThemeColors.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace quillmeter {
namespace {

constexpr double shapeContrast = 3.0;
constexpr double textContrast = 4.5;
constexpr double highContrast = 7.0;

QColor rgb(unsigned value) {
  return QColor::fromRgb(value);
}

ThemeColors light() {
  return {
      .window = rgb(0xF5F6F8),
      .sidebar = rgb(0xECEEF2),
      .surface = rgb(0xFFFFFF),
      .raised = rgb(0xFFFFFF),
      .floating = rgb(0xFFFFFF),
      .hover = rgb(0xEDEFF3),
      .border = rgb(0xE1E4EA),
      .separator = rgb(0xEBEDF1),
      .text = rgb(0x1B1E24),
      .secondaryText = rgb(0x5A616E),
      .tertiaryText = rgb(0x7F8693),
      .accent = rgb(0x2563DC),
      .accentText = rgb(0xFFFFFF),
      .selection = rgb(0xDDE8FE),
      .track = rgb(0xE6E9EE),
      .success = rgb(0x187A4F),
      .warning = rgb(0x9A5B00),
      .danger = rgb(0xC72F28),
      .focus = rgb(0x2563DC),
  };
}

ThemeColors dark() {
  return {
      .dark = true,
      .window = rgb(0x17181C),
      .sidebar = rgb(0x1B1C21),
      .surface = rgb(0x212329),
      .raised = rgb(0x2C2F37),
      .floating = rgb(0x2C2F37),
      .hover = rgb(0x2D3038),
      .border = rgb(0x33363F),
      .separator = rgb(0x2D3038),
      .text = rgb(0xECEEF2),
      .secondaryText = rgb(0xA7ADB9),
      .tertiaryText = rgb(0x7C8390),
      .accent = rgb(0x6BA2FF),
      .accentText = rgb(0x0A1730),
      .selection = rgb(0x2A3B5C),
      .track = rgb(0x363A44),
      .success = rgb(0x4FCB95),
      .warning = rgb(0xF2B14C),
      .danger = rgb(0xFF7A6E),
      .focus = rgb(0x6BA2FF),
  };
}

ThemeColors highContrastLight() {
  return {
      .highContrast = true,
      .window = rgb(0xFFFFFF),
      .sidebar = rgb(0xF4F4F4),
      .surface = rgb(0xFFFFFF),
      .raised = rgb(0xFFFFFF),
      .floating = rgb(0xFFFFFF),
      .hover = rgb(0xE4E9F2),
      .border = rgb(0x5A5A5A),
      .separator = rgb(0x767676),
      .text = rgb(0x000000),
      .secondaryText = rgb(0x2B2E34),
      .tertiaryText = rgb(0x4A4D54),
      .accent = rgb(0x0A3FA8),
      .accentText = rgb(0xFFFFFF),
      .selection = rgb(0xCFE0FF),
      .track = rgb(0xCDD1D8),
      .success = rgb(0x005A34),
      .warning = rgb(0x6B3D00),
      .danger = rgb(0x9B0F0A),
      .focus = rgb(0x0A3FA8),
  };
}

ThemeColors highContrastDark() {
  return {
      .dark = true,
      .highContrast = true,
      .window = rgb(0x000000),
      .sidebar = rgb(0x0A0A0A),
      .surface = rgb(0x0C0C0E),
      .raised = rgb(0x121214),
      .floating = rgb(0x121214),
      .hover = rgb(0x25282E),
      .border = rgb(0xA8ACB4),
      .separator = rgb(0x80848C),
      .text = rgb(0xFFFFFF),
      .secondaryText = rgb(0xDADDE3),
      .tertiaryText = rgb(0xB4B8C0),
      .accent = rgb(0xA6C8FF),
      .accentText = rgb(0x000000),
      .selection = rgb(0x1F3B6E),
      .track = rgb(0x3F434C),
      .success = rgb(0x7FEFBC),
      .warning = rgb(0xFFD080),
      .danger = rgb(0xFFB0A8),
      .focus = rgb(0xFFE14D),
  };
}

// Which of the palette's colours tells the appearance: one that no widget changes for itself.
constexpr QPalette::ColorRole markRole = QPalette::Midlight;

const std::array<ThemeColors, 4>& appearances() {
  static const std::array all{light(), dark(), highContrastLight(), highContrastDark()};
  return all;
}

double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

// Lighter or darker in its own hue, no further than it has to be.
QColor legible(const QColor& color, const ThemeColors& colors, double contrast) {
  if (contrastRatio(color, colors.surface) >= contrast) return color;
  const auto at = [&color](double lightness) {
    return QColor::fromHslF(std::max(0.0F, color.hslHueF()), color.hslSaturationF(), static_cast<float>(lightness));
  };
  constexpr int steps = 8;
  double tooClose = color.lightnessF();
  double enough = colors.dark ? 1 : 0;
  for (int step = 0; step < steps; ++step) {
    const double middle = (tooClose + enough) / 2;
    (contrastRatio(at(middle), colors.surface) >= contrast ? enough : tooClose) = middle;
  }
  return at(enough).toRgb();
}

QColor colorOf(std::string_view hex, const QColor& otherwise) {
  unsigned value = 0;
  const auto [end, error] = std::from_chars(hex.data(), hex.data() + hex.size(), value, 16);
  return hex.size() == 6 && error == std::errc() && end == hex.data() + hex.size() ? QColor::fromRgb(value) : otherwise;
}

}  // namespace

double contrastRatio(const QColor& first, const QColor& second) {
  const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
  return (lighter + 0.05) / (darker + 0.05);
}

std::string hexText(const QColor& color) {
  return color.name(QColor::HexRgb).mid(1).toUpper().toStdString();
}

QColor mixed(const QColor& under, const QColor& over, double share) {
  const auto channel = [share](int from, int to) { return static_cast<int>(std::lround(from + (to - from) * share)); };
  return {channel(under.red(), over.red()), channel(under.green(), over.green()), channel(under.blue(), over.blue())};
}

const ThemeColors& ThemeColors::of(bool dark, bool highContrast) {
  return appearances()[(highContrast ? 2U : 0U) + (dark ? 1U : 0U)];
}

const ThemeColors& ThemeColors::of(const QPalette& palette) {
  const QColor mark = palette.color(QPalette::Active, markRole);
  for (const ThemeColors& colors : appearances()) {
    if (colors.track == mark) return colors;
  }
  constexpr int middleGray = 128;
  return of(palette.color(QPalette::Window).lightness() < middleGray, false);
}

QColor ThemeColors::tint(std::string_view hex) const {
  return legible(colorOf(hex, accent), *this, highContrast ? textContrast : shapeContrast);
}

QColor ThemeColors::textTint(std::string_view hex) const {
  return legible(colorOf(hex, accent), *this, highContrast ? quillmeter::highContrast : textContrast);
}

QPalette ThemeColors::palette() const {
  QPalette palette;
  const auto set = [&palette](QPalette::ColorRole role, const QColor& color) { palette.setColor(role, color); };
  set(QPalette::Window, window);
  set(QPalette::WindowText, text);
  set(QPalette::Base, raised);
  set(QPalette::AlternateBase, hover);
  set(QPalette::Text, text);
  set(QPalette::Button, raised);
  set(QPalette::ButtonText, text);
  set(QPalette::BrightText, accentText);
  set(QPalette::ToolTipBase, floating);
  set(QPalette::ToolTipText, text);
  set(QPalette::PlaceholderText, tertiaryText);
  set(QPalette::Highlight, accent);
  set(QPalette::HighlightedText, accentText);
  set(QPalette::Link, accent);
  set(QPalette::LinkVisited, accent);
  set(QPalette::Light, surface);
  set(markRole, track);
  set(QPalette::Mid, border);
  set(QPalette::Dark, tertiaryText);
  set(QPalette::Shadow, text);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText})
    palette.setColor(QPalette::Disabled, role, tertiaryText);
  palette.setColor(QPalette::Disabled, QPalette::Highlight, track);
  return palette;
}

}  // namespace quillmeter
