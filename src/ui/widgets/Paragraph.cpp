#include "ui/widgets/Paragraph.h"

#include <QEvent>

#include "ui/theme/ThemeColors.h"

namespace quillmeter {

Paragraph::Paragraph(TextRole role, TextTone tone, QWidget* parent) : QLabel(parent), role_(role), tone_(tone) {
  setWordWrap(true);
  setTextFormat(Qt::PlainText);
  setAlignment(Qt::AlignLeft | Qt::AlignTop);
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
  setFont(fontFor(role_));
  adopt();
}

void Paragraph::setTone(TextTone tone) {
  if (tone == tone_) return;
  tone_ = tone;
  adopt();
}

void Paragraph::adopt() {
  const QColor color = toneColor(tone_, ThemeColors::of(palette()));
  if (palette().color(QPalette::Active, QPalette::WindowText) == color) return;
  adopting_ = true;
  QPalette own = palette();
  own.setColor(QPalette::Active, QPalette::WindowText, color);
  own.setColor(QPalette::Inactive, QPalette::WindowText, color);
  setPalette(own);
  adopting_ = false;
}

bool Paragraph::event(QEvent* event) {
  if (event->type() == QEvent::ApplicationFontChange) setFont(fontFor(role_));
  return QLabel::event(event);
}

void Paragraph::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && !adopting_) adopt();
}

}  // namespace quillmeter
