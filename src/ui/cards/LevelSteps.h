#pragma once

#include <optional>

#include <QColor>
#include <QWidget>

namespace quillmeter {

// A level out of a few, as a row of steps that are filled up to it: equally high ones, or rising ones as of a signal.
class LevelSteps : public QWidget {
 public:
  enum class Shape { row, rising };
  LevelSteps(int steps, Shape shape, QWidget* parent = nullptr);
  // How many steps are filled, and in which colour; absent fills none.
  void setLevel(std::optional<int> level, const QColor& color);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const int steps_;
  const Shape shape_;
  int filled_ = 0;
  QColor color_;
};

}  // namespace quillmeter
