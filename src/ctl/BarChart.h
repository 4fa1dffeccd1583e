#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ctl/Console.h"

namespace quillmeter::ctl {

// A bar of block characters, `cells` long at 1, in steps of an eighth of a cell. Above 0 at least one eighth is shown;
// `fraction` is held within 0 ... 1.
std::string blockBar(double fraction, int cells);

struct ChartBar {
  std::string label;
  std::int64_t value = 0;
  std::string valueText;
};

// One bar a line, with the label before and the value behind it; the greatest value takes the whole width. A line
// without a value keeps its label alone.
void printBarChart(Console& console, const std::vector<ChartBar>& bars);

}  // namespace quillmeter::ctl
