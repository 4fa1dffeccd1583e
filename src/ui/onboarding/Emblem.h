#pragma once

#include <QWidget>

namespace quillmeter {

// The picture above a step's title: the program's three rings, or the sign that all is done. Decoration.
class Emblem : public QWidget {
 public:
  enum class Kind { rings, done };
  Emblem(Kind kind, QWidget* parent);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void paintRings(QPainter& painter) const;
  void paintDone(QPainter& painter) const;

  Kind kind_;
};

}  // namespace quillmeter
