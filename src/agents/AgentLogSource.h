#pragma once

#include <optional>

#include "access/model/AgentLogLocation.h"
#include "access/model/AgentLogProvider.h"

namespace quillmeter {

// One enabled agent of a scan and its granted folder, absent as long as the user has granted none.
struct AgentLogSource {
  AgentLogProvider provider = AgentLogProvider::codex;
  std::optional<AgentLogLocation> location;
  friend bool operator==(const AgentLogSource&, const AgentLogSource&) = default;
};

}  // namespace quillmeter
