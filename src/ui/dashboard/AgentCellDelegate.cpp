#include "ui/dashboard/AgentCellDelegate.h"

#include <QPainter>

#include "menubar/SymbolPainter.h"
#include "menubar/TabularText.h"
#include "preferences/MonitorComponentKind.h"
#include "ui/dashboard/AgentTableModel.h"
#include "ui/theme/CapitalizedText.h"
#include "ui/theme/QtText.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"

namespace quillmeter {

namespace {

using Column = AgentTableModel::Column;

constexpr int symbolEdge = 16;
constexpr int dotEdge = 6;
constexpr int inset = AgentCellDelegate::inset;
constexpr int groundEdge = AgentCellDelegate::groundEdge;
constexpr int nameLeft = AgentCellDelegate::nameLeft;

QColor stateColor(const AgentRow& row, const ThemeColors& colors) {
  if (row.isIncomplete) return colors.warning;
  switch (row.state) {
    case AgentRow::State::connected:
      return colors.success;
    case AgentRow::State::found:
      return colors.accent;
    case AgentRow::State::switchedOff:
    case AgentRow::State::notFound:
      break;
  }
  return colors.tertiaryText;
}

const AgentRow& rowOf(const QModelIndex& index) {
  return dynamic_cast<const AgentTableModel*>(index.model())->row(index.row());
}

void paintName(QPainter& painter, const QRect& cell, const AgentRow& row, const ThemeColors& colors) {
  const bool isCounted = row.state == AgentRow::State::connected;
  const QColor tint =
      isCounted ? colors.tint(quillmeter::tint(MonitorComponentKind::agentTokens)) : colors.secondaryText;
  QColor groundColor = tint;
  groundColor.setAlphaF(0.14F);
  const QRectF ground(cell.left() + inset, cell.center().y() + 0.5 - groundEdge / 2.0, groundEdge, groundEdge);
  Shapes::panel(painter, ground, Shapes::controlRadius, groundColor);
  const double edge = (groundEdge - symbolEdge) / 2.0;
  SymbolPainter::paint(painter, symbol(row.provider), ground.adjusted(edge, edge, -edge, -edge), tint);

  const QFont nameFont = fontFor(TextRole::strong);
  const QFont stateFont = fontFor(TextRole::caption);
  const QFontMetrics nameMetrics(nameFont);
  const QFontMetrics stateMetrics(stateFont);
  const int top = cell.center().y() - (nameMetrics.height() + stateMetrics.height() + 2) / 2;
  const int left = cell.left() + nameLeft;
  const int width = cell.right() - left;
  painter.setFont(nameFont);
  painter.setPen(isCounted ? colors.text : colors.secondaryText);
  painter.drawText(QRect(left, top, width, nameMetrics.height()), Qt::AlignLeft | Qt::AlignVCenter,
                   nameMetrics.elidedText(qtText(title(row.provider)), Qt::ElideRight, width));
  const int stateTop = top + nameMetrics.height() + 2;
  painter.setPen(Qt::NoPen);
  painter.setBrush(stateColor(row, colors));
  painter.drawEllipse(QRectF(left, stateTop + (stateMetrics.height() - dotEdge) / 2.0, dotEdge, dotEdge));
  painter.setFont(stateFont);
  painter.setPen(row.isIncomplete ? colors.warning : colors.secondaryText);
  const int textLeft = left + dotEdge + 6;
  painter.drawText(QRect(textLeft, stateTop, cell.right() - textLeft, stateMetrics.height()),
                   Qt::AlignLeft | Qt::AlignVCenter,
                   stateMetrics.elidedText(capitalizedText(row.stateText()), Qt::ElideRight, cell.right() - textLeft));
}

}  // namespace

int AgentCellDelegate::lineHeight() {
  return lengthForText(52);
}

void AgentCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const ThemeColors& colors = ThemeColors::of(option.palette);
  const AgentRow& row = rowOf(index);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  if (index.column() == Column::name) {
    paintName(*painter, option.rect, row, colors);
  } else {
    const bool isKnown = row.metrics.has_value();
    painter->setFont(fontFor(index.column() == Column::total ? TextRole::strong : TextRole::body));
    painter->setPen(!isKnown                                 ? colors.tertiaryText
                    : index.column() == Column::lastActivity ? colors.secondaryText
                                                             : colors.text);
    TabularText::draw(*painter, QRectF(option.rect.adjusted(0, 0, -inset, 0)), Qt::AlignRight | Qt::AlignVCenter,
                      index.data().toString());
  }
  painter->restore();
}

}  // namespace quillmeter
