#include "ui/dashboard/AgentTable.h"

#include <algorithm>
#include <array>
#include <utility>

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include "menubar/SymbolPainter.h"
#include "ui/dashboard/AgentTableModel.h"
#include "ui/dashboard/EnclosingScrollArea.h"
#include "ui/theme/QtText.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/TabularText.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"

namespace quillmeter {

namespace {

using Column = AgentTableModel::Column;

constexpr int lineHeight = 52;
constexpr int inset = 8;
constexpr int groundEdge = 28;
constexpr int symbolEdge = 16;
constexpr int nameLeft = inset + groundEdge + 10;
constexpr int leastNameWidth = 176;
constexpr int dotEdge = 6;
// The last is left out first.
constexpr std::array<int, 6> leftOutOrder = {Column::input,    Column::output, Column::lastActivity,
                                             Column::sessions, Column::cached, Column::hitRate};

QColor stateColor(const AgentRow& row, const ThemeColors& colors) {
  if (row.unreadableSources > 0) return colors.warning;
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

QString sentenceCase(const QString& text) {
  return text.left(1).toUpper() + text.mid(1);
}

const AgentRow& rowOf(const QModelIndex& index) {
  return dynamic_cast<const AgentTableModel*>(index.model())->row(index.row());
}

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

// Name and state in two lines beside the symbol; figures with their digits in line.
class AgentCellDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override { return {0, lineHeight}; }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
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

 private:
  static void paintName(QPainter& painter, const QRect& cell, const AgentRow& row, const ThemeColors& colors) {
    const bool isCounted = row.state == AgentRow::State::connected;
    const QColor tint = isCounted ? colors.tint("FF6B5E") : colors.secondaryText;
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
    painter.setPen(row.unreadableSources > 0 ? colors.warning : colors.secondaryText);
    const int textLeft = left + dotEdge + 6;
    painter.drawText(
        QRect(textLeft, stateTop, cell.right() - textLeft, stateMetrics.height()), Qt::AlignLeft | Qt::AlignVCenter,
        stateMetrics.elidedText(sentenceCase(qtText(row.stateText())), Qt::ElideRight, cell.right() - textLeft));
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
  return header()->sizeHint().height() + model_->rowCount() * lineHeight;
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
