#include "ctl/WidgetCommand.h"

#include <CLI/CLI.hpp>

#include "base/L10n.h"
#include "preferences/SettingText.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter::ctl {

void WidgetCommand::declare(CLI::App& root, ChosenAction& chosen) {
  CLI::App* command = root.add_subcommand("widget", QM_TR("输出保存的小组件记录"));
  command->callback([this, &chosen] { chosen = [this] { return run(); }; });
}

ExitCode WidgetCommand::run() {
  const auto stored = suite_ != nullptr ? suite_->get(SettingsKeys::sharedSnapshotKey) : std::nullopt;
  if (suite_ != nullptr) {
    for (const PreferenceProblem& problem : suite_->takeProblems()) {
      context_.console.diagnose(localizedDescription(problem));
    }
  }
  const auto* record = stored ? std::get_if<PreferenceData>(&*stored) : nullptr;
  if (record == nullptr) {
    return context_.console.failure(
        L10n::format(QM_TR("还没有小组件记录。运行 %@ 时每次采样都会写入。"), {context_.toolCommand + " watch"}));
  }
  context_.console.printLine(record->bytes);
  return ExitCode::done;
}

}  // namespace quillmeter::ctl
