#pragma once

#include <filesystem>
#include <vector>

#include "agents/model/AgentUsageAdapter.h"

namespace quillmeter {

// Reads the sessions table of Hermes' "state.db": one event a session, dated by its start, with the recorded last
// activity. Owned by the collector, used on its queue, without state. A database that cannot be read gives no sessions
// and is never counted.
class HermesUsageAdapter final : public AgentUsageAdapter {
 public:
  // `root` is the folder that holds "state.db".
  std::vector<AdapterUsageSession> sessions(const std::filesystem::path& root, Date since) override;
};

}  // namespace quillmeter
