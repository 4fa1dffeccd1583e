#include "ui/popover/PopoverPosition.h"

#include <algorithm>

namespace quillmeter {

namespace {

constexpr int gap = 6;     // between icon and popover
constexpr int margin = 8;  // to the edges of the free area

// Where it does not fit at all, its beginning is what is seen.
int within(int first, int last, int position) {
  return std::max(first, std::min(position, last));
}

}  // namespace

QPoint popoverPosition(const QRect& icon, const QPoint& cursor, const QRect& available, const QSize& size) {
  const QRect anchor = icon.isEmpty() ? QRect(cursor, QSize(1, 1)) : icon;
  const bool isAbove = anchor.center().y() <= available.center().y();
  const int x = anchor.center().x() - size.width() / 2;
  const int y = isAbove ? anchor.bottom() + 1 + gap : anchor.top() - gap - size.height();
  const QRect room = available.adjusted(margin, margin, -margin, -margin);
  return {within(room.left(), room.right() + 1 - size.width(), x),
          within(room.top(), room.bottom() + 1 - size.height(), y)};
}

}  // namespace quillmeter
