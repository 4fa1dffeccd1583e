#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

namespace quillmeter {

// What a killed process of this user left in `folder` under a temporary name: entries called `prefix` and six letters
// or digits, as mkstemp and mkdtemp make them, and unchanged for an hour, which no write of this program takes. Looks
// at a bounded number of entries; to be used before the folder is written anyway.
std::vector<std::filesystem::path> staleTemporaries(const std::filesystem::path& folder, std::string_view prefix);

}  // namespace quillmeter
