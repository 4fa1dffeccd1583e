#include "ctl/UpdateCommand.h"

#include <CLI/CLI.hpp>

#include "base/L10n.h"
#include "ctl/CompanionProgram.h"

namespace quillmeter::ctl {

void UpdateCommand::declare(CLI::App& root, ChosenAction& chosen) {
  CLI::App* command = root.add_subcommand("update", QM_TR("检查有没有新版本（不下载）"));
  command->add_flag("--json", json_, QM_TR("输出 JSON"));
  command->callback([this, &chosen] {
    chosen = [this] {
      return becomeCompanion(context_.console, "quillmeter-query", {language_, json_ ? "json" : "text", "update"});
    };
  });
}

}  // namespace quillmeter::ctl
