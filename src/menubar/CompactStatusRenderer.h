#pragma once

#include <optional>

#include "core/model/SystemSnapshot.h"
#include "menubar/CompactIconDrawing.h"
#include "menubar/model/CompactIconOptions.h"
#include "menubar/model/MenuBarStyle.h"
#include "quickstatus/model/QuickStatusSnapshot.h"

class QColor;
class QImage;

namespace quillmeter {

// Draws the compact icon of the panel. drawing() decides what is to be seen and costs next to nothing, image() paints
// it; the owner compares drawings and paints only a new one. Stateless; needs QtGui, but no running application.
//
// In `systemTrio` the battery's ring leaves the bottom to the volume's arc when that is on. The middle shows the
// network, or the power source while there is a battery and a connection; below it stands the mark of a muted or
// wireless output. `resourceTrio` has three rings and, where pixels allow, the power source or the chosen symbol
// within. `metrics` is text and not drawn here: it gives the chosen symbol alone.
namespace CompactStatusRenderer {

CompactIconDrawing drawing(MenuBarStyle style, const SystemSnapshot& system, const QuickStatusSnapshot& quick,
                           const CompactIconOptions& options, bool dark, bool selected, double devicePixelRatio = 1);
QImage image(const CompactIconDrawing& drawing);
QImage image(MenuBarStyle style, const SystemSnapshot& system, const QuickStatusSnapshot& quick,
             const CompactIconOptions& options, bool dark, bool selected, double devicePixelRatio = 1);

// Red up to 10 %, yellow up to 20 %, green above; the secondary label's colour without a level.
QColor batteryColor(std::optional<double> level, bool dark = false);

}  // namespace CompactStatusRenderer

}  // namespace quillmeter
