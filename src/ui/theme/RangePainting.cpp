#include "ui/theme/RangePainting.h"

#include <algorithm>

#include <QPainter>
#include <QStyleOption>

#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter::RangePainting {
namespace {

constexpr int grooveThickness = 4;
constexpr int minimumThumbLength = 32;

bool isHorizontal(const QStyleOptionSlider& option) {
  return option.orientation == Qt::Horizontal;
}

// A rectangle given along and across the direction of the control.
QRect placed(const QStyleOptionSlider& option, int along, int across, int length, int thickness) {
  const QRect& whole = option.rect;
  return isHorizontal(option) ? QRect(whole.left() + along, whole.top() + across, length, thickness)
                              : QRect(whole.left() + across, whole.top() + along, thickness, length);
}

int lengthOf(const QStyleOptionSlider& option) {
  return isHorizontal(option) ? option.rect.width() : option.rect.height();
}

int thicknessOf(const QStyleOptionSlider& option) {
  return isHorizontal(option) ? option.rect.height() : option.rect.width();
}

int knobPosition(const QStyleOptionSlider& option, int room) {
  return QStyle::sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition, room,
                                         option.upsideDown);
}

}  // namespace

QRect sliderPart(const QStyleOptionSlider& option, QStyle::SubControl part) {
  const int length = lengthOf(option);
  const int thickness = thicknessOf(option);
  switch (part) {
    case QStyle::SC_SliderHandle:
      return placed(option, knobPosition(option, length - knobSize), (thickness - knobSize) / 2, knobSize, knobSize);
    case QStyle::SC_SliderGroove:
      return placed(option, 0, (thickness - knobSize) / 2, length, knobSize);
    default:
      return {};
  }
}

void slider(const QStyleOptionSlider& option, QPainter& painter) {
  const ThemeColors& colors = ThemeColors::of(option.palette);
  const bool enabled = option.state & QStyle::State_Enabled;
  const QRect knob = sliderPart(option, QStyle::SC_SliderHandle);
  constexpr int inset = 2;
  const int length = lengthOf(option) - 2 * inset;
  const int across = (thicknessOf(option) - grooveThickness) / 2;
  constexpr double grooveRadius = grooveThickness / 2.0;
  const QColor track = colors.highContrast ? colors.border : mixed(colors.track, colors.text, 0.08);
  Shapes::panel(painter, placed(option, inset, across, length, grooveThickness), grooveRadius, track);

  const int center =
      isHorizontal(option) ? knob.center().x() - option.rect.left() : knob.center().y() - option.rect.top();
  const QRect filled = option.upsideDown ? placed(option, center, across, inset + length - center, grooveThickness)
                                         : placed(option, inset, across, center - inset, grooveThickness);
  const QColor fill = option.palette.color(QPalette::Highlight);
  Shapes::panel(painter, filled, grooveRadius, enabled ? fill : colors.tertiaryText);

  const bool held = option.activeSubControls & QStyle::SC_SliderHandle && option.state & QStyle::State_Sunken;
  const bool hovered = enabled && option.state & QStyle::State_MouseOver;
  const QColor light = colors.dark ? QColor::fromRgb(0xF4F5F7) : QColor::fromRgb(0xFFFFFF);
  const QColor face = enabled ? light : colors.surface;
  const QColor edge = enabled && (held || hovered) ? fill : mixed(colors.border, colors.text, 0.25);
  const double radius = held ? knobSize / 2.0 : knobSize / 2.0 - 1;
  const QRectF disk(QRectF(knob).center() - QPointF(radius, radius), QSizeF(radius * 2, radius * 2));
  Shapes::panel(painter, disk, radius, face, edge);
  if (option.state & QStyle::State_HasFocus && option.state & QStyle::State_KeyboardFocusChange)
    Shapes::focusFrame(painter, QRectF(knob).adjusted(-1, -1, 1, 1), knobSize / 2.0 + 1, colors);
}

QRect scrollBarPart(const QStyleOptionSlider& option, QStyle::SubControl part) {
  const int length = lengthOf(option);
  const int range = option.maximum - option.minimum;
  int thumb = length;
  if (range > 0) {
    const auto shown = static_cast<double>(option.pageStep) / (static_cast<double>(range) + option.pageStep);
    thumb = std::clamp(static_cast<int>(shown * length), std::min(minimumThumbLength, length), length);
  }
  const int start = knobPosition(option, length - thumb);
  const int thickness = thicknessOf(option);
  switch (part) {
    case QStyle::SC_ScrollBarGroove:
      return option.rect;
    case QStyle::SC_ScrollBarSlider:
      return placed(option, start, 0, thumb, thickness);
    case QStyle::SC_ScrollBarSubPage:
      return placed(option, 0, 0, start, thickness);
    case QStyle::SC_ScrollBarAddPage:
      return placed(option, start + thumb, 0, length - start - thumb, thickness);
    default:
      return {};  // no buttons at the ends
  }
}

void scrollBar(const QStyleOptionSlider& option, QPainter& painter) {
  if (option.maximum <= option.minimum) return;
  const ThemeColors& colors = ThemeColors::of(option.palette);
  const bool held = option.activeSubControls & QStyle::SC_ScrollBarSlider && option.state & QStyle::State_Sunken;
  const bool hovered = option.state & QStyle::State_MouseOver;
  constexpr double inset = 2;
  QRectF thumb = scrollBarPart(option, QStyle::SC_ScrollBarSlider);
  thumb.adjust(inset, inset, -inset, -inset);
  if (!hovered && !held) {
    // Slimmer while nobody reaches for it.
    if (isHorizontal(option))
      thumb.setTop(thumb.top() + 2);
    else
      thumb.setLeft(thumb.left() + 2);
  }
  const double radius = std::min(thumb.width(), thumb.height()) / 2;
  const double share = colors.highContrast ? 0.7 : held ? 0.5 : hovered ? 0.38 : 0.22;
  Shapes::panel(painter, thumb, radius, mixed(colors.window, colors.text, share));
}

}  // namespace quillmeter::RangePainting
