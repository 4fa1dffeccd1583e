#pragma once

#include <functional>
#include <span>
#include <vector>

#include <QRect>

#include "preferences/DashboardCardConfig.h"

namespace quillmeter {

// Where each card of a grid stands, in the order of the cards: the cards of a row share its height, a large card takes
// a row, and a small one without a neighbour fills its row, so that there are no holes. A value.
class GridLayoutPlan {
 public:
  static constexpr int gap = 14;
  static constexpr int twoColumnsFrom = 560;  // width of the grid

  // `heightFor(index, width)` is what the card wants to be at least.
  using HeightFor = std::function<int(std::size_t index, int width)>;
  GridLayoutPlan(std::span<const DashboardCardSize> sizes, int width, const HeightFor& heightFor);

  static int columnsFor(int width) { return width >= twoColumnsFrom ? 2 : 1; }
  const std::vector<QRect>& cells() const { return cells_; }
  int height() const { return height_; }

 private:
  std::vector<QRect> cells_;
  int height_ = 0;
};

}  // namespace quillmeter
