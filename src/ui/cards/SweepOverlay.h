#pragma once

#include <string>

#include <QVariantAnimation>
#include <QWidget>

namespace quillmeter {

// A band of light that sweeps over the widget below it and takes specks along, for as long as something is being
// cleaned. Its timer runs only meanwhile and while it is visible; where the user wants no motion the surface is tinted
// and stands still. Lets every click through.
class SweepOverlay : public QWidget {
 public:
  // Covers `covered`, whose child it becomes.
  SweepOverlay(std::string tint, double radius, QWidget* covered);
  void setActive(bool isActive);
  bool isMoving() const { return sweep_.state() == QAbstractAnimation::Running; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void paintBand(QPainter& painter, const QColor& color, double position, double strength) const;
  void paintSpecks(QPainter& painter, const QColor& color, double position, double strength) const;

  const std::string tint_;
  const double radius_;
  bool isActive_ = false;
  QVariantAnimation sweep_;  // 0 ... 1, again and again
  QVariantAnimation fade_;   // 1 ... 0 at the end
};

}  // namespace quillmeter
