#include "ui/settings/ProgramGlyph.h"

#include <QtGui/QPainter>

#include "ui/icon/ApplicationIcon.h"

namespace quillmeter {

namespace {

constexpr int edge = 72;

}  // namespace

ProgramGlyph::ProgramGlyph(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ProgramGlyph::sizeHint() const {
  return {edge, edge};
}

void ProgramGlyph::paintEvent(QPaintEvent*) {
  const int pixels = qRound(edge * devicePixelRatioF());
  if (image_.width() != pixels) image_ = ApplicationIcon::image(pixels);
  QPainter(this).drawImage(rect(), image_);
}

}  // namespace quillmeter
