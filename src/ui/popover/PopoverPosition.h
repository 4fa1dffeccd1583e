#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace quillmeter {

// Where the popover goes: below an icon in the upper half of the screen, above one in the lower, centred on it, within
// the free area. `icon` is empty when unknown; then the pointer stands for it. All in global coordinates. Pure.
QPoint popoverPosition(const QRect& icon, const QPoint& cursor, const QRect& available, const QSize& size);

}  // namespace quillmeter
