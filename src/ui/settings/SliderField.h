#pragma once

#include <functional>

#include <QWidget>

class QSlider;

namespace quillmeter {

class FigureLabel;

// A bounded number on a slider, with its text at the end. While the user drags, changes are only previewed; the value
// is chosen when the knob is let go. Keys choose at once; the wheel scrolls the page.
class SliderField final : public QWidget {
 public:
  struct Scale {
    double minimum;
    double maximum;
    double step;
  };
  SliderField(Scale scale, QWidget* parent = nullptr);

  // Does not call the handlers; ignored while the user drags.
  void setValue(double value);
  double value() const;
  bool isDragging() const;
  // `widest` keeps room for the text, so that fields below each other line up.
  void setText(std::function<QString(double)> format, const QString& widest);
  void setHandlers(std::function<void(double)> preview, std::function<void(double)> choose);
  QSlider* slider() const { return slider_; }

 private:
  void showText();

  const Scale scale_;
  QSlider* slider_;
  FigureLabel* text_;
  std::function<QString(double)> format_;
};

}  // namespace quillmeter
