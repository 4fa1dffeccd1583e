#include "ui/dashboard/CardGrid.h"

#include <algorithm>
#include <limits>
#include <ranges>

#include <QEvent>
#include <QPainter>

#include "ui/dashboard/CardSlot.h"
#include "ui/dashboard/EnclosingScrollArea.h"
#include "ui/dashboard/GridLayoutPlan.h"
#include "ui/dashboard/ScrollDuringDrag.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter {

namespace {

constexpr int smallestWidth = 240;
constexpr int usualWidth = 760;

}  // namespace

CardGrid::CardGrid(const UiServices& services, std::function<void(const Step&)> edit, QWidget* parent)
    : QWidget(parent), services_(services), edit_(std::move(edit)) {
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
  // Not fixed: that would hold the grid to the height of its size hint, which is that of another width.
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

CardGrid::~CardGrid() = default;

void CardGrid::setCards(const std::vector<DashboardCardConfig>& shown) {
  if (drag_) drag_->slot->handles()->release();
  std::vector<CardSlot*> known = std::exchange(slots_, {});
  for (const DashboardCardConfig& card : shown) {
    const auto found = std::ranges::find(known, card.kind, &CardSlot::kind);
    if (found != known.end()) {
      (*found)->setSize(card.size);
      slots_.push_back(*found);
      known.erase(found);
      continue;
    }
    slots_.push_back(new CardSlot(card, services_, this));
    // It appears in its place, it does not come from anywhere.
    slots_.back()->setGeometry(0, 0, 0, 0);
    if (isEditing_) slots_.back()->startEditing(handlersOf(slots_.back()));
    slots_.back()->show();
  }
  for (CardSlot* gone : known) {
    gone->hide();
    gone->deleteLater();
  }
  heights_.clear();
  updateGeometry();
  updateHandles();
  arrange(true);
}

void CardGrid::setEditing(bool isEditing) {
  if (isEditing == isEditing_) return;
  isEditing_ = isEditing;
  for (CardSlot* slot : slots_) {
    if (isEditing) {
      slot->startEditing(handlersOf(slot));
    } else {
      slot->endEditing();
    }
  }
  updateHandles();
}

QWidget* CardGrid::orderFocus(QWidget* before) {
  for (const CardSlot* slot : slots_) {
    std::vector<QWidget*> reached;
    for (QWidget* widget = slot->nextInFocusChain(); widget != slot; widget = widget->nextInFocusChain()) {
      if (widget->focusPolicy() != Qt::NoFocus && slot->isAncestorOf(widget)) reached.push_back(widget);
    }
    for (QWidget* widget : reached) {
      setTabOrder(before, widget);
      before = widget;
    }
  }
  return before;
}

CardHandles::Handlers CardGrid::handlersOf(CardSlot* slot) {
  const MonitorComponentKind kind = slot->kind();
  return {.grabbed = [this, slot](QPoint pointer) { grab(slot, pointer); },
          .dragged = [this](QPoint pointer) { drag(pointer); },
          .released = [this](bool isDropped) { release(isDropped); },
          .moved =
              [this, slot, kind](int places) {
                edit_([&](CardArrangement& cards) { return cards.moveBy(kind, places); });
                reveal(slot);
              },
          .focusMoved = [this, slot](int cards) { focusCard(slot, cards); },
          .resized =
              [this, slot, kind](DashboardCardSize size) {
                edit_([&](CardArrangement& cards) { return cards.setSize(kind, size); });
                reveal(slot);
              },
          .hidden =
              [this, slot, kind] {
                focusCard(slot, slot == slots_.back() ? -1 : 1);
                edit_([&](CardArrangement& cards) { return cards.setEnabled(kind, false); });
              }};
}

GridLayoutPlan CardGrid::plan(const std::vector<CardSlot*>& order, int width) const {
  std::vector<DashboardCardSize> sizes;
  for (const CardSlot* slot : order) sizes.push_back(slot->size());
  return GridLayoutPlan(sizes, width, [&](std::size_t index, int cardWidth) {
    const auto [known, isNew] = heights_.try_emplace({order[index], cardWidth}, 0);
    if (isNew) known->second = order[index]->wantedHeight(cardWidth);
    return known->second;
  });
}

int CardGrid::heightForWidth(int width) const {
  return plan(slots_, width).height();
}

QSize CardGrid::sizeHint() const {
  return {usualWidth, heightForWidth(usualWidth)};
}

QSize CardGrid::minimumSizeHint() const {
  return {smallestWidth, 0};
}

std::size_t CardGrid::placeOf(const CardSlot* slot) const {
  return static_cast<std::size_t>(std::ranges::find(slots_, slot) - slots_.begin());
}

void CardGrid::arrange(bool isAnimated) {
  const GridLayoutPlan places = plan(slots_, width());
  std::vector<std::pair<CardSlot*, QRect>> targets;
  for (std::size_t i = 0; i < slots_.size(); ++i) targets.emplace_back(slots_[i], places.cells()[i]);
  if (drag_) update();
  if (targets == targets_) return;
  targets_ = targets;
  std::vector<CardMotion::Target> moves;
  for (const auto& [slot, place] : targets) {
    if (slot->geometry().isEmpty()) slot->setGeometry(place);
    if (!drag_ || slot != drag_->slot) {
      moves.push_back({slot, place});
    } else {
      slot->resize(place.size());
    }
  }
  motion_.move(std::move(moves), isAnimated && isVisible());
}

void CardGrid::updateHandles() {
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    CardHandles* handles = slots_[i]->handles();
    if (handles != nullptr)
      handles->setState(slots_[i]->size(), static_cast<int>(i) + 1, static_cast<int>(slots_.size()));
  }
}

void CardGrid::reveal(const CardSlot* slot) {
  const std::size_t place = placeOf(slot);
  if (place < slots_.size()) scrollIntoView(*this, targets_[place].second, GridLayoutPlan::gap);
}

void CardGrid::focusCard(const CardSlot* from, int cards) {
  const auto last = static_cast<std::ptrdiff_t>(slots_.size()) - 1;
  const auto place = std::clamp(static_cast<std::ptrdiff_t>(placeOf(from)) + cards, std::ptrdiff_t{0}, last);
  const CardSlot* slot = slots_[static_cast<std::size_t>(place)];
  if (slot == from || slot->handles() == nullptr) return;
  slot->handles()->setFocus(Qt::TabFocusReason);
  reveal(slot);
}

void CardGrid::grab(CardSlot* slot, QPoint pointer) {
  slot->raise();
  drag_ = Drag{slot, placeOf(slot), mapFromGlobal(pointer) - slot->pos(), pointer};
  if (QScrollArea* area = enclosingScrollArea(*this)) {
    scrolling_ = std::make_unique<ScrollDuringDrag>(*area, services_.timers, [this] {
      if (drag_) drag(drag_->pointer);
    });
  }
}

void CardGrid::drag(QPoint pointer) {
  if (!drag_) return;
  drag_->pointer = pointer;
  CardSlot* slot = drag_->slot;
  const QPoint corner = mapFromGlobal(pointer) - drag_->grip;
  slot->move(std::clamp(corner.x(), 0, std::max(0, width() - slot->width())),
             std::clamp(corner.y(), 0, std::max(0, height() - slot->height())));
  const std::size_t place = placeUnder(slot);
  const std::size_t present = placeOf(slot);
  if (place != present) {
    slots_.erase(slots_.begin() + static_cast<std::ptrdiff_t>(present));
    slots_.insert(slots_.begin() + static_cast<std::ptrdiff_t>(place), slot);
    updateGeometry();
    arrange(true);
  }
  update();
  if (scrolling_) scrolling_->follow(pointer);
}

// The place whose cell the card is nearest to. It has to be clearly nearer than the present one, or cards of unlike
// heights would change places back and forth.
std::size_t CardGrid::placeUnder(const CardSlot* slot) const {
  std::vector<CardSlot*> others = slots_;
  std::erase(others, slot);
  const auto distanceAt = [&](std::size_t place) {
    std::vector<CardSlot*> order = others;
    order.insert(order.begin() + static_cast<std::ptrdiff_t>(place), drag_->slot);
    const QPoint way = plan(order, width()).cells()[place].center() - slot->geometry().center();
    return static_cast<double>(QPoint::dotProduct(way, way));
  };
  constexpr double clearlyNearer = 0.7;
  const std::size_t present = placeOf(slot);
  std::size_t nearest = present;
  double least = distanceAt(present) * clearlyNearer;
  for (std::size_t place = 0; place < slots_.size(); ++place) {
    const double distance = distanceAt(place);
    if (place == present || distance >= least) continue;
    least = distance;
    nearest = place;
  }
  return nearest;
}

void CardGrid::release(bool isDropped) {
  if (!drag_) return;
  scrolling_.reset();
  const Drag ended = *std::exchange(drag_, std::nullopt);
  const std::size_t place = placeOf(ended.slot);
  targets_.clear();
  if (!isDropped && place != ended.startPlace) {
    slots_.erase(slots_.begin() + static_cast<std::ptrdiff_t>(place));
    slots_.insert(slots_.begin() + static_cast<std::ptrdiff_t>(ended.startPlace), ended.slot);
    updateGeometry();
  }
  arrange(true);
  update();
  if (isDropped && place != ended.startPlace) {
    edit_([&](CardArrangement& cards) { return cards.moveTo(ended.slot->kind(), place); });
  }
}

bool CardGrid::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) {
    heights_.clear();
    updateGeometry();
    arrange(false);
  }
  return QWidget::event(event);
}

void CardGrid::resizeEvent(QResizeEvent*) {
  arrange(false);
}

void CardGrid::showEvent(QShowEvent* event) {
  heights_.clear();
  arrange(false);
  QWidget::showEvent(event);
}

// Where the dragged card would come to stand.
void CardGrid::paintEvent(QPaintEvent*) {
  if (!drag_) return;
  const std::size_t place = placeOf(drag_->slot);
  const ThemeColors& colors = ThemeColors::of(palette());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor fill = colors.accent;
  fill.setAlphaF(0.12F);
  Shapes::panel(painter, Shapes::onPixels(painter, QRectF(targets_[place].second)), Shapes::cardRadius, fill);
}

}  // namespace quillmeter
