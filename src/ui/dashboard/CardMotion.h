#pragma once

#include <vector>

#include <QPointer>
#include <QRect>
#include <QVariantAnimation>

class QWidget;

namespace quillmeter {

// Moves widgets to new places in one short movement, at once where the user wants no motion. Nothing runs while nothing
// moves.
class CardMotion {
 public:
  struct Target {
    QPointer<QWidget> widget;
    QRect place;
  };
  CardMotion();
  // Replaces a movement that is under way, from where the widgets are.
  void move(std::vector<Target> targets, bool isAnimated);

 private:
  struct Leg {
    Target target;
    QRect start;
  };
  void show(double progress);

  std::vector<Leg> legs_;
  QVariantAnimation animation_;
};

}  // namespace quillmeter
