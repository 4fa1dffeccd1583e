#include "ui/cards/HardwareSlider.h"

#include <cmath>
#include <utility>

#include <QWheelEvent>

namespace quillmeter {

namespace {

constexpr int steps = 100;
constexpr int detentSteps = 3;

int stepsOf(double value) {
  return static_cast<int>(std::lround(value * steps));
}

}  // namespace

HardwareSlider::HardwareSlider(TimerFactory& timers, QWidget* parent)
    : QSlider(Qt::Horizontal, parent), timers_(timers) {
  setRange(0, steps);
  setSingleStep(2);
  setPageStep(10);
  setFocusPolicy(Qt::StrongFocus);
  connect(this, &QSlider::valueChanged, this, [this](int value) { moved(value); });
  connect(this, &QSlider::sliderReleased, this, [this] {
    if (!isWaiting_ && !unsent_) adopt();
  });
}

HardwareSlider::~HardwareSlider() {
  sendUnsent();
}

void HardwareSlider::setSend(std::function<void(double)> send) {
  sendUnsent();
  send_ = std::move(send);
}

void HardwareSlider::moved(int value) {
  if (isAdopting_) return;
  if (detent_ && isSliderDown() && std::abs(value - stepsOf(*detent_)) < detentSteps) {
    value = stepsOf(*detent_);
    isAdopting_ = true;
    setValue(value);
    isAdopting_ = false;
  }
  unsent_ = value;
  settle_.reset();
  if (!pause_) sendWithPause();
}

void HardwareSlider::sendUnsent() {
  if (!unsent_) return;
  const int value = *std::exchange(unsent_, std::nullopt);
  isWaiting_ = true;
  if (send_) send_(value / static_cast<double>(steps));
}

void HardwareSlider::sendWithPause() {
  sendUnsent();
  settle_ = timers_.once(settleSeconds, [this] { settle(); });
  pause_ = timers_.once(sendSeconds, [this] {
    const std::unique_ptr<Timer> ended = std::move(pause_);
    if (unsent_) sendWithPause();
  });
}

void HardwareSlider::settle() {
  const std::unique_ptr<Timer> ended = std::move(settle_);
  if (isChanging_ || isSliderDown()) {
    settle_ = timers_.once(settleSeconds, [this] { settle(); });
    return;
  }
  isWaiting_ = false;
  adopt();
}

void HardwareSlider::showHardware(std::optional<double> value, bool isChanging, bool isRefused) {
  const std::optional<int> before = std::exchange(hardware_, value ? std::optional(stepsOf(*value)) : std::nullopt);
  isChanging_ = isChanging;
  if (unsent_ || isSliderDown()) return;
  if (isWaiting_) {
    const bool hasArrived = hardware_ != before || isRefused;
    if (isChanging || !hasArrived) return;
    isWaiting_ = false;
    settle_.reset();
  }
  adopt();
}

void HardwareSlider::adopt() {
  if (!hardware_ || value() == *hardware_) return;
  isAdopting_ = true;
  setValue(*hardware_);
  isAdopting_ = false;
}

void HardwareSlider::hideEvent(QHideEvent* event) {
  QSlider::hideEvent(event);
  pause_.reset();
  settle_.reset();
  sendUnsent();
  isWaiting_ = false;
}

// Turned over a slider on the way, the wheel scrolls the page.
void HardwareSlider::wheelEvent(QWheelEvent* event) {
  if (hasFocus()) {
    QSlider::wheelEvent(event);
  } else {
    event->ignore();
  }
}

}  // namespace quillmeter
