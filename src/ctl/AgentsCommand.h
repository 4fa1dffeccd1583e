#pragma once

#include <map>
#include <utility>
#include <vector>

#include "agents/model/AgentProviderUsage.h"
#include "ctl/AgentOverview.h"
#include "ctl/Command.h"
#include "ctl/ToolContext.h"
#include "ctl/UsageCommand.h"

namespace quillmeter::ctl {

// `agents`: where the eight agents stand on this machine, and what a scan of the connected ones finds and cannot read.
class AgentsCommand final : public Command {
 public:
  AgentsCommand(ToolContext& context, UsageCommand::MakeAdapters makeAdapters)
      : context_(context), makeAdapters_(std::move(makeAdapters)) {}
  void declare(CLI::App& root, ChosenAction& chosen) override;

 private:
  ExitCode run();
  using Findings = std::map<AgentLogProvider, AgentProviderUsage>;
  // Of the connected agents, whether they are switched on or not.
  Findings scan(const std::vector<AgentOverview>& agents);
  void printJson(const std::vector<AgentOverview>& agents, const Findings& findings);
  void printTable(const std::vector<AgentOverview>& agents, const Findings& findings);

  ToolContext& context_;
  UsageCommand::MakeAdapters makeAdapters_;
  bool json_ = false;
};

}  // namespace quillmeter::ctl
