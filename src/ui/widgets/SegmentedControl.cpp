#include "ui/widgets/SegmentedControl.h"

#include <algorithm>

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QRadioButton>

#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {
namespace {

constexpr int inset = 3;
constexpr int segmentHeight = 26;
constexpr int verticalPadding = 8;
constexpr int horizontalPadding = 14;
constexpr double segmentRadius = Shapes::controlRadius - 2;

}  // namespace

class SegmentedControl::Button : public QRadioButton {
 public:
  explicit Button(QWidget* parent) : QRadioButton(parent) {
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  }
  QSize sizeHint() const override {
    // Room for the heavier letters that a chosen segment has.
    const QFontMetrics heavier(fontFor(TextRole::strong));
    return {heavier.horizontalAdvance(text()) + 2 * horizontalPadding,
            std::max(segmentHeight, heavier.height() + verticalPadding)};
  }
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  bool hitButton(const QPoint& position) const override { return rect().contains(position); }
  void paintEvent(QPaintEvent*) override {
    const ThemeColors& colors = ThemeColors::of(palette());
    QPainter painter(this);
    if (isChecked()) {
      const QColor fill = colors.dark ? mixed(colors.track, colors.text, 0.16) : colors.surface;
      Shapes::panel(painter, rect(), segmentRadius, fill, colors.highContrast ? colors.accent : colors.border);
    }
    painter.setFont(fontFor(isChecked() ? TextRole::strong : TextRole::body));
    painter.setPen(!isEnabled()                  ? colors.tertiaryText
                   : isChecked() || underMouse() ? colors.text
                                                 : colors.secondaryText);
    painter.drawText(rect(), Qt::AlignCenter, text());
    if (Shapes::showsFocus(*this)) Shapes::focusFrame(painter, rect(), segmentRadius, colors);
  }
};

SegmentedControl::SegmentedControl(QWidget* parent) : QWidget(parent) {
  WidgetAccessibility::install();
  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(inset, inset, inset, inset);
  line->setSpacing(2);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  connect(this, &QObject::objectNameChanged, this, [this] { nameButtons(); });
}

namespace {

// What has the focus before the keyboard comes to `control`; null when nothing does.
QWidget* reachedBefore(const QWidget& control) {
  QWidget* before = control.previousInFocusChain();
  while (before != &control && before->focusPolicy() == Qt::NoFocus) before = before->previousInFocusChain();
  return before == &control || control.isAncestorOf(before) ? nullptr : before;
}

}  // namespace

void SegmentedControl::setSegments(std::vector<Segment> segments) {
  if (segments == segments_) return;
  segments_ = std::move(segments);
  rebuild();
}

void SegmentedControl::rebuild() {
  while (buttons_.size() > segments_.size()) {
    delete buttons_.back();
    buttons_.pop_back();
  }
  while (buttons_.size() < segments_.size()) {
    auto* button = new Button(this);
    const std::size_t index = buttons_.size();
    // Arrow keys and clicks both end here; a choice made in code does not.
    connect(button, &QAbstractButton::clicked, this, [this, index] { choose(segments_[index].id); });
    layout()->addWidget(button);
    button->show();
    // Tab reaches it where the control was made, not where its segments became known.
    if (QWidget* before = buttons_.empty() ? reachedBefore(*this) : buttons_.back()) setTabOrder(before, button);
    buttons_.push_back(button);
  }
  for (std::size_t index = 0; index < segments_.size(); ++index) {
    buttons_[index]->setText(segments_[index].title);
    buttons_[index]->updateGeometry();
  }
  nameButtons();
  setChosen(chosen_);
}

// After the control and the choice: "agents.range.week".
void SegmentedControl::nameButtons() {
  for (std::size_t index = 0; index < segments_.size(); ++index)
    buttons_[index]->setObjectName(objectName() + QLatin1Char('.') + QString::fromStdString(segments_[index].id));
}

void SegmentedControl::setChosen(const std::string& id) {
  chosen_ = id;
  for (std::size_t index = 0; index < segments_.size(); ++index) {
    const bool isChosen = segments_[index].id == id;
    // Exclusive buttons cannot all be off while they stay exclusive.
    buttons_[index]->setAutoExclusive(false);
    buttons_[index]->setChecked(isChosen);
  }
  const bool isAnyChosen = std::ranges::any_of(buttons_, &QAbstractButton::isChecked);
  for (Button* button : buttons_) {
    button->setAutoExclusive(true);
    // Tab goes to the one that is chosen, or to the first.
    const bool isReached = isAnyChosen ? button->isChecked() : button == buttons_.front();
    button->setFocusPolicy(isReached ? Qt::StrongFocus : Qt::ClickFocus);
  }
}

void SegmentedControl::choose(std::string id) {
  if (id == chosen_) return;
  chosen_ = id;
  if (handler_) handler_(id);
}

void SegmentedControl::paintEvent(QPaintEvent*) {
  const ThemeColors& colors = ThemeColors::of(palette());
  QPainter painter(this);
  Shapes::panel(painter, rect(), Shapes::controlRadius, colors.track, colors.highContrast ? colors.border : QColor());
}

}  // namespace quillmeter
