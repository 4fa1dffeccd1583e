#include "ui/widgets/ProgramGlyph.h"

#include <QPainter>

#include "ui/icon/ApplicationIcon.h"

namespace quillmeter {

ProgramGlyph::ProgramGlyph(int points, QWidget* parent) : QWidget(parent) {
  setFixedSize(points, points);
}

void ProgramGlyph::paintEvent(QPaintEvent*) {
  const int pixels = qRound(width() * devicePixelRatioF());
  if (image_.width() != pixels) image_ = ApplicationIcon::image(pixels);
  QPainter(this).drawImage(rect(), image_);
}

}  // namespace quillmeter
