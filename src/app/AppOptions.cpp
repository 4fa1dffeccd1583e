#include "app/AppOptions.h"

#include <CLI/CLI.hpp>

#include "app/AppAction.h"
#include "base/L10n.h"
#include "update/model/AppVersion.h"

namespace quillmeter {
namespace {

constexpr int wrongUse = 2;

}  // namespace

ParsedOptions parseOptions(const std::vector<std::string>& arguments) {
  ParsedOptions parsed;
  CLI::App program(
      QM_TR("在系统托盘、弹出面板和仪表盘中显示本机状态与 AI 编程助手的 Token 用量。命令行工具：quillmeterctl"),
      "quillmeter");
  program.get_formatter()->label("OPTIONS", "…");
  program.set_help_flag("-h,--help", QM_TR("显示此帮助"));
  program.set_version_flag("--version", "quillmeter " + AppVersion::current().marketingVersion, QM_TR("显示版本"));
  program.add_flag("--hidden", parsed.options.hidden, QM_TR("只显示托盘图标，不打开窗口"));
  program
      .add_option("--action", parsed.options.action,
                  QM_TR("在已运行的程序中执行：open-dashboard、open-settings、toggle-popover、refresh 或 quit"))
      ->check([](const std::string& name) {
        return appActionNamed(name) ? std::string() : L10n::format(QM_TR("没有名为“%@”的操作"), {name});
      });
  try {
    program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::CallForHelp&) {
    parsed.exitStatus = 0;
    parsed.output = program.help();
  } catch (const CLI::CallForVersion& version) {
    parsed.exitStatus = 0;
    parsed.output = std::string(version.what()) + "\n";
  } catch (const CLI::ParseError& error) {
    parsed.exitStatus = wrongUse;
    parsed.output = std::string("quillmeter: ") + error.what() + "\n" + QM_TR("用 quillmeter --help 查看用法。") + "\n";
  }
  return parsed;
}

}  // namespace quillmeter
