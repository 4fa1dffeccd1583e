#include "ui/theme/MenuPainting.h"

#include <algorithm>

#include <QPainter>
#include <QStyleOption>

#include "ui/theme/ButtonPainting.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter::MenuPainting {
namespace {

constexpr int itemHeight = 30;
constexpr int separatorHeight = 9;
constexpr int markWidth = 26;
constexpr int trailing = 14;
constexpr double rowRadius = 6;

bool isSeparator(const QStyleOptionMenuItem& option) {
  return option.menuItemType == QStyleOptionMenuItem::Separator;
}

void mark(const QStyleOptionMenuItem& option, QPainter& painter) {
  const QRect& whole = option.rect;
  constexpr int size = 16;
  const QRect box(whole.left() + (markWidth - size) / 2 + 2, whole.top() + (whole.height() - size) / 2, size, size);
  if (option.checkType != QStyleOptionMenuItem::NotCheckable) {
    QStyleOption tick = option;
    tick.rect = box;
    if (option.checked) ButtonPainting::checkMark(tick, painter);
  } else if (!option.icon.isNull()) {
    option.icon.paint(&painter, box, Qt::AlignCenter,
                      option.state & QStyle::State_Enabled ? QIcon::Normal : QIcon::Disabled);
  }
}

}  // namespace

void panel(const QStyleOption& option, QPainter& painter, double radius) {
  const ThemeColors& colors = ThemeColors::of(option.palette);
  Shapes::panel(painter, option.rect, radius, colors.floating, mixed(colors.border, colors.text, 0.06));
}

void item(const QStyleOptionMenuItem& option, QPainter& painter) {
  const ThemeColors& colors = ThemeColors::of(option.palette);
  const bool enabled = option.state & QStyle::State_Enabled;
  if (isSeparator(option)) {
    const double line = Shapes::hairline(painter);
    const QRectF place(option.rect.left() + 8, QRectF(option.rect).center().y(), option.rect.width() - 16, line);
    painter.fillRect(Shapes::onPixels(painter, place), mixed(colors.border, colors.text, 0.08));
    return;
  }
  if (enabled && option.state & QStyle::State_Selected)
    Shapes::panel(painter, QRectF(option.rect).adjusted(1, 1, -1, -1), rowRadius, colors.selection);
  mark(option, painter);

  const qsizetype tab = option.text.indexOf(QLatin1Char('\t'));
  const QRect area = option.rect.adjusted(textInset, 0, -trailing, 0);
  constexpr int flags = Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextHideMnemonic;
  painter.save();
  painter.setFont(option.font);
  if (tab >= 0) {
    painter.setPen(enabled ? colors.secondaryText : colors.tertiaryText);
    painter.drawText(area, flags | Qt::AlignRight, option.text.mid(tab + 1));
  }
  painter.setPen(enabled ? colors.text : colors.tertiaryText);
  painter.drawText(area, flags | Qt::AlignLeft, option.text.left(tab));
  painter.restore();
  if (option.menuItemType == QStyleOptionMenuItem::SubMenu)
    Shapes::chevron(painter, QPointF(option.rect.right() - 9, QRectF(option.rect).center().y()), colors.secondaryText,
                    -90);
}

QSize itemSize(const QStyleOptionMenuItem& option, const QSize& contents, bool isInComboBox) {
  if (isSeparator(option)) return {contents.width(), separatorHeight};
  constexpr int shortcutGap = 24;
  const int text = isInComboBox ? option.fontMetrics.horizontalAdvance(option.text) : contents.width();
  int width = text + textInset + trailing + 4;
  if (option.text.contains(QLatin1Char('\t'))) width += shortcutGap;
  if (option.menuItemType == QStyleOptionMenuItem::SubMenu) width += trailing;
  constexpr int verticalPadding = 10;
  return {width, std::max(itemHeight, option.fontMetrics.height() + verticalPadding)};
}

}  // namespace quillmeter::MenuPainting
