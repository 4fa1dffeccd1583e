#include "ui/dashboard/GridLayoutPlan.h"

#include <algorithm>

namespace quillmeter {

GridLayoutPlan::GridLayoutPlan(std::span<const DashboardCardSize> sizes, int width, const HeightFor& heightFor) {
  const bool two = columnsFor(width) == 2;
  const int half = (width - gap) / 2;
  std::size_t index = 0;
  int top = 0;
  while (index < sizes.size()) {
    const bool paired = two && index + 1 < sizes.size() && sizes[index] == DashboardCardSize::small &&
                        sizes[index + 1] == DashboardCardSize::small;
    const int rightWidth = width - half - gap;
    if (paired) {
      const int rowHeight = std::max(heightFor(index, half), heightFor(index + 1, rightWidth));
      cells_.emplace_back(0, top, half, rowHeight);
      cells_.emplace_back(half + gap, top, rightWidth, rowHeight);
    } else {
      cells_.emplace_back(0, top, width, heightFor(index, width));
    }
    height_ = top + cells_.back().height();
    top = height_ + gap;
    index = cells_.size();
  }
}

}  // namespace quillmeter
