#include "ui/settings/ProgramGlyph.h"

#include <QtGui/QIcon>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

#include "menubar/SymbolPainter.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter {

namespace {

constexpr int edge = 64;

}  // namespace

ProgramGlyph::ProgramGlyph(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ProgramGlyph::sizeHint() const {
  return {edge, edge};
}

void ProgramGlyph::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (const QIcon icon = QApplication::windowIcon(); !icon.isNull()) return icon.paint(&painter, rect());
  // Not installed: the same idea, painted.
  constexpr double radius = 15;
  constexpr double symbolEdge = 36;
  painter.setRenderHint(QPainter::Antialiasing);
  const ThemeColors& colors = ThemeColors::of(palette());
  painter.setPen(Qt::NoPen);
  painter.setBrush(colors.accent);
  painter.drawRoundedRect(rect(), radius, radius);
  const double inset = (edge - symbolEdge) / 2;
  SymbolPainter::paint(painter, "waveform.path.ecg", QRectF(inset, inset, symbolEdge, symbolEdge), colors.accentText);
}

}  // namespace quillmeter
