#pragma once

#include <QStyledItemDelegate>

namespace quillmeter {

// Paints the agents' table: name and state in two lines beside the symbol, figures with their digits in line.
class AgentCellDelegate final : public QStyledItemDelegate {
 public:
  static int lineHeight();
  static constexpr int inset = 8;        // from the edges of a cell
  static constexpr int groundEdge = 28;  // of the symbol
  static constexpr int nameLeft = inset + groundEdge + 10;

  using QStyledItemDelegate::QStyledItemDelegate;
  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override { return {0, lineHeight()}; }
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace quillmeter
