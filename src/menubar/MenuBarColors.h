#pragma once

class QColor;

namespace quillmeter {

// The colours of the item in the panel. `dark` means a dark panel, on which the label is white.
namespace MenuBarColors {

QColor label(bool dark, bool selected);
// Of what has no figure.
QColor secondaryLabel(bool dark, bool selected);
// A gauge that is drawn in `color`, as far as it is not filled.
QColor track(const QColor& color);

QColor memory(bool dark);
QColor processor(bool dark);
QColor network(bool dark);
QColor volume(bool dark);
QColor trouble(bool dark);  // no connection, sound off

}  // namespace MenuBarColors

}  // namespace quillmeter
