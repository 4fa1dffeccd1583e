#include "ui/dashboard/AgentTable.h"

#include <algorithm>
#include <array>
#include <utility>

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>

#include "menubar/TabularText.h"
#include "ui/dashboard/AgentCellDelegate.h"
#include "ui/dashboard/AgentTableModel.h"
#include "ui/dashboard/EnclosingScrollArea.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"

namespace quillmeter {

namespace {

using Column = AgentTableModel::Column;

constexpr int inset = AgentCellDelegate::inset;
constexpr int nameLeft = AgentCellDelegate::nameLeft;
constexpr int leastNameWidth = 176;
// The last is left out first.
constexpr std::array<int, 6> leftOutOrder = {Column::input,    Column::output, Column::lastActivity,
                                             Column::sessions, Column::cached, Column::hitRate};

// The titles of the columns, in line with what stands below them.
class AgentTableHeader final : public QHeaderView {
 public:
  explicit AgentTableHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {}
  QSize sizeHint() const override { return {0, QFontMetrics(fontFor(TextRole::caption)).height() + 12}; }

 protected:
  void paintSection(QPainter* painter, const QRect& section, int column) const override {
    painter->setFont(fontFor(TextRole::caption));
    painter->setPen(ThemeColors::of(palette()).secondaryText);
    const Qt::Alignment side = column == Column::name ? Qt::AlignLeft : Qt::AlignRight;
    painter->drawText(section.adjusted(inset, 0, -inset, 0), static_cast<int>(side | Qt::AlignVCenter),
                      model()->headerData(column, Qt::Horizontal).toString());
  }
};

}  // namespace

AgentTable::AgentTable(std::function<void(AgentLogProvider)> open, QWidget* parent)
    : QTreeView(parent), open_(std::move(open)), model_(new AgentTableModel(this)) {
  setObjectName(QStringLiteral("dashboard.agents.table"));
  setHeader(new AgentTableHeader(this));
  setModel(model_);
  setItemDelegate(new AgentCellDelegate(this));
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setFrameShape(QFrame::NoFrame);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setSelectionMode(QAbstractItemView::NoSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  viewport()->setAutoFillBackground(false);
  viewport()->setCursor(Qt::PointingHandCursor);
  header()->setSectionsClickable(false);
  header()->setSectionsMovable(false);
  header()->setSectionResizeMode(QHeaderView::Fixed);
  header()->setStretchLastSection(false);
  header()->setMinimumSectionSize(0);
  header()->setFocusPolicy(Qt::NoFocus);
  header()->viewport()->setAutoFillBackground(false);
  connect(this, &QAbstractItemView::clicked, this,
          [this](const QModelIndex& index) { open_(model_->row(index.row()).provider); });
}

void AgentTable::setRows(std::vector<AgentRow> rows, Date now) {
  const int before = model_->rowCount();
  model_->setRows(std::move(rows), now);
  fitColumns();
  if (model_->rowCount() == before) return;
  updateGeometry();
  setCurrentIndex(model_->index(0, 0));
}

int AgentTable::wantedHeight() const {
  return header()->sizeHint().height() + model_->rowCount() * AgentCellDelegate::lineHeight();
}

QSize AgentTable::sizeHint() const {
  return {640, wantedHeight()};
}

QSize AgentTable::minimumSizeHint() const {
  return {leastNameWidth, wantedHeight()};
}

// Each column as wide as its title and the widest figure; the rest is the name's.
void AgentTable::fitColumns() {
  const QFontMetrics titles(fontFor(TextRole::caption));
  const QFont figures = fontFor(TextRole::strong);
  const auto wanted = [&](int column) {
    double width = titles.horizontalAdvance(model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
    for (int row = 0; row < model_->rowCount(); ++row) {
      width = std::max(width, TabularText::width(model_->index(row, column).data().toString(), figures));
    }
    return static_cast<int>(width) + 2 * inset + 2;
  };
  std::array<int, AgentTableModel::columnCount_> widths{};
  int used = 0;
  for (int column = 1; column < AgentTableModel::columnCount_; ++column) {
    used += widths[static_cast<std::size_t>(column)] = wanted(column);
  }
  for (auto column = leftOutOrder.rbegin(); column != leftOutOrder.rend(); ++column) {
    if (used + leastNameWidth <= viewport()->width()) break;
    used -= std::exchange(widths[static_cast<std::size_t>(*column)], 0);
  }
  widths[Column::name] = std::max(leastNameWidth, viewport()->width() - used);
  for (int column = 0; column < AgentTableModel::columnCount_; ++column) {
    const int width = widths[static_cast<std::size_t>(column)];
    setColumnHidden(column, width == 0);
    if (width > 0) setColumnWidth(column, width);
  }
}

void AgentTable::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  fitColumns();
}

void AgentTable::changeEvent(QEvent* event) {
  QTreeView::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) {
    model_->retranslate();
    fitColumns();
  } else if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    fitColumns();
    updateGeometry();
  }
}

void AgentTable::keyPressEvent(QKeyEvent* event) {
  const bool opens = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space;
  if (opens && currentIndex().isValid()) {
    open_(model_->row(currentIndex().row()).provider);
    return;
  }
  // Only these are the table's; the view would swallow letters for its search.
  switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
      QTreeView::keyPressEvent(event);
      return;
    default:
      event->ignore();
  }
}

void AgentTable::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTreeView::currentChanged(current, previous);
  viewport()->update();
  if (hasFocus() && current.isValid()) {
    scrollIntoView(*this, visualRect(current).translated(viewport()->pos()), 0);
  }
}

void AgentTable::drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const ThemeColors& colors = ThemeColors::of(palette());
  const QRectF area(0, option.rect.top(), viewport()->width(), option.rect.height());
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  if (index.row() == hovered_) Shapes::panel(*painter, area, Shapes::controlRadius, colors.hover);
  if (index.row() > 0) {
    const double line = Shapes::hairline(*painter);
    painter->fillRect(QRectF(nameLeft, area.top(), area.width() - nameLeft - inset, line), colors.separator);
  }
  painter->restore();
  for (int column = 0; column < AgentTableModel::columnCount_; ++column) {
    if (isColumnHidden(column)) continue;
    QStyleOptionViewItem cell = option;
    cell.rect = QRect(columnViewportPosition(column), option.rect.top(), columnWidth(column), option.rect.height());
    cell.palette = palette();
    itemDelegate()->paint(painter, cell, index.siblingAtColumn(column));
  }
  if (index.row() != currentIndex().row() || !Shapes::showsFocus(*this)) return;
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  Shapes::focusFrame(*painter, area.adjusted(1, 1, -1, -1), Shapes::controlRadius, colors);
  painter->restore();
}

void AgentTable::hover(int row) {
  if (std::exchange(hovered_, row) != row) viewport()->update();
}

void AgentTable::mouseMoveEvent(QMouseEvent* event) {
  hover(indexAt(event->position().toPoint()).row());
  QTreeView::mouseMoveEvent(event);
}

void AgentTable::leaveEvent(QEvent* event) {
  hover(-1);
  QTreeView::leaveEvent(event);
}

}  // namespace quillmeter
