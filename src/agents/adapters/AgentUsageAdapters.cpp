#include "agents/adapters/AgentUsageAdapters.h"

#include "agents/adapters/HermesUsageAdapter.h"
#include "agents/adapters/OpenClawUsageAdapter.h"
#include "agents/adapters/OpenCodeUsageAdapter.h"
#include "agents/adapters/PiSessionUsageAdapter.h"
#include "agents/adapters/QwenOfficeUsageAdapter.h"
#include "agents/adapters/WorkBuddyUsageAdapter.h"

namespace quillmeter {

std::map<AgentLogProvider, std::unique_ptr<AgentUsageAdapter>> makeAgentUsageAdapters(FileOpener& opener,
                                                                                      Sha256& sha256,
                                                                                      const Clock& clock) {
  std::map<AgentLogProvider, std::unique_ptr<AgentUsageAdapter>> adapters;
  adapters[AgentLogProvider::qwenOffice] = std::make_unique<QwenOfficeUsageAdapter>(opener);
  adapters[AgentLogProvider::workBuddy] = std::make_unique<WorkBuddyUsageAdapter>(opener);
  adapters[AgentLogProvider::opencode] = std::make_unique<OpenCodeUsageAdapter>(opener);
  adapters[AgentLogProvider::hermes] = std::make_unique<HermesUsageAdapter>();
  adapters[AgentLogProvider::openclaw] = std::make_unique<OpenClawUsageAdapter>(opener, sha256, clock);
  adapters[AgentLogProvider::pi] = std::make_unique<PiSessionUsageAdapter>(opener);
  return adapters;
}

}  // namespace quillmeter
