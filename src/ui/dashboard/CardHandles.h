#pragma once

#include <functional>
#include <optional>

#include <QWidget>

#include "preferences/DashboardCardConfig.h"

namespace quillmeter {

class SymbolButton;
struct ThemeColors;

// What lies over a card while the layout is edited: it takes the pointer, so that the card is dragged instead of used,
// and carries the buttons for its size and for hiding it. By key: Ctrl and an arrow moves the card, Return changes its
// size, Delete hides it, arrows go to the next card.
class CardHandles : public QWidget {
 public:
  struct Handlers {
    std::function<void(QPoint globalPosition)> grabbed;
    std::function<void(QPoint globalPosition)> dragged;
    std::function<void(bool isDropped)> released;  // false: taken back
    std::function<void(int places)> moved;         // by key
    std::function<void(int cards)> focusMoved;
    std::function<void(DashboardCardSize size)> resized;
    std::function<void()> hidden;
  };

  CardHandles(MonitorComponentKind kind, Handlers handlers, QWidget* parent);
  // The card's size and its place (from 1) among `count` cards.
  void setState(DashboardCardSize size, int place, int count);
  // Ends a drag whose card goes away.
  void release();

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void retranslate();
  void placeButtons();
  void coverHeader(QPainter& painter, const ThemeColors& colors) const;
  void endDrag(bool isDropped);
  bool moveByKey(const QKeyEvent& event);
  QRect toolbar() const;

  const MonitorComponentKind kind_;
  const Handlers handlers_;
  SymbolButton* resize_ = nullptr;
  SymbolButton* hide_ = nullptr;
  DashboardCardSize size_ = DashboardCardSize::small;
  int place_ = 1;
  int count_ = 1;
  std::optional<QPoint> pressedAt_;  // global
  bool isDragging_ = false;
};

}  // namespace quillmeter
