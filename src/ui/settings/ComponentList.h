#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include <QPoint>
#include <QWidget>

#include "preferences/CardArrangement.h"
#include "ui/dashboard/CardMotion.h"
#include "ui/dashboard/ScrollDuringDrag.h"

class QScrollArea;

namespace quillmeter {

class ComponentRow;
class FigureLabel;

// The components of one layout: those that are shown, in their order, then the hidden ones. Rows are dragged, or moved
// with Ctrl and the arrow keys. What the user wants goes to the handlers; the list shows what it is given.
class ComponentList final : public QWidget {
 public:
  struct Handlers {
    std::function<void(MonitorComponentKind, std::size_t place)> moveTo;
    std::function<void(MonitorComponentKind, int places)> moveBy;
    std::function<void(MonitorComponentKind, DashboardCardSize)> resize;
    std::function<void(MonitorComponentKind, bool)> enable;
  };

  // `page` scrolls while a row is dragged near its edge.
  ComponentList(Handlers handlers, QScrollArea& page, TimerFactory& timers, QWidget* parent = nullptr);

  void show(const CardArrangement& arrangement, bool isAnimated);
  using QWidget::show;
  void retranslate();

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  ComponentRow* makeRow(MonitorComponentKind kind);
  void layOut(bool isAnimated);
  void chainFocus();
  void focusBy(MonitorComponentKind kind, int rows);
  void press(QPoint global);
  void drag(ComponentRow& row, QPoint global);
  void followPointer();
  void release(ComponentRow& row, bool drops);
  QRect shownArea() const;
  QRect hiddenArea() const;

  const Handlers handlers_;
  std::map<MonitorComponentKind, ComponentRow*> rows_;
  std::vector<MonitorComponentKind> shown_;
  std::vector<MonitorComponentKind> hidden_;
  FigureLabel* hiddenTitle_;
  CardMotion motion_;
  QScrollArea& page_;
  TimerFactory& timers_;
  std::unique_ptr<ScrollDuringDrag> scrolling_;  // while a drag is under way
  QPoint pressedAt_;                             // global
  QPoint pointer_;                               // global
  int grabbedAt_ = 0;                            // pointer's distance from the row's upper edge
  ComponentRow* dragged_ = nullptr;              // while a drag is under way
  std::size_t dragPlace_ = 0;
};

}  // namespace quillmeter
