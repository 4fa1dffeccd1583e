#include "ui/onboarding/Emblem.h"

#include <array>
#include <cmath>

#include <QPainter>

#include "menubar/SymbolPainter.h"
#include "preferences/MonitorComponentKind.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter {
namespace {

constexpr int edge = 72;
constexpr double groundRadius = 20;
constexpr double stroke = 5;

struct Ring {
  MonitorComponentKind kind;
  double radius;
  double fraction;
};

constexpr std::array<Ring, 3> rings = {{
    {MonitorComponentKind::battery, 24, 0.78},
    {MonitorComponentKind::memory, 16.5, 0.6},
    {MonitorComponentKind::cpu, 9, 0.42},
}};

}  // namespace

Emblem::Emblem(Kind kind, QWidget* parent) : QWidget(parent), kind_(kind) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize Emblem::sizeHint() const {
  return {edge, edge};
}

void Emblem::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  kind_ == Kind::rings ? paintRings(painter) : paintDone(painter);
}

void Emblem::paintRings(QPainter& painter) const {
  const ThemeColors& colors = ThemeColors::of(palette());
  Shapes::panel(painter, rect(), groundRadius, colors.surface, colors.border);
  const QPointF center = QRectF(rect()).center();
  for (const Ring& ring : rings) {
    const QRectF box(center.x() - ring.radius, center.y() - ring.radius, 2 * ring.radius, 2 * ring.radius);
    const QColor tint = colors.tint(quillmeter::tint(ring.kind));
    painter.setPen(QPen(mixed(colors.surface, tint, 0.16), stroke));
    painter.drawEllipse(box);
    constexpr int top = 90 * 16;
    painter.setPen(QPen(tint, stroke, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(box, top, -static_cast<int>(std::lround(ring.fraction * 360 * 16)));
  }
}

void Emblem::paintDone(QPainter& painter) const {
  const ThemeColors& colors = ThemeColors::of(palette());
  painter.setPen(Qt::NoPen);
  painter.setBrush(mixed(colors.window, colors.success, 0.16));
  painter.drawEllipse(rect());
  constexpr double glyph = 36;
  const QPointF corner = QRectF(rect()).center() - QPointF(glyph / 2, glyph / 2);
  SymbolPainter::paint(painter, "checkmark", QRectF(corner, QSizeF(glyph, glyph)), colors.success);
}

}  // namespace quillmeter
