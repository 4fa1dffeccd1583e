#pragma once

#include "ctl/AgentOverview.h"
#include "ctl/Command.h"
#include "ctl/ToolContext.h"

namespace quillmeter::ctl {

// `agents`: where the eight agents stand on this machine.
class AgentsCommand final : public Command {
 public:
  explicit AgentsCommand(ToolContext& context) : context_(context) {}
  void declare(CLI::App& root, ChosenAction& chosen) override;

 private:
  ExitCode run();
  void printJson(const std::vector<AgentOverview>& agents);
  void printTable(const std::vector<AgentOverview>& agents);

  ToolContext& context_;
  bool json_ = false;
};

}  // namespace quillmeter::ctl
