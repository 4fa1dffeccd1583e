#include "ui/dashboard/EnclosingScrollArea.h"

namespace quillmeter {

QScrollArea* enclosingScrollArea(const QWidget& widget) {
  for (QWidget* parent = widget.parentWidget(); parent != nullptr; parent = parent->parentWidget()) {
    if (auto* area = dynamic_cast<QScrollArea*>(parent)) return area;
  }
  return nullptr;
}

void scrollIntoView(const QWidget& widget, const QRect& part, int margin) {
  QScrollArea* area = enclosingScrollArea(widget);
  if (area == nullptr) return;
  const QPoint center = widget.mapTo(area->widget(), part.center());
  area->ensureVisible(center.x(), center.y(), 0, part.height() / 2 + margin);
}

}  // namespace quillmeter
