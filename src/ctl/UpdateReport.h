#pragma once

#include "ctl/Console.h"
#include "update/AppUpdateChecker.h"

namespace quillmeter::ctl {

// Prints how a check for updates ended. One that failed is couldNot.
[[nodiscard]] ExitCode printUpdateResult(Console& console, const UpdateResult& result, bool json);

}  // namespace quillmeter::ctl
