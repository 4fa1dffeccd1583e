#pragma once

#include <filesystem>

namespace quillmeter {

// A granted folder: what the user picked and the folder inside it that is scanned.
struct AgentLogLocation {
  std::filesystem::path selectedURL;
  std::filesystem::path scanRoot;
  friend bool operator==(const AgentLogLocation&, const AgentLogLocation&) = default;
};

}  // namespace quillmeter
