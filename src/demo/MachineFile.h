#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <tl/expected.hpp>

#include "demo/MachineDescription.h"

namespace quillmeter {

// A machine as people write it down, in JSON; tools/screenshots/MACHINE_FILE.md describes it. What is left out keeps
// the default of MachineDescription. The error names the first mistake and its place: "agents.codex.sesions: unknown
// key".
tl::expected<MachineDescription, std::string> parseMachine(std::string_view json);
// The error begins with the path.
tl::expected<MachineDescription, std::string> readMachineFile(const std::filesystem::path& path);

}  // namespace quillmeter
