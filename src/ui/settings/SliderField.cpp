#include "ui/settings/SliderField.h"

#include <cmath>
#include <utility>

#include <QtCore/QSignalBlocker>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QSlider>

#include "ui/widgets/FigureLabel.h"

namespace quillmeter {

namespace {

class Slider final : public QSlider {
 public:
  Slider() : QSlider(Qt::Horizontal) {}

 protected:
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

}  // namespace

SliderField::SliderField(Scale scale, QWidget* parent)
    : QWidget(parent), scale_(scale), slider_(new Slider), text_(new FigureLabel(TextRole::body, TextTone::secondary)) {
  constexpr int sliderWidth = 180;
  constexpr int gap = 12;
  slider_->setRange(0, static_cast<int>(std::lround((scale.maximum - scale.minimum) / scale.step)));
  slider_->setFixedWidth(sliderWidth);
  text_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(gap);
  layout->addWidget(slider_);
  layout->addWidget(text_);
  setFocusProxy(slider_);
}

double SliderField::value() const {
  return scale_.minimum + slider_->value() * scale_.step;
}

bool SliderField::isDragging() const {
  return slider_->isSliderDown();
}

void SliderField::setValue(double value) {
  if (isDragging()) return;
  const QSignalBlocker silent(slider_);
  slider_->setValue(static_cast<int>(std::lround((value - scale_.minimum) / scale_.step)));
  showText();
}

void SliderField::setText(std::function<QString(double)> format, const QString& widest) {
  format_ = std::move(format);
  text_->setWidestText(widest);
  showText();
}

void SliderField::setHandlers(std::function<void(double)> preview, std::function<void(double)> choose) {
  connect(slider_, &QSlider::valueChanged, this, [this, preview = std::move(preview), choose] {
    showText();
    if (isDragging()) {
      preview(value());
    } else {
      choose(value());
    }
  });
  connect(slider_, &QSlider::sliderReleased, this, [this, choose = std::move(choose)] { choose(value()); });
}

void SliderField::showText() {
  if (!format_) return;
  text_->setText(format_(value()));
  slider_->setAccessibleDescription(format_(value()));  // its own value counts steps
}

}  // namespace quillmeter
