#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace quillmeter {

// When a process began, in seconds since 1970: field 22 of /proc/PID/stat and "btime" of /proc/stat. Absent for a
// process that is gone.
std::optional<double> processLaunchTime(const std::filesystem::path& procRoot, std::int64_t processId);
// The name of its program (15 bytes at most, the kernel's bound).
std::optional<std::string> processName(const std::filesystem::path& procRoot, std::int64_t processId);

}  // namespace quillmeter
