#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "access/AgentLogAccessError.h"
#include "access/model/AgentLogProvider.h"
#include "ctl/Command.h"
#include "ctl/ToolContext.h"

namespace quillmeter::ctl {

// `connect`, `disconnect`, `enable` and `disable`: an agent's folder grant and its switch.
//
// `connect --all` goes through the agents that are found on this machine and neither connected nor switched off, one
// after another: on a terminal it asks for each folder, elsewhere it takes the expected ones.
//
// Connecting an agent whose switch was never touched turns it on, since counting is what a folder is given for; a
// switch that the user turned off himself stays off, and the tool says how to turn it on.
class ConnectCommand final : public Command {
 public:
  explicit ConnectCommand(ToolContext& context) : context_(context) {}
  void declare(CLI::App& root, ChosenAction& chosen) override;

 private:
  using ProviderAction = ExitCode (ConnectCommand::*)(AgentLogProvider);

  CLI::App& declareOne(CLI::App& root, ChosenAction& chosen, const std::string& name, const std::string& description,
                       ProviderAction action);
  ExitCode run(ProviderAction action);
  ExitCode connect(AgentLogProvider provider);
  ExitCode connectAll();
  // The agents that `connect --all` asks for, in catalogue order.
  std::vector<AgentLogProvider> connectable();
  ExitCode disconnect(AgentLogProvider provider);
  ExitCode enable(AgentLogProvider provider);
  ExitCode disable(AgentLogProvider provider);

  ExitCode refused(const AgentLogAccessError& error, const std::filesystem::path& folder);
  ExitCode settleSwitchAfterConnecting(AgentLogProvider provider);
  // Says so when the switch of all keeps every agent from being counted.
  void mentionMasterSwitch();

  ToolContext& context_;
  std::string provider_;
  std::optional<std::string> folder_;
  bool all_ = false;
};

}  // namespace quillmeter::ctl
