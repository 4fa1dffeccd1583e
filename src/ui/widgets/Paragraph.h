#pragma once

#include <QLabel>

#include "ui/theme/Typography.h"
#include "ui/widgets/FigureLabel.h"

namespace quillmeter {

// Text that wraps; follows theme and font.
class Paragraph : public QLabel {
 public:
  explicit Paragraph(TextRole role = TextRole::body, TextTone tone = TextTone::primary, QWidget* parent = nullptr);
  void setTone(TextTone tone);

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void adopt();
  TextRole role_;
  TextTone tone_;
  bool adopting_ = false;
};

}  // namespace quillmeter
