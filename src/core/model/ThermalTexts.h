#pragma once

#include <string>

namespace quillmeter {

// The label of the system's thermal level 0 ... 3; "未知" for every other.
std::string thermalStateText(int level);

}  // namespace quillmeter
