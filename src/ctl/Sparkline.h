#pragma once

#include <span>
#include <string>

namespace quillmeter::ctl {

// One block character of eight heights for each value 0 ... 1, oldest first; the last `cells` values when there are
// more.
std::string sparkline(std::span<const double> values, int cells);

}  // namespace quillmeter::ctl
