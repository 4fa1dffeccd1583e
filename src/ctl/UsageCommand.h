#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <tl/expected.hpp>

#include "agents/AgentLogSource.h"
#include "agents/AgentUsageCollector.h"
#include "agents/model/AgentUsageRange.h"
#include "agents/model/AgentUsageSnapshot.h"
#include "base/Calendar.h"
#include "ctl/Command.h"
#include "ctl/ToolContext.h"

namespace quillmeter::ctl {

// `usage`: one scan of the agents' logs, as text or as the encoded snapshot.
class UsageCommand final : public Command {
 public:
  // Makes the adapters of the agents that the collector does not read itself; the opener outlives them.
  using MakeAdapters = std::function<AgentUsageAdapters(FileOpener& opener)>;

  UsageCommand(ToolContext& context, MakeAdapters makeAdapters)
      : context_(context), makeAdapters_(std::move(makeAdapters)) {}
  void declare(CLI::App& root, ChosenAction& chosen) override;

 private:
  ExitCode run();
  // The folders of --folder, else the enabled agents with what is granted; in catalogue order.
  tl::expected<std::vector<AgentLogSource>, std::string> sources();
  tl::expected<std::vector<AgentLogSource>, std::string> sourcesFromFolders();
  AgentUsageSnapshot scan(const std::vector<AgentLogSource>& sources, const Calendar& calendar, Date now);
  void nameUnreadable(const std::vector<AgentLogSource>& sources, const AgentUsageSnapshot& snapshot,
                      const std::vector<UnreadableLog>& logs);

  ToolContext& context_;
  MakeAdapters makeAdapters_;
  bool json_ = false;
  bool verbose_ = false;
  std::optional<std::string> now_;
  std::string range_ = "today";
  std::vector<std::string> folders_;
};

}  // namespace quillmeter::ctl
