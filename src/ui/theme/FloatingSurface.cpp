#include "ui/theme/FloatingSurface.h"

#include <QGuiApplication>
#include <QPainterPath>
#include <QWidget>

#include "ui/theme/MenuPainting.h"

namespace quillmeter::FloatingSurface {

bool is(const QWidget& widget) {
  return widget.inherits("QMenu") || widget.inherits("QComboBoxPrivateContainer") || widget.inherits("QTipLabel");
}

bool isAlwaysComposited() {
  const QString platform = QGuiApplication::platformName();
  return platform.startsWith(QLatin1String("wayland")) || platform == QLatin1String("offscreen");
}

double radius(bool isToolTip) {
  constexpr double tipRadius = 7;
  constexpr double maskedRadius = 5;  // the edge of a mask has steps, which are seen the more the larger it is
  if (!isAlwaysComposited()) return maskedRadius;
  return isToolTip ? tipRadius : MenuPainting::panelRadius;
}

QRegion mask(const QRect& area) {
  QPainterPath path;
  const double corner = radius(false);
  path.addRoundedRect(area, corner, corner);
  return QRegion(path.toFillPolygon().toPolygon());
}

}  // namespace quillmeter::FloatingSurface
