#pragma once

#include <optional>
#include <string>

#include <QWidget>

namespace quillmeter {

// A ring filled by a fraction, with a text in the middle. Repaints only when a pixel would change. Its accessible name
// is set by the owner; its value goes into the accessible description.
class RingGauge : public QWidget {
 public:
  explicit RingGauge(QWidget* parent = nullptr);

  // 0 ... 1; absent draws the empty track.
  void setFraction(std::optional<double> fraction);
  std::optional<double> fraction() const { return fraction_; }
  void setText(const QString& text);
  void setTint(std::string hex);
  // Edge length, at normal scale.
  void setDiameter(int points);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  double thickness() const;
  // The filled part in the smallest steps that can be seen; -1 without a fraction.
  int filledSteps() const;
  int stepCount() const;

  std::optional<double> fraction_;
  QString text_;
  std::string tint_;
  int diameter_ = 64;
};

}  // namespace quillmeter
