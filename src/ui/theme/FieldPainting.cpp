#include "ui/theme/FieldPainting.h"

#include <QPainter>
#include <QStyleOption>

#include "ui/theme/MenuPainting.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter::FieldPainting {
namespace {

bool isEnabled(const QStyleOption& option) {
  return option.state & QStyle::State_Enabled;
}

bool isKeyboardFocus(const QStyleOption& option) {
  return option.state & QStyle::State_HasFocus && option.state & QStyle::State_KeyboardFocusChange;
}

void stepArrow(const QStyleOptionSpinBox& option, QPainter& painter, QStyle::SubControl part, bool possible) {
  const ThemeColors& colors = ThemeColors::of(option.palette);
  const bool isUp = part == QStyle::SC_SpinBoxUp;
  const QRectF area = spinBoxPart(option, part);
  const bool isActive = possible && isEnabled(option) && option.activeSubControls & part;
  const QColor color = !possible || !isEnabled(option) ? colors.border : isActive ? colors.text : colors.secondaryText;
  // Towards each other, so that both read as one control.
  const QPointF center(area.center().x(), isUp ? area.bottom() - 4.5 : area.top() + 4.5);
  Shapes::chevron(painter, center, color, isUp ? 180 : 0);
}

}  // namespace

void frame(const QStyleOption& option, QPainter& painter, bool focused) {
  const ThemeColors& colors = ThemeColors::of(option.palette);
  const bool hovered = isEnabled(option) && option.state & QStyle::State_MouseOver;
  const QColor fill = isEnabled(option) ? colors.raised : mixed(colors.raised, colors.window, 0.6);
  Shapes::panel(painter, option.rect, Shapes::controlRadius, fill,
                mixed(colors.border, colors.text, hovered ? 0.28 : 0.12));
  if (focused) Shapes::focusFrame(painter, option.rect, Shapes::controlRadius, colors);
}

void comboBox(const QStyleOptionComboBox& option, QPainter& painter) {
  const ThemeColors& colors = ThemeColors::of(option.palette);
  const bool hovered = isEnabled(option) && option.state & QStyle::State_MouseOver;
  if (option.frame) {
    frame(option, painter, isKeyboardFocus(option));
  } else if (hovered) {
    Shapes::panel(painter, option.rect, Shapes::controlRadius, colors.hover);
  }
  const QRectF arrow = comboBoxPart(option, QStyle::SC_ComboBoxArrow);
  const QColor color = !isEnabled(option) ? colors.tertiaryText : hovered ? colors.text : colors.secondaryText;
  // Two chevrons say that a list opens over the field.
  const QPointF center(arrow.center().x() - 1, QRectF(option.rect).center().y());
  Shapes::chevron(painter, center + QPointF(0, -4), color, 180);
  Shapes::chevron(painter, center + QPointF(0, 4), color);
}

void comboBoxLabel(const QStyleOptionComboBox& option, QPainter& painter) {
  const ThemeColors& colors = ThemeColors::of(option.palette);
  QRect area = comboBoxPart(option, QStyle::SC_ComboBoxEditField);
  if (!option.currentIcon.isNull()) {
    constexpr int gap = 6;
    const QRect icon(QPoint(area.left(), area.center().y() - option.iconSize.height() / 2), option.iconSize);
    option.currentIcon.paint(&painter, icon, Qt::AlignCenter, isEnabled(option) ? QIcon::Normal : QIcon::Disabled);
    area.setLeft(icon.right() + gap);
  }
  painter.setPen(isEnabled(option) ? colors.text : colors.tertiaryText);
  const QString text = option.fontMetrics.elidedText(option.currentText, Qt::ElideRight, area.width());
  painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
}

void spinBox(const QStyleOptionSpinBox& option, QPainter& painter) {
  if (option.frame) frame(option, painter, option.state & QStyle::State_HasFocus);
  if (option.buttonSymbols == QAbstractSpinBox::NoButtons) return;
  stepArrow(option, painter, QStyle::SC_SpinBoxUp, option.stepEnabled & QAbstractSpinBox::StepUpEnabled);
  stepArrow(option, painter, QStyle::SC_SpinBoxDown, option.stepEnabled & QAbstractSpinBox::StepDownEnabled);
}

QRect comboBoxPart(const QStyleOptionComboBox& option, QStyle::SubControl part) {
  const QRect& whole = option.rect;
  QRect area = whole;
  switch (part) {
    case QStyle::SC_ComboBoxArrow:
      area.setLeft(whole.right() - arrowWidth + 1);
      break;
    case QStyle::SC_ComboBoxEditField:
      area.adjust(horizontalPadding, 1, -arrowWidth, -1);
      break;
    case QStyle::SC_ComboBoxListBoxPopup:
      // The texts of the list stand over that of the field.
      area.adjust(horizontalPadding - MenuPainting::textInset - 1, 0, 0, 0);
      break;
    default:
      break;
  }
  return QStyle::visualRect(option.direction, whole, area);
}

QRect spinBoxPart(const QStyleOptionSpinBox& option, QStyle::SubControl part) {
  const QRect& whole = option.rect;
  const bool hasButtons = option.buttonSymbols != QAbstractSpinBox::NoButtons;
  QRect area = whole;
  switch (part) {
    case QStyle::SC_SpinBoxUp:
    case QStyle::SC_SpinBoxDown: {
      if (!hasButtons) return {};
      const int middle = whole.top() + whole.height() / 2;
      area.setLeft(whole.right() - arrowWidth + 1);
      if (part == QStyle::SC_SpinBoxUp)
        area.setBottom(middle - 1);
      else
        area.setTop(middle);
      break;
    }
    case QStyle::SC_SpinBoxEditField:
      area.adjust(2, 2, hasButtons ? -arrowWidth : -2, -2);
      break;
    default:
      break;
  }
  return QStyle::visualRect(option.direction, whole, area);
}

}  // namespace quillmeter::FieldPainting
