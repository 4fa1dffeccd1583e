#include "ui/theme/ButtonPainting.h"

#include <algorithm>

#include <QPainter>
#include <QStyleOption>

#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter::ButtonPainting {
namespace {

struct Look {
  QColor fill;
  QColor border;
  QColor text;
};

Look stateOf(const QStyleOption& option, const ThemeColors& colors, Look look) {
  constexpr double hoverShare = 0.06;
  constexpr double pressedShare = 0.14;
  if (!(option.state & QStyle::State_Enabled))
    return {mixed(look.fill, colors.window, 0.6), colors.border, colors.tertiaryText};
  if (option.state & QStyle::State_Sunken)
    look.fill = mixed(look.fill, colors.text, pressedShare);
  else if (option.state & QStyle::State_MouseOver)
    look.fill = mixed(look.fill, colors.text, hoverShare);
  return look;
}

QColor controlBorder(const ThemeColors& colors) {
  constexpr double share = 0.12;
  return mixed(colors.border, colors.text, share);
}

Look lookOf(const QStyleOptionButton& option, const ThemeColors& colors) {
  if (option.features & QStyleOptionButton::DefaultButton && option.state & QStyle::State_Enabled)
    return stateOf(option, colors, {colors.accent, {}, colors.accentText});
  if (option.state & QStyle::State_On) return stateOf(option, colors, {colors.selection, colors.accent, colors.text});
  return stateOf(option, colors, {colors.raised, controlBorder(colors), colors.text});
}

bool isPlain(const QStyleOptionButton& option) {
  return option.features & QStyleOptionButton::Flat && !(option.state & (QStyle::State_On | QStyle::State_Sunken));
}

void tick(QPainter& painter, const QRectF& box, const QColor& color) {
  const auto at = [&box](double x, double y) {
    return QPointF(box.left() + box.width() * x, box.top() + box.height() * y);
  };
  const QPointF points[] = {at(0.25, 0.53), at(0.43, 0.70), at(0.76, 0.32)};
  painter.setPen(QPen(color, std::max(1.6, box.width() * 0.11), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolyline(points, 3);
}

}  // namespace

void bevel(const QStyleOptionButton& option, QPainter& painter) {
  const ThemeColors& colors = ThemeColors::of(option.palette);
  if (isPlain(option)) {
    if (option.state & QStyle::State_MouseOver && option.state & QStyle::State_Enabled)
      Shapes::panel(painter, option.rect, Shapes::controlRadius, colors.hover);
    return;
  }
  const Look look = lookOf(option, colors);
  Shapes::panel(painter, option.rect, Shapes::controlRadius, look.fill, look.border);
}

void label(const QStyleOptionButton& option, QPainter& painter) {
  const ThemeColors& colors = ThemeColors::of(option.palette);
  painter.setPen(lookOf(option, colors).text);
  constexpr int gap = 6;
  QRect text = option.rect;
  int flags = Qt::AlignCenter | Qt::TextSingleLine | Qt::TextHideMnemonic;
  if (!option.icon.isNull()) {
    const int whole =
        option.iconSize.width() + (option.text.isEmpty() ? 0 : gap + option.fontMetrics.horizontalAdvance(option.text));
    QRect icon(QPoint(option.rect.center().x() - whole / 2, option.rect.center().y() - option.iconSize.height() / 2),
               option.iconSize);
    option.icon.paint(&painter, icon, Qt::AlignCenter,
                      option.state & QStyle::State_Enabled ? QIcon::Normal : QIcon::Disabled);
    text.setLeft(icon.right() + gap);
    flags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextHideMnemonic;
  }
  painter.drawText(text, flags, option.text);
}

void focus(const QStyleOptionButton& option, QPainter& painter) {
  const ThemeColors& colors = ThemeColors::of(option.palette);
  Shapes::focusFrame(painter, option.rect, Shapes::controlRadius, colors);
  if (!(option.features & QStyleOptionButton::DefaultButton)) return;
  // On a filled button the frame needs a gap to be seen.
  constexpr double frame = 2;
  const QRectF inside = QRectF(option.rect).adjusted(frame, frame, -frame, -frame);
  Shapes::panel(painter, inside, Shapes::controlRadius - frame, {}, colors.surface);
}

void toolPanel(const QStyleOption& option, QPainter& painter) {
  const ThemeColors& colors = ThemeColors::of(option.palette);
  if (!(option.state & QStyle::State_Enabled)) return;
  QColor fill;
  if (option.state & QStyle::State_On)
    fill = colors.selection;
  else if (option.state & QStyle::State_Sunken)
    fill = mixed(colors.hover, colors.text, 0.1);
  else if (option.state & QStyle::State_MouseOver)
    fill = colors.hover;
  if (fill.isValid()) Shapes::panel(painter, option.rect, Shapes::controlRadius, fill);
}

void checkMark(const QStyleOption& option, QPainter& painter) {
  const ThemeColors& colors = ThemeColors::of(option.palette);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  tick(painter, option.rect, option.state & QStyle::State_Enabled ? colors.accent : colors.tertiaryText);
  painter.restore();
}

void checkBox(const QStyleOption& option, QPainter& painter) {
  const ThemeColors& colors = ThemeColors::of(option.palette);
  const bool marked = option.state & (QStyle::State_On | QStyle::State_NoChange);
  constexpr double radius = 5;
  const Look look = stateOf(option, colors,
                            marked ? Look{colors.accent, {}, colors.accentText}
                                   : Look{colors.raised, mixed(controlBorder(colors), colors.text, 0.15), colors.text});
  Shapes::panel(painter, option.rect, radius, look.fill, look.border);
  if (!marked) return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF box = option.rect;
  if (option.state & QStyle::State_On) {
    tick(painter, box, look.text);
  } else {
    painter.setPen(QPen(look.text, 2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(box.left() + 5, box.center().y()), QPointF(box.right() - 5, box.center().y()));
  }
  painter.restore();
}

void radioButton(const QStyleOption& option, QPainter& painter) {
  const ThemeColors& colors = ThemeColors::of(option.palette);
  const bool on = option.state & QStyle::State_On;
  const Look look = stateOf(option, colors,
                            on ? Look{colors.accent, {}, colors.accentText}
                               : Look{colors.raised, mixed(controlBorder(colors), colors.text, 0.15), colors.text});
  const QRectF box = option.rect;
  Shapes::panel(painter, box, box.width() / 2, look.fill, look.border);
  if (!on) return;
  constexpr double dot = 7;
  Shapes::panel(painter, QRectF(box.center().x() - dot / 2, box.center().y() - dot / 2, dot, dot), dot / 2, look.text);
}

}  // namespace quillmeter::ButtonPainting
