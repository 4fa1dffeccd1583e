#pragma once

#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include <QWidget>

#include "preferences/CardArrangement.h"
#include "ui/UiServices.h"
#include "ui/dashboard/CardHandles.h"
#include "ui/dashboard/CardMotion.h"

namespace quillmeter {

class CardSlot;
class GridLayoutPlan;
class ScrollDuringDrag;

// The cards of the overview in their places. While the layout is edited the cards can be dragged: the others make room
// at once, and where the card is let go becomes a step of the layout, which the owner stores.
class CardGrid : public QWidget {
 public:
  using Step = std::function<bool(CardArrangement&)>;
  // `edit` stores a step; the owner calls setCards() with what holds afterwards, whether it could be stored or not.
  CardGrid(const UiServices& services, std::function<void(const Step&)> edit, QWidget* parent);
  ~CardGrid() override;

  void setCards(const std::vector<DashboardCardConfig>& shown);
  void setEditing(bool isEditing);
  // Tab goes through the cards as they stand, after `before`; gives the last widget that it reaches.
  QWidget* orderFocus(QWidget* before);

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Drag {
    CardSlot* slot;
    std::size_t startPlace;
    QPoint grip;     // of the pointer on the card
    QPoint pointer;  // global
  };

  CardHandles::Handlers handlersOf(CardSlot* slot);
  GridLayoutPlan plan(const std::vector<CardSlot*>& order, int width) const;
  std::size_t placeOf(const CardSlot* slot) const;
  void arrange(bool isAnimated);
  void updateHandles();
  void reveal(const CardSlot* slot);
  void focusCard(const CardSlot* from, int cards);

  void grab(CardSlot* slot, QPoint pointer);
  void drag(QPoint pointer);
  void release(bool isDropped);
  std::size_t placeUnder(const CardSlot* slot) const;

  const UiServices& services_;
  const std::function<void(const Step&)> edit_;
  std::vector<CardSlot*> slots_;  // in the order shown
  std::vector<std::pair<CardSlot*, QRect>> targets_;
  mutable std::map<std::pair<const CardSlot*, int>, int> heights_;  // by width
  CardMotion motion_;
  std::optional<Drag> drag_;
  std::unique_ptr<ScrollDuringDrag> scrolling_;
  bool isEditing_ = false;
};

}  // namespace quillmeter
