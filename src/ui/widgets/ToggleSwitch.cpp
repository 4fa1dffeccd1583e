#include "ui/widgets/ToggleSwitch.h"

#include <QPainter>
#include <QVariantAnimation>

#include "ui/theme/Shapes.h"
#include "ui/theme/Theme.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter {
namespace {

constexpr double trackWidth = 38;
constexpr double trackHeight = 22;
constexpr double gap = 2;       // between track and knob
constexpr int focusMargin = 4;  // around the track
constexpr int slideMilliseconds = 120;

}  // namespace

ToggleSwitch::ToggleSwitch(QWidget* parent) : QCheckBox(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setAttribute(Qt::WA_Hover);
  connect(this, &QAbstractButton::toggled, this, [this](bool on) { slide(on); });
}

ToggleSwitch::~ToggleSwitch() = default;

QSize ToggleSwitch::sizeHint() const {
  return {static_cast<int>(trackWidth) + 2 * focusMargin, static_cast<int>(trackHeight) + 2 * focusMargin};
}

// A page sets its switches while it opens: what nobody saw in another state need not move.
void ToggleSwitch::slide(bool on) {
  sliding_.reset();
  const double target = on ? 1 : 0;
  const int duration = isSeen_ && isVisible() ? motionMilliseconds(slideMilliseconds) : 0;
  if (duration == 0) {
    knob_ = target;
    update();
    return;
  }
  sliding_ = std::make_unique<QVariantAnimation>();
  sliding_->setDuration(duration);
  sliding_->setEasingCurve(QEasingCurve::OutCubic);
  sliding_->setStartValue(knob_);
  sliding_->setEndValue(target);
  connect(sliding_.get(), &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    knob_ = value.toDouble();
    update();
  });
  sliding_->start();
}

void ToggleSwitch::paintEvent(QPaintEvent*) {
  isSeen_ = true;
  const ThemeColors& colors = ThemeColors::of(palette());
  QPainter painter(this);
  const QPointF center = QRectF(rect()).center();
  const QRectF track(center.x() - trackWidth / 2, center.y() - trackHeight / 2, trackWidth, trackHeight);
  constexpr double radius = trackHeight / 2;
  const QColor off = mixed(colors.track, colors.text, underMouse() && isEnabled() ? 0.22 : 0.14);
  QColor ground = mixed(off, colors.accent, knob_);
  if (!isEnabled()) ground = mixed(ground, colors.surface, 0.55);
  Shapes::panel(painter, track, radius, ground, colors.highContrast ? colors.text : QColor());

  constexpr double knobSize = trackHeight - 2 * gap;
  const double room = trackWidth - 2 * gap - knobSize;
  const double along = layoutDirection() == Qt::RightToLeft ? 1 - knob_ : knob_;
  const QRectF knob(track.left() + gap + room * along, track.top() + gap, knobSize, knobSize);
  QColor face = isEnabled() ? QColor(Qt::white) : mixed(colors.surface, colors.text, 0.12);
  if (colors.highContrast) face = isChecked() ? colors.accentText : colors.text;
  Shapes::panel(painter, knob, knobSize / 2, face);
  if (Shapes::showsFocus(*this)) {
    constexpr double margin = 3;
    Shapes::focusFrame(painter, track.adjusted(-margin, -margin, margin, margin), radius + margin, colors);
  }
}

bool ToggleSwitch::hitButton(const QPoint& position) const {
  return rect().contains(position);
}

}  // namespace quillmeter
