#include "ctl/QuickCommand.h"

#include <CLI/CLI.hpp>

#include "base/L10n.h"
#include "ctl/CompanionProgram.h"
#include "ctl/QuickReport.h"

namespace quillmeter::ctl {

void QuickCommand::declare(CLI::App& root, ChosenAction& chosen) {
  CLI::App* command =
      root.add_subcommand("quick", QM_TR("网络、Wi-Fi 与声音输出的状态，或更改音量、平衡、静音和输出设备"));
  command->require_subcommand(0, 1);
  command->add_flag("--json", json_, QM_TR("输出 JSON"));
  command->callback([this, &chosen, command] {
    if (command->get_subcommands().empty()) chosen = [this] { return run("show"); };
  });
  const auto declareOne = [&](const std::string& name, const std::string& description, ChosenAction action) {
    CLI::App* one = command->add_subcommand(name, description);
    one->group(QM_TR("命令"));
    one->fallthrough();
    one->callback([&chosen, action = std::move(action)] { chosen = action; });
    return one;
  };
  declareOne("volume", QM_TR("设置音量"), [this] { return runWithPercentage("volume"); })
      ->add_option("V", value_, QM_TR("0 到 100"))
      ->type_name("");
  declareOne("balance", QM_TR("设置左右声道平衡"), [this] { return runWithPercentage("balance"); })
      ->add_option("B", value_, QM_TR("0（左）到 100（右），50 居中"))
      ->type_name("");
  declareOne("mute", QM_TR("静音或取消静音"), [this] { return run("mute"); });
  declareOne("output", QM_TR("切换输出设备"),
             [this] {
               if (value_.empty())
                 return context_.console.wrongUse(QM_TR("请给出输出设备的名称，例如 quick 列出的名称。"));
               return run("output");
             })
      ->add_option("NAME", value_, QM_TR("设备名称或其中一段"))
      ->type_name("");
}

ExitCode QuickCommand::runWithPercentage(const std::string& action) {
  if (!percentageArgument(value_)) {
    return context_.console.wrongUse(L10n::format(QM_TR("“%@”不是 0 到 100 的数。"), {value_}));
  }
  return run(action);
}

ExitCode QuickCommand::run(const std::string& action) {
  return becomeCompanion(context_.console, "quillmeter-query",
                         {language_, json_ ? "json" : "text", "quick", action, value_});
}

}  // namespace quillmeter::ctl
