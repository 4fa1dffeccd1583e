#pragma once

#include <optional>
#include <string>

#include <QWidget>

#include "base/Calendar.h"
#include "ui/cards/MonitorCard.h"

namespace quillmeter {

class FigureLabel;
class LevelBar;
class RingGauge;

// One rate-limit window: how much of it is used and when it begins anew. Warns in colour from 80 % on.
class LimitMeter : public QWidget {
 public:
  LimitMeter(CardForm form, std::string tint, const QString& objectName, QWidget* parent);

  void setTitle(const QString& title);
  // Absent when no log has told of the window.
  void show(std::optional<double> used, std::optional<Date> resetAt, Date now, const Calendar& calendar);

 private:
  void buildRing(const QString& objectName);
  void buildLine(CardForm form, const QString& objectName);
  QString resetText(std::optional<Date> resetAt, Date now, const Calendar& calendar) const;

  const CardForm form_;
  const std::string tint_;
  FigureLabel* title_;
  FigureLabel* figure_ = nullptr;
  FigureLabel* reset_;
  FigureLabel* caption_ = nullptr;  // beside the ring: what the time is
  FigureLabel* clock_ = nullptr;    // and when that is
  LevelBar* level_ = nullptr;
  RingGauge* ring_ = nullptr;
};

}  // namespace quillmeter
