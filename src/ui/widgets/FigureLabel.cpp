#include "ui/widgets/FigureLabel.h"

#include <algorithm>
#include <cmath>

#include <QEvent>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include "menubar/TabularText.h"
#include "ui/theme/ThemeColors.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {
namespace {

bool isFigure(TextRole role) {
  return role == TextRole::figure || role == TextRole::largeFigure;
}

// Large text is legible at less contrast.
bool isLarge(TextRole role) {
  return isFigure(role) || role == TextRole::title;
}

}  // namespace

QColor toneColor(TextTone tone, const ThemeColors& colors) {
  switch (tone) {
    case TextTone::primary:
      return colors.text;
    case TextTone::secondary:
      return colors.secondaryText;
    case TextTone::tertiary:
      return colors.tertiaryText;
    case TextTone::accent:
      return colors.accent;
    case TextTone::success:
      return colors.success;
    case TextTone::warning:
      return colors.warning;
    case TextTone::danger:
      return colors.danger;
  }
  return colors.text;
}

FigureLabel::FigureLabel(TextRole role, TextTone tone, QWidget* parent)
    : QWidget(parent), role_(role), tone_(tone), keepsWhole_(isFigure(role)) {
  WidgetAccessibility::install();
  setFont(fontFor(role));
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void FigureLabel::setText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  measure();
  update();
  if (accessibleName().isEmpty()) WidgetAccessibility::nameChanged(*this);
}

void FigureLabel::setTone(TextTone tone) {
  if (tone == tone_) return;
  tone_ = tone;
  update();
}

void FigureLabel::setTint(std::string hex) {
  if (hex == tint_) return;
  tint_ = std::move(hex);
  update();
}

void FigureLabel::setAlignment(Qt::Alignment alignment) {
  if (alignment == alignment_) return;
  alignment_ = alignment;
  update();
}

void FigureLabel::setWidestText(const QString& text) {
  if (text == widest_) return;
  widest_ = text;
  keepsWhole_ = keepsWhole_ || !text.isEmpty();
  measure();
}

void FigureLabel::setKeepsWhole(bool keepsWhole) {
  if (keepsWhole == keepsWhole_) return;
  keepsWhole_ = keepsWhole;
  updateGeometry();
}

void FigureLabel::measure() {
  const auto widthOf = [this](const QString& text) {
    return text.isEmpty() ? 0 : static_cast<int>(std::ceil(TabularText::width(text, font())));
  };
  const int needed = std::max(widthOf(text_), widthOf(widest_));
  if (needed == neededWidth_) return;
  neededWidth_ = needed;
  updateGeometry();
}

QSize FigureLabel::sizeHint() const {
  return {neededWidth_, TabularText::height(font())};
}

QSize FigureLabel::minimumSizeHint() const {
  // Room for a letter and the dots.
  const int height = TabularText::height(font());
  return {keepsWhole_ ? neededWidth_ : std::min(neededWidth_, height * 2), height};
}

bool FigureLabel::event(QEvent* event) {
  if (event->type() == QEvent::ApplicationFontChange) setFont(fontFor(role_));
  if (event->type() == QEvent::ToolTip && toolTip().isEmpty()) {
    const bool isElided = TabularText::width(text_, font()) > width() + 0.5;
    // The text may be a foreign name, which is no markup whatever it looks like.
    const QString plain = QStringLiteral("<span>%1</span>").arg(text_.toHtmlEscaped());
    if (isElided) QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), plain, this);
    event->setAccepted(isElided);
    return true;
  }
  return QWidget::event(event);
}

void FigureLabel::paintEvent(QPaintEvent*) {
  if (text_.isEmpty()) return;
  const ThemeColors& colors = ThemeColors::of(palette());
  QColor color = toneColor(tone_, colors);
  if (!tint_.empty()) color = isLarge(role_) ? colors.tint(tint_) : colors.textTint(tint_);
  if (!isEnabled()) color = colors.tertiaryText;
  QPainter painter(this);
  painter.setPen(color);
  TabularText::draw(painter, rect(), QStyle::visualAlignment(layoutDirection(), alignment_), text_);
}

void FigureLabel::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) {
    measure();
    updateGeometry();
  }
  QWidget::changeEvent(event);
}

}  // namespace quillmeter
