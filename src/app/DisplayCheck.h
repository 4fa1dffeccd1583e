#pragma once

#include <optional>
#include <string>

namespace quillmeter {

// Why no window can be shown in this session, in one sentence that names the tool for a terminal; absent when one can.
// Asked before the toolkit starts, which would end the process with a message for developers.
std::optional<std::string> displayProblem();

}  // namespace quillmeter
