#include "ctl/Sparkline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace quillmeter::ctl {
namespace {

constexpr std::array<std::string_view, 8> heights = {"▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};

}  // namespace

std::string sparkline(std::span<const double> values, int cells) {
  const std::size_t count = std::min(values.size(), static_cast<std::size_t>(std::max(cells, 0)));
  std::string line;
  for (const double value : values.last(count)) {
    const double height = value > 0 ? std::min(value, 1.0) * (heights.size() - 1) : 0;
    line += heights[static_cast<std::size_t>(std::lround(height))];
  }
  return line;
}

}  // namespace quillmeter::ctl
