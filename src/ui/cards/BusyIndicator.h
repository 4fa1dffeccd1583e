#pragma once

#include <memory>

#include <QVariantAnimation>
#include <QWidget>

#include "platform/TimerFactory.h"

namespace quillmeter {

// A turning arc while something is under way. It keeps its place while it shows nothing, and shows nothing of what is
// over in a moment. Turns only while it is visible, and stands still where the user wants no motion.
class BusyIndicator : public QWidget {
 public:
  static constexpr double delaySeconds = 0.3;

  BusyIndicator(TimerFactory& timers, QWidget* parent = nullptr);
  void setBusy(bool isBusy);
  bool isShown() const { return isShown_; }
  // What is under way, for accessibility and as tooltip.
  void setDescription(const QString& description);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void setShown(bool isShown);
  void turn();

  TimerFactory& timers_;
  std::unique_ptr<Timer> delay_;
  bool isBusy_ = false;
  bool isShown_ = false;
  QString description_;
  QVariantAnimation turn_;  // degrees
};

}  // namespace quillmeter
