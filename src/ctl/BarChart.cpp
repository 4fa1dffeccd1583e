#include "ctl/BarChart.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "ctl/DisplayWidth.h"

namespace quillmeter::ctl {
namespace {

constexpr int maximumBarCells = 48;
constexpr int minimumBarCells = 8;
constexpr std::array<std::string_view, 8> eighths = {"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};

}  // namespace

std::string blockBar(double fraction, int cells) {
  if (!(fraction > 0) || cells <= 0) return {};
  const double length = std::min(fraction, 1.0) * cells * 8;
  const int steps = std::max(1, static_cast<int>(std::lround(length)));
  std::string bar;
  for (int i = 0; i < steps / 8; ++i) bar += "█";
  return bar.append(eighths[static_cast<std::size_t>(steps % 8)]);
}

void printBarChart(Console& console, const std::vector<ChartBar>& bars) {
  std::int64_t greatest = 0;
  int labelWidth = 0;
  int valueWidth = 0;
  for (const ChartBar& bar : bars) {
    greatest = std::max(greatest, bar.value);
    labelWidth = std::max(labelWidth, displayWidth(bar.label));
    valueWidth = std::max(valueWidth, displayWidth(bar.valueText));
  }
  const int barCells = std::clamp(console.columns() - labelWidth - valueWidth - 4, minimumBarCells, maximumBarCells);
  for (const ChartBar& bar : bars) {
    std::string line = bar.value > 0 ? padded(bar.label, labelWidth, Alignment::left) : bar.label;
    line = console.styled(line, TextStyle::dim);
    if (bar.value > 0) {
      const double fraction = static_cast<double>(bar.value) / static_cast<double>(greatest);
      line += "  " + console.styled(blockBar(fraction, barCells), TextStyle::accent) + " " + bar.valueText;
    }
    console.printLine(line);
  }
}

}  // namespace quillmeter::ctl
