#pragma once

#include <vector>

#include "screentime/model/ActivitySummary.h"
#include "ui/widgets/Card.h"

class QPushButton;
class QVBoxLayout;

namespace quillmeter {

class ActivityPalette;
class ApplicationIcons;

// The applications of a period, most used first: icon, name, share and time. The first ones show at once, the rest on
// demand. Its lines stay in place and take the new figures.
class ApplicationList : public Card {
 public:
  static constexpr std::size_t firstShown = 8;

  // Both outlive the list.
  ApplicationList(ApplicationIcons& icons, ActivityPalette& palette, QWidget* parent = nullptr);
  void setUse(const std::vector<ActivitySummary::AppTotal>& apps, double total);
  void retranslate();

 private:
  class Row;
  void fill();

  ApplicationIcons& icons_;
  ActivityPalette& palette_;
  std::vector<ActivitySummary::AppTotal> apps_;
  double total_ = 0;
  bool showsAll_ = false;
  std::vector<Row*> rows_;
  QVBoxLayout* lines_ = nullptr;
  QPushButton* more_ = nullptr;
};

}  // namespace quillmeter
