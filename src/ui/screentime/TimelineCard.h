#pragma once

#include <vector>

#include "base/Calendar.h"
#include "screentime/model/ActivitySummary.h"
#include "ui/widgets/Card.h"

namespace quillmeter {

class ActivityPalette;
class FigureLabel;
struct TimelineBlock;

// When what was used: one strip over the hours of a day, or one for each day of a week with any use. The use under the
// pointer is named in the header.
class TimelineCard : public Card {
 public:
  // The palette outlives the card.
  explicit TimelineCard(ActivityPalette& palette, QWidget* parent = nullptr);
  void setUse(const ActivitySummary& summary, bool isWeek, const Calendar& calendar);
  void retranslate();

 private:
  class Line;
  void showDay(const ActivitySummary& summary, const Calendar& calendar);
  void showWeek(const ActivitySummary& summary, const Calendar& calendar);
  void keepLines(std::size_t count);
  QString description(const TimelineBlock& block) const;

  ActivityPalette& palette_;
  std::vector<ActivityApp> apps_;  // as the blocks count them
  std::vector<Line*> lines_;
  FigureLabel* described_ = nullptr;
  Calendar calendar_ = Calendar::utc();
};

}  // namespace quillmeter
