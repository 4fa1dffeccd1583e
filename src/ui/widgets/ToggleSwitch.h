#pragma once

#include <memory>

#include <QCheckBox>

class QVariantAnimation;

namespace quillmeter {

// An on/off switch: checkable; clicked() is the user's change. Needs an accessible name.
class ToggleSwitch : public QCheckBox {
 public:
  explicit ToggleSwitch(QWidget* parent = nullptr);
  ~ToggleSwitch() override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& position) const override;

 private:
  void slide(bool on);

  double knob_ = 0;      // 0 off ... 1 on
  bool isSeen_ = false;  // painted once
  std::unique_ptr<QVariantAnimation> sliding_;
};

}  // namespace quillmeter
