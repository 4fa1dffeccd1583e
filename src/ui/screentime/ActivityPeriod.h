#pragma once

#include "base/Calendar.h"
#include "screentime/model/ActivitySummary.h"

namespace quillmeter {

// Which day or week of the record is shown: a value that moves between the first day that is kept and today. While it
// stands at today it follows the date.
class ActivityPeriod {
 public:
  enum class Kind { day, week };

  Kind kind() const { return kind_; }
  // The week around the shown day, or the day of the shown week that was shown last.
  void setKind(Kind kind) { kind_ = kind; }
  // Takes notice of the time: today moves on, days that are kept no longer are left.
  void update(Date now, const Calendar& calendar);
  void showDay(Date day, const Calendar& calendar);
  void showToday(const Calendar& calendar);
  // By days or weeks; held within the record.
  void move(int steps, const Calendar& calendar);
  bool canMove(int steps, const Calendar& calendar) const;

  DateInterval interval(const Calendar& calendar) const { return intervalOf(day_, calendar); }
  // Whether the interval holds today.
  bool isCurrent(const Calendar& calendar) const;

 private:
  DateInterval intervalOf(Date day, const Calendar& calendar) const;
  void hold(const Calendar& calendar);

  Kind kind_ = Kind::day;
  Date day_;  // start of the shown day, or of one in the shown week
  Date today_;
  bool followsToday_ = true;
};

}  // namespace quillmeter
