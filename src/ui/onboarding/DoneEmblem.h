#pragma once

#include <QWidget>

namespace quillmeter {

// The sign that all is done, above a step's title. Decoration.
class DoneEmblem : public QWidget {
 public:
  explicit DoneEmblem(QWidget* parent);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quillmeter
