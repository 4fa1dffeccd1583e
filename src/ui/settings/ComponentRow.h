#pragma once

#include <functional>

#include <QWidget>

#include "preferences/DashboardCardConfig.h"

namespace quillmeter {

class FigureLabel;
class SegmentedControl;
class ToggleSwitch;

// One component of a layout: grip, symbol, title, size and switch. Takes the focus, so that it can be moved by keys; a
// drag that begins on it is told to the list.
class ComponentRow final : public QWidget {
 public:
  static int rowHeight();

  struct Handlers {
    std::function<void(int places)> moveBy;
    std::function<void(int rows)> focusBy;
    std::function<void(DashboardCardSize)> resize;
    std::function<void(bool)> enable;
    std::function<void(QPoint global)> pressed;
    std::function<void(QPoint global)> dragged;
    std::function<void(bool drops)> released;  // false: the drag was given up
  };

  ComponentRow(MonitorComponentKind kind, Handlers handlers, QWidget* parent);

  MonitorComponentKind kind() const { return kind_; }
  // `place` among `count` rows shown, from 1; 0 for a hidden one.
  void show(const DashboardCardConfig& card, int place, int count);
  using QWidget::show;
  void setDragged(bool isDragged);
  void setHasSeparator(bool hasSeparator);
  void retranslate();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void buildContent();
  void showName();

  const MonitorComponentKind kind_;
  const Handlers handlers_;
  DashboardCardConfig card_;
  int place_ = 0;
  int count_ = 0;
  bool isDragged_ = false;
  bool isPressed_ = false;
  bool hasSeparator_ = false;
  FigureLabel* title_ = nullptr;
  FigureLabel* subtitle_ = nullptr;
  SegmentedControl* size_ = nullptr;
  ToggleSwitch* switch_ = nullptr;
};

}  // namespace quillmeter
