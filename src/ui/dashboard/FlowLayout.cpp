#include "ui/dashboard/FlowLayout.h"

#include <algorithm>

namespace quillmeter {

FlowLayout::~FlowLayout() = default;

void FlowLayout::addItem(QLayoutItem* item) {
  items_.emplace_back(item);
}

QLayoutItem* FlowLayout::itemAt(int index) const {
  return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
  if (index < 0 || index >= count()) return nullptr;
  QLayoutItem* item = items_[static_cast<std::size_t>(index)].release();
  items_.erase(items_.begin() + index);
  return item;
}

QSize FlowLayout::sizeHint() const {
  int width = 0;
  for (const auto& item : items_) width += item->sizeHint().width() + gap_;
  width = std::max(0, width - gap_);
  return {width, heightForWidth(width)};
}

QSize FlowLayout::minimumSize() const {
  QSize size;
  for (const auto& item : items_) size = size.expandedTo(item->minimumSize());
  return size;
}

void FlowLayout::setGeometry(const QRect& area) {
  QLayout::setGeometry(area);
  flow(area, true);
}

int FlowLayout::flow(const QRect& area, bool places) const {
  QPoint corner = area.topLeft();
  int lineHeight = 0;
  for (const auto& item : items_) {
    if (item->isEmpty()) continue;
    const QSize size(std::min(item->sizeHint().width(), area.width()), item->sizeHint().height());
    if (corner.x() > area.left() && corner.x() + size.width() > area.left() + area.width()) {
      corner = QPoint(area.left(), corner.y() + lineHeight + gap_);
      lineHeight = 0;
    }
    if (places) item->setGeometry(QRect(corner, size));
    corner.rx() += size.width() + gap_;
    lineHeight = std::max(lineHeight, size.height());
  }
  return corner.y() + lineHeight - area.top();
}

}  // namespace quillmeter
