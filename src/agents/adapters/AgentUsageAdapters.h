#pragma once

#include <map>
#include <memory>

#include "access/model/AgentLogProvider.h"
#include "agents/model/AgentUsageAdapter.h"
#include "base/Clock.h"
#include "base/FileOpener.h"
#include "platform/Sha256.h"

namespace quillmeter {

// One adapter for each agent whose logs the collector does not read itself. The arguments outlive the adapters; the
// opener is used on the collector's queue.
std::map<AgentLogProvider, std::unique_ptr<AgentUsageAdapter>> makeAgentUsageAdapters(FileOpener& opener,
                                                                                      Sha256& sha256,
                                                                                      const Clock& clock);

}  // namespace quillmeter
