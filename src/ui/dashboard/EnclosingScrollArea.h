#pragma once

#include <QRect>
#include <QScrollArea>

namespace quillmeter {

// The page that scrolls around a widget; null when there is none.
QScrollArea* enclosingScrollArea(const QWidget& widget);
// Scrolls that page so far that a part of the widget can be seen, with `margin` around it.
void scrollIntoView(const QWidget& widget, const QRect& part, int margin);

}  // namespace quillmeter
