#pragma once

#include <functional>

#include <QWidget>

#include "ui/screentime/ActivityPeriod.h"

class QPushButton;

namespace quillmeter {

class FigureLabel;
class SegmentedControl;
class SymbolButton;

// Day or week, and which one. The owner keeps the period; the bar shows it and asks for changes.
class PeriodBar : public QWidget {
 public:
  struct Handlers {
    std::function<void(ActivityPeriod::Kind)> kindChosen;
    std::function<void(int steps)> moved;
    std::function<void()> todayChosen;
  };
  explicit PeriodBar(Handlers handlers, QWidget* parent = nullptr);
  void show(const ActivityPeriod& period, const Calendar& calendar);
  void retranslate();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void buildButtons();

  Handlers handlers_;
  ActivityPeriod::Kind kind_ = ActivityPeriod::Kind::day;
  SegmentedControl* kinds_ = nullptr;
  SymbolButton* previous_ = nullptr;
  FigureLabel* title_ = nullptr;
  SymbolButton* next_ = nullptr;
  QPushButton* today_ = nullptr;
};

}  // namespace quillmeter
