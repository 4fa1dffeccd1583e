#include "ui/onboarding/DoneEmblem.h"

#include <QPainter>

#include "menubar/SymbolPainter.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter {
namespace {

constexpr int edge = 72;

}  // namespace

DoneEmblem::DoneEmblem(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize DoneEmblem::sizeHint() const {
  return {edge, edge};
}

void DoneEmblem::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const ThemeColors& colors = ThemeColors::of(palette());
  painter.setPen(Qt::NoPen);
  painter.setBrush(mixed(colors.window, colors.success, 0.16));
  painter.drawEllipse(rect());
  constexpr double glyph = 36;
  const QPointF corner = QRectF(rect()).center() - QPointF(glyph / 2, glyph / 2);
  SymbolPainter::paint(painter, "checkmark", QRectF(corner, QSizeF(glyph, glyph)), colors.success);
}

}  // namespace quillmeter
