#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QSlider>

#include "platform/TimerFactory.h"

namespace quillmeter {

// A slider over a value that some hardware holds, 0 ... 1. The user's changes are sent at most every `sendSeconds`, the
// last one always; what the hardware reports meanwhile does not move the handle, until it reports a change after the
// last one was sent, or says nothing more for `settleSeconds`.
class HardwareSlider : public QSlider {
 public:
  static constexpr double sendSeconds = 0.08;
  static constexpr double settleSeconds = 1.5;

  // `timers` outlives the slider.
  HardwareSlider(TimerFactory& timers, QWidget* parent);
  ~HardwareSlider() override;

  // Called with each value to be sent, at the latest when the slider is destroyed: it must not need the owner.
  void setSend(std::function<void(double)> send);
  // A value around which the handle stops while it is dragged.
  void setDetent(double value) { detent_ = value; }
  // What the hardware holds. `isChanging`: a change is under way; `isRefused`: the last one was not taken.
  void showHardware(std::optional<double> value, bool isChanging, bool isRefused);

 protected:
  void hideEvent(QHideEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void moved(int value);
  void sendUnsent();
  void sendWithPause();
  void settle();
  void adopt();

  TimerFactory& timers_;
  std::function<void(double)> send_;
  std::optional<double> detent_;
  std::optional<int> hardware_;
  std::optional<int> unsent_;
  bool isWaiting_ = false;  // something was sent, and its effect has not been seen
  bool isChanging_ = false;
  bool isAdopting_ = false;
  std::unique_ptr<Timer> pause_;
  std::unique_ptr<Timer> settle_;
};

}  // namespace quillmeter
