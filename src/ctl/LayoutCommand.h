#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ctl/Command.h"
#include "ctl/ToolContext.h"
#include "preferences/DashboardCardConfig.h"

namespace quillmeter::ctl {

// `layout`: the cards of the dashboard and of the menu bar, as they are loaded.
class LayoutCommand final : public Command {
 public:
  explicit LayoutCommand(ToolContext& context) : context_(context) {}
  void declare(CLI::App& root, ChosenAction& chosen) override;

 private:
  ExitCode run();
  ExitCode printJson(const std::vector<ComponentPlacement>& placements);
  void printTable(ComponentPlacement placement);

  ToolContext& context_;
  bool json_ = false;
  std::optional<std::string> placement_;
};

}  // namespace quillmeter::ctl
