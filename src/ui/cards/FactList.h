#pragma once

#include <vector>

#include <QWidget>

#include "ui/widgets/FigureLabel.h"

class QGridLayout;

namespace quillmeter {

// Figures with their labels: as lines, the label at the start and the figure at the end, or as tiles side by side, the
// label above its figure. A fact that is not known takes no room.
class FactList : public QWidget {
 public:
  explicit FactList(QWidget* parent);
  // Tiles in so many columns.
  FactList(QWidget* parent, int columns);

  // Adds a fact and gives its index; it is hidden until it has a value.
  int add(const QString& objectName);
  void setLabel(int fact, const QString& label);
  void setValue(int fact, const QString& value);
  // Empty, or the dash that stands for unknown, hides the fact.
  void setKnownValue(int fact, const QString& value);

 private:
  struct Fact {
    FigureLabel* label;
    FigureLabel* value;
    bool isShown = false;
  };
  void describe(const Fact& fact);
  void setShown(Fact& fact, bool isShown);
  void place();

  QGridLayout* grid_;
  const int columns_ = 0;  // 0: lines
  std::vector<Fact> facts_;
};

}  // namespace quillmeter
