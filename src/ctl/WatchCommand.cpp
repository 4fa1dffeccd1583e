#include "ctl/WatchCommand.h"

#include <charconv>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "base/L10n.h"
#include "ctl/WatchSession.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter::ctl {
namespace {

// Within what the setting takes; absent otherwise.
std::optional<double> parseInterval(const std::string& text) {
  double seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  const auto& setting = SettingsKeys::refreshInterval;
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (!(seconds >= setting.minimum && seconds <= setting.maximum)) return std::nullopt;
  return seconds;
}

}  // namespace

void WatchCommand::declare(CLI::App& root, ChosenAction& chosen) {
  CLI::App* command =
      root.add_subcommand("watch", QM_TR("持续显示这台电脑与 Token 用量；不在终端里时每次采样输出一行"));
  command
      ->add_option_function<std::string>(
          "--interval", [this](const std::string& text) { interval_ = text; }, QM_TR("刷新间隔（秒），仅用于这一次"))
      ->type_name("S");
  command->callback([this, &chosen] { chosen = [this] { return run(); }; });
}

ExitCode WatchCommand::run() {
  const auto seconds = interval_ ? parseInterval(*interval_) : std::nullopt;
  if (interval_ && !seconds) {
    const auto& setting = SettingsKeys::refreshInterval;
    return context_.console.wrongUse(
        L10n::format(QM_TR("刷新间隔“%@”无效，请给出 %@ 到 %@ 之间的秒数。"),
                     {*interval_, fmt::format("{}", setting.minimum), fmt::format("{}", setting.maximum)}));
  }
  if (seconds) domain_.replace(SettingsKeys::refreshInterval.key, *seconds);
  return WatchSession(context_, parts_).run();
}

}  // namespace quillmeter::ctl
