#pragma once

#include <QRegion>

class QWidget;

namespace quillmeter {

// The windows without a frame that open over others: menus, the lists of combo boxes, tool tips.
namespace FloatingSurface {

bool is(const QWidget& widget);
// Where windows are always composited, a translucent one costs nothing and gives soft corners; an X server may have no
// compositor, which would leave the corners black, and gets a mask instead.
bool isAlwaysComposited();
double radius(bool isToolTip);
QRegion mask(const QRect& area);

}  // namespace FloatingSurface

}  // namespace quillmeter
