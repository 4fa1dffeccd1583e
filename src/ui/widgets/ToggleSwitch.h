#pragma once

#include <QAbstractButton>

namespace quillmeter {

// An on/off switch: checkable; clicked() is the user's change. Needs an accessible name.
class ToggleSwitch : public QAbstractButton {
 public:
  explicit ToggleSwitch(QWidget* parent = nullptr);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& position) const override;
};

}  // namespace quillmeter
