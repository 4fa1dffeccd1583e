#include "ui/settings/ComponentList.h"

#include <algorithm>
#include <utility>

#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QScrollArea>

#include "base/L10n.h"
#include "ui/settings/ComponentRow.h"
#include "ui/theme/QtText.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"
#include "ui/widgets/FigureLabel.h"

namespace quillmeter {

namespace {

constexpr int padding = 4;
constexpr int sectionGap = 18;
constexpr int titleHeight = 26;
constexpr int leastWidth = 340;

std::vector<MonitorComponentKind> kindsOf(const std::vector<DashboardCardConfig>& cards) {
  std::vector<MonitorComponentKind> kinds;
  for (const DashboardCardConfig& card : cards) kinds.push_back(card.kind);
  return kinds;
}

int heightOf(std::size_t rows) {
  return static_cast<int>(rows) * ComponentRow::rowHeight() + 2 * padding;
}

}  // namespace

ComponentList::ComponentList(Handlers handlers, QScrollArea& page, TimerFactory& timers, QWidget* parent)
    : QWidget(parent),
      handlers_(std::move(handlers)),
      hiddenTitle_(new FigureLabel(TextRole::caption, TextTone::secondary, this)),
      page_(page),
      timers_(timers) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  for (const MonitorComponentKind kind : allMonitorComponentKinds) rows_.emplace(kind, makeRow(kind));
  retranslate();
}

ComponentRow* ComponentList::makeRow(MonitorComponentKind kind) {
  ComponentRow::Handlers handlers;
  handlers.moveBy = [this, kind](int places) { handlers_.moveBy(kind, places); };
  handlers.focusBy = [this, kind](int rows) { focusBy(kind, rows); };
  handlers.resize = [this, kind](DashboardCardSize size) { handlers_.resize(kind, size); };
  handlers.enable = [this, kind](bool on) { handlers_.enable(kind, on); };
  handlers.pressed = [this](QPoint global) { press(global); };
  handlers.dragged = [this, kind](QPoint global) { drag(*rows_.at(kind), global); };
  handlers.released = [this, kind](bool drops) { release(*rows_.at(kind), drops); };
  return new ComponentRow(kind, std::move(handlers), this);
}

void ComponentList::show(const CardArrangement& arrangement, bool isAnimated) {
  if (dragged_ != nullptr) release(*dragged_, false);
  const auto shown = arrangement.shown();
  const auto hidden = arrangement.hidden();
  const bool isReordered = kindsOf(shown) != shown_ || kindsOf(hidden) != hidden_;
  shown_ = kindsOf(shown);
  hidden_ = kindsOf(hidden);
  for (std::size_t index = 0; index < shown.size(); ++index) {
    rows_.at(shown_[index])->show(shown[index], static_cast<int>(index) + 1, static_cast<int>(shown.size()));
  }
  for (const DashboardCardConfig& card : hidden) rows_.at(card.kind)->show(card, 0, 0);
  if (!isReordered) return;
  updateGeometry();
  chainFocus();
  layOut(isAnimated);
  update();
}

void ComponentList::retranslate() {
  hiddenTitle_->setText(qtText(QM_TR("未显示")));
  for (const auto& [kind, row] : rows_) row->retranslate();
}

void ComponentList::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) layOut(false);
}

QRect ComponentList::shownArea() const {
  return {0, 0, width(), shown_.empty() ? 0 : heightOf(shown_.size())};
}

QRect ComponentList::hiddenArea() const {
  if (hidden_.empty()) return {};
  const int gap = shown_.empty() ? 0 : sectionGap;
  return {0, shownArea().height() + gap + lengthForText(titleHeight), width(), heightOf(hidden_.size())};
}

QSize ComponentList::sizeHint() const {
  const QRect last = hidden_.empty() ? shownArea() : hiddenArea();
  return {leastWidth, last.y() + last.height()};
}

QSize ComponentList::minimumSizeHint() const {
  return sizeHint();
}

// While a row is dragged the others stand as they will when it is dropped; it follows the pointer itself.
void ComponentList::layOut(bool isAnimated) {
  std::vector<MonitorComponentKind> order = shown_;
  if (dragged_ != nullptr) {
    std::erase(order, dragged_->kind());
    order.insert(order.begin() + static_cast<std::ptrdiff_t>(dragPlace_), dragged_->kind());
  }
  std::vector<CardMotion::Target> targets;
  const int rowHeight = ComponentRow::rowHeight();
  const auto place = [&](const std::vector<MonitorComponentKind>& kinds, const QRect& area) {
    for (std::size_t index = 0; index < kinds.size(); ++index) {
      ComponentRow* row = rows_.at(kinds[index]);
      row->setHasSeparator(index + 1 < kinds.size());
      if (row == dragged_) continue;
      const int y = area.y() + padding + static_cast<int>(index) * rowHeight;
      targets.push_back({row, QRect(padding, y, area.width() - 2 * padding, rowHeight)});
    }
  };
  place(order, shownArea());
  place(hidden_, hiddenArea());
  motion_.move(std::move(targets), isAnimated);
  hiddenTitle_->setVisible(!hidden_.empty());
  hiddenTitle_->setGeometry(padding, hiddenArea().y() - lengthForText(titleHeight), width() - 2 * padding,
                            lengthForText(titleHeight) - padding);
}

// Tab goes through the rows as they stand.
void ComponentList::chainFocus() {
  QWidget* last = nullptr;
  for (const auto* kinds : {&shown_, &hidden_}) {
    for (const MonitorComponentKind kind : *kinds) {
      QList<QWidget*> chain = rows_.at(kind)->findChildren<QWidget*>();
      chain.prepend(rows_.at(kind));
      for (QWidget* widget : chain) {
        if (widget->focusPolicy() == Qt::NoFocus) continue;
        if (last != nullptr) setTabOrder(last, widget);
        last = widget;
      }
    }
  }
}

void ComponentList::focusBy(MonitorComponentKind kind, int rows) {
  std::vector<MonitorComponentKind> all = shown_;
  all.insert(all.end(), hidden_.begin(), hidden_.end());
  const auto index = (std::ranges::find(all, kind) - all.begin()) + rows;
  if (index < 0 || index >= static_cast<std::ptrdiff_t>(all.size())) return;
  rows_.at(all[static_cast<std::size_t>(index)])->setFocus(Qt::TabFocusReason);
}

void ComponentList::press(QPoint global) {
  pressedAt_ = global;
}

void ComponentList::drag(ComponentRow& row, QPoint global) {
  if (dragged_ == nullptr) {
    if ((global - pressedAt_).manhattanLength() < QApplication::startDragDistance()) return;
    dragged_ = &row;
    dragPlace_ = static_cast<std::size_t>(std::ranges::find(shown_, row.kind()) - shown_.begin());
    grabbedAt_ = row.mapFromGlobal(pressedAt_).y();
    scrolling_ = std::make_unique<ScrollDuringDrag>(page_, timers_, [this] { followPointer(); });
    row.setDragged(true);
  }
  pointer_ = global;
  scrolling_->follow(global);
  followPointer();
}

void ComponentList::followPointer() {
  const int last = static_cast<int>(shown_.size()) - 1;
  const int top = shownArea().y() + padding;
  const int rowHeight = ComponentRow::rowHeight();
  const int y = std::clamp(mapFromGlobal(pointer_).y() - grabbedAt_, top, top + last * rowHeight);
  dragged_->move(padding, y);
  const auto place = static_cast<std::size_t>(std::clamp((y - top + rowHeight / 2) / rowHeight, 0, last));
  if (place == dragPlace_) return;
  dragPlace_ = place;
  layOut(true);
}

void ComponentList::release(ComponentRow& row, bool drops) {
  if (dragged_ == nullptr) return;
  dragged_ = nullptr;
  scrolling_.reset();
  row.setDragged(false);
  const auto before = static_cast<std::size_t>(std::ranges::find(shown_, row.kind()) - shown_.begin());
  if (drops && dragPlace_ != before) {
    handlers_.moveTo(row.kind(), dragPlace_);
  } else {
    layOut(true);
  }
}

void ComponentList::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const ThemeColors& colors = ThemeColors::of(palette());
  for (const QRect& area : {shownArea(), hiddenArea()}) {
    if (!area.isEmpty()) Shapes::panel(painter, area, Shapes::cardRadius, colors.surface, colors.border);
  }
}

void ComponentList::resizeEvent(QResizeEvent*) {
  layOut(false);
}

void ComponentList::hideEvent(QHideEvent* event) {
  if (dragged_ != nullptr) release(*dragged_, false);
  QWidget::hideEvent(event);
}

}  // namespace quillmeter
