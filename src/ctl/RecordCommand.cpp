#include "ctl/RecordCommand.h"

#include <CLI/CLI.hpp>

#include "base/L10n.h"
#include "ctl/CompanionProgram.h"

namespace quillmeter::ctl {
void RecordCommand::declare(CLI::App& root, ChosenAction& chosen) {
  CLI::App* command = root.add_subcommand("record", QM_TR("开启屏幕使用时间记录，并在前台记录到结束"));
  command->add_option("--archive", archive_, QM_TR("写入这个记录文件"))->type_name("FILE");
  command->callback([this, &chosen] { chosen = [this] { return run(); }; });
}

ExitCode RecordCommand::run() {
  return becomeCompanion(context_.console, "quillmeter-record",
                         {archive_.empty() ? defaultArchive_.string() : archive_, language_});
}

}  // namespace quillmeter::ctl
