#pragma once

#include <string>

namespace quillmeter {

// How this program is started again: its absolute path, or its bare name where that is not known.
std::string programPath();

}  // namespace quillmeter
