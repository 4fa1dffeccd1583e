#pragma once

#include <optional>
#include <string>

#include <QWidget>

namespace quillmeter {

// A thin horizontal bar filled by a fraction. Repaints only when a pixel would change.
class LevelBar : public QWidget {
 public:
  explicit LevelBar(QWidget* parent = nullptr);
  // 0 ... 1; absent draws the empty track.
  void setFraction(std::optional<double> fraction);
  std::optional<double> fraction() const { return fraction_; }
  void setTint(std::string hex);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  // How many pixels of the device are filled; -1 without a fraction.
  int filledPixels() const;

  std::optional<double> fraction_;
  std::string tint_;
};

}  // namespace quillmeter
