#include <gtest/gtest.h>

#include "ui/dashboard/GridLayoutPlan.h"

namespace quillmeter {
namespace {

constexpr auto small = DashboardCardSize::small;
constexpr auto large = DashboardCardSize::large;

TEST(GridLayoutPlan, rowsShareTheirHeightAndLeaveNoHoles) {
  const std::vector<DashboardCardSize> sizes = {small, large, small, small, small};
  const int heights[] = {100, 200, 150, 170, 90};
  const GridLayoutPlan plan(sizes, 614, [&](std::size_t index, int) { return heights[index]; });
  const std::vector<QRect> cells = {
      {0, 0, 614, 100}, {0, 114, 614, 200}, {0, 328, 300, 170}, {314, 328, 300, 170}, {0, 512, 614, 90}};
  EXPECT_EQ(plan.cells(), cells);
  EXPECT_EQ(plan.height(), 602);
}

TEST(GridLayoutPlan, isOneColumnWhereTwoWouldBeTooNarrow) {
  const GridLayoutPlan plan(std::vector{small, small, large}, 559, [](std::size_t, int width) { return width / 10; });
  const std::vector<QRect> cells = {{0, 0, 559, 55}, {0, 69, 559, 55}, {0, 138, 559, 55}};
  EXPECT_EQ(plan.cells(), cells);
}

}  // namespace
}  // namespace quillmeter
