#pragma once

#include <QWidget>

namespace quillmeter {

// How far one has come: a dot a step, the present one drawn longer. Reads "第 2 步，共 4 步" to accessibility.
class StepDots : public QWidget {
 public:
  StepDots(int count, QWidget* parent);
  void setCurrent(int index);
  void retranslate();
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int count_;
  int current_ = 0;
};

}  // namespace quillmeter
