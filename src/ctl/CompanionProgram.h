#pragma once

#include <string>
#include <vector>

#include "ctl/Console.h"

namespace quillmeter::ctl {

// Becomes another program of ours, which stands beside this one as it is built, or in the folder for helpers where it
// is installed. For commands whose libraries would cost every other command its quick start. Comes back only when that
// program cannot be started; then it has said so.
[[nodiscard]] ExitCode becomeCompanion(Console& console, const std::string& program,
                                       const std::vector<std::string>& arguments);

}  // namespace quillmeter::ctl
