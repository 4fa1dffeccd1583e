#pragma once

#include <functional>

#include "base/Calendar.h"
#include "screentime/model/ActivitySummary.h"
#include "ui/widgets/Card.h"

namespace quillmeter {

class BarChart;
class FigureLabel;

// The period's two figures and its bars: hours of a day or days of a week.
class UsageOverview : public Card {
 public:
  explicit UsageOverview(QWidget* parent = nullptr);
  void setUse(const ActivitySummary& summary, bool isWeek, Date now, const Calendar& calendar);
  // A day's bar was chosen.
  void setDayChosen(std::function<void(Date day)> chosen) { dayChosen_ = std::move(chosen); }
  void retranslate();

 private:
  QWidget* makeFigure(FigureLabel*& title, FigureLabel*& figure, FigureLabel*& note);
  void showBars(const ActivitySummary& summary, Date now, const Calendar& calendar);

  FigureLabel* totalTitle_ = nullptr;
  FigureLabel* total_ = nullptr;
  FigureLabel* totalNote_ = nullptr;
  FigureLabel* longestTitle_ = nullptr;
  FigureLabel* longest_ = nullptr;
  FigureLabel* longestNote_ = nullptr;
  BarChart* chart_ = nullptr;
  bool isWeek_ = false;
  std::vector<Date> barStarts_;
  std::function<void(Date)> dayChosen_;
};

}  // namespace quillmeter
