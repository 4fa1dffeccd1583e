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
  void setText(const QString& text);
  void setTint(std::string hex);
  // Edge length, at normal scale.
  void setDiameter(int points);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::optional<double> fraction_;
  QString text_;
  std::string tint_;
  int diameter_ = 64;
};

}  // namespace quillmeter
