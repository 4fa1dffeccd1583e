#include "ctl/ConnectCommand.h"

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "access/AgentAuthorizationCoordinator.h"
#include "access/AgentLogFolders.h"
#include "access/AgentSwitch.h"
#include "base/L10n.h"
#include "ctl/AgentOverview.h"
#include "ctl/ProviderArgument.h"
#include "ctl/TerminalFolderPicker.h"
#include "preferences/SettingText.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter::ctl {

void ConnectCommand::declare(CLI::App& root, ChosenAction& chosen) {
  CLI::App& connect =
      declareOne(root, chosen, "connect", QM_TR("允许读取一个 Agent 的日志文件夹"), &ConnectCommand::connect);
  connect
      .add_option_function<std::string>(
          "DIR", [this](const std::string& folder) { folder_ = folder; }, QM_TR("文件夹（默认用该 Agent 的惯用位置）"))
      ->type_name("");
  connect.add_flag("--all", all_, QM_TR("依次连接所有已找到的 Agent"));
  declareOne(root, chosen, "disconnect", QM_TR("取消文件夹授权"), &ConnectCommand::disconnect);
  declareOne(root, chosen, "enable", QM_TR("开启一个 Agent 的统计"), &ConnectCommand::enable);
  declareOne(root, chosen, "disable", QM_TR("关闭一个 Agent 的统计"), &ConnectCommand::disable);
}

CLI::App& ConnectCommand::declareOne(CLI::App& root, ChosenAction& chosen, const std::string& name,
                                     const std::string& description, ProviderAction action) {
  CLI::App* command = root.add_subcommand(name, description);
  command->add_option("PROVIDER", provider_, "codex, claude, qwenOffice, workBuddy, opencode, hermes, openclaw, pi")
      ->type_name("");
  command->callback([this, &chosen, action] { chosen = [this, action] { return run(action); }; });
  return *command;
}

ExitCode ConnectCommand::run(ProviderAction action) {
  if (all_) {
    if (!provider_.empty()) return context_.console.wrongUse(QM_TR("--all 不能和一个 Agent 一起给出。"));
    return connectAll();
  }
  if (provider_.empty()) return context_.console.wrongUse(QM_TR("请给出一个 Agent，例如 codex。"));
  const auto provider = providerArgument(provider_);
  if (!provider) return context_.console.wrongUse(provider.error());
  return (this->*action)(*provider);
}

ExitCode ConnectCommand::connect(AgentLogProvider provider) {
  const std::filesystem::path folder =
      folder_ ? std::filesystem::path(*folder_) : expectedFolderPath(provider, context_.access.places().homeDirectory);
  const auto location = context_.access.grantAccess(provider, folder);
  if (!location) return refused(location.error(), folder);
  context_.console.printLine(L10n::format(QM_TR("已连接 %@：%@"), {title(provider), location->selectedURL.string()}));
  context_.console.printLine(L10n::format(QM_TR("只保存这个路径，只读取用量计数和时间。取消：%@"),
                                          {context_.toolCommand + " disconnect " + std::string(rawValue(provider))}));
  const ExitCode code = settleSwitchAfterConnecting(provider);
  if (code == ExitCode::done) mentionMasterSwitch();
  return code;
}

std::vector<AgentLogProvider> ConnectCommand::connectable() {
  std::vector<AgentLogProvider> providers;
  for (const AgentLogProvider provider : allAgentLogProviders) {
    if (context_.access.location(provider) || wasSwitchedOff(context_.preferences, provider)) continue;
    if (context_.access.looksInstalled(provider)) providers.push_back(provider);
  }
  return providers;
}

ExitCode ConnectCommand::connectAll() {
  const std::vector<AgentLogProvider> providers = connectable();
  if (providers.empty() && context_.access.detectedProviders().empty()) {
    return context_.console.failure(QM_TR("没有找到可以连接的 Agent。"));
  }
  TerminalFolderPicker terminal(context_.console, STDIN_FILENO, context_.access.places().homeDirectory);
  OfferedFolderPicker offered;
  const bool asks = context_.console.outputIsTerminal() && ::isatty(STDIN_FILENO) == 1;
  AgentAuthorizationCoordinator coordinator(context_.access, asks ? static_cast<FolderPicker&>(terminal) : offered);
  bool allConnected = false;
  coordinator.connectInSequence(providers, [&allConnected](bool connected) { allConnected = connected; });

  ExitCode code = allConnected ? ExitCode::done : ExitCode::couldNot;
  for (const AgentLogProvider provider : providers) {
    const auto location = context_.access.location(provider);
    if (!location) continue;
    context_.console.printLine(L10n::format(QM_TR("已连接 %@：%@"), {title(provider), location->selectedURL.string()}));
    if (settleSwitchAfterConnecting(provider) != ExitCode::done) code = ExitCode::couldNot;
  }
  if (!providers.empty()) mentionMasterSwitch();
  const AgentAuthorizationFeedback feedback = coordinator.feedback().value_or(AgentAuthorizationFeedback());
  if (feedback.kind == AgentAuthorizationFeedback::Kind::error) return context_.console.failure(feedback.message());
  context_.console.printLine(feedback.message());
  return code;
}

ExitCode ConnectCommand::refused(const AgentLogAccessError& error, const std::filesystem::path& folder) {
  const std::string sentence = error.errorDescription().value_or(QM_TR("无法保存文件夹访问权限，请重新选择。"));
  context_.console.diagnose(folder.empty() ? sentence : sentence + " (" + folder.string() + ")");
  if (error.cause) context_.console.diagnose(localizedDescription(*error.cause));
  const bool wrongFolder = error.kind == AgentLogAccessError::Kind::unexpectedFolder ||
                           error.kind == AgentLogAccessError::Kind::missingLogFolder;
  return wrongFolder ? ExitCode::wrongUse : ExitCode::couldNot;
}

ExitCode ConnectCommand::settleSwitchAfterConnecting(AgentLogProvider provider) {
  if (!isSwitchedOn(context_.preferences, provider)) {
    if (wasSwitchedOff(context_.preferences, provider)) {
      context_.console.printLine(L10n::format(QM_TR("它的统计目前关闭。开启：%@"),
                                              {context_.toolCommand + " enable " + std::string(rawValue(provider))}));
    } else if (const auto stored = context_.preferences.set(monitoringSettingsKey(provider), true); !stored) {
      return context_.console.failure(localizedDescription(stored.error()));
    } else {
      context_.console.printLine(L10n::format(QM_TR("已开启 %@ 的统计。"), {title(provider)}));
    }
  }
  return ExitCode::done;
}

ExitCode ConnectCommand::disconnect(AgentLogProvider provider) {
  const std::string key = bookmarkKey(provider);
  if (!context_.preferences.domain().contains(key)) {
    context_.console.printLine(L10n::format(QM_TR("%@ 没有连接。"), {title(provider)}));
    return ExitCode::done;
  }
  if (const auto removed = context_.access.removeAccess(provider); !removed) {
    context_.console.diagnose(localizedDescription(removed.error()));
    return context_.console.failure(L10n::format(QM_TR("无法取消 %@ 的文件夹授权。"), {title(provider)}));
  }
  context_.console.printLine(L10n::format(QM_TR("已断开 %@。"), {title(provider)}));
  return ExitCode::done;
}

ExitCode ConnectCommand::enable(AgentLogProvider provider) {
  if (const auto stored = context_.preferences.set(monitoringSettingsKey(provider), true); !stored) {
    return context_.console.failure(localizedDescription(stored.error()));
  }
  context_.console.printLine(L10n::format(QM_TR("已开启 %@ 的统计。"), {title(provider)}));
  if (!context_.access.location(provider)) {
    context_.console.printLine(
        L10n::format(QM_TR("还没有连接它的文件夹。连接：%@"), {connectCommand(context_, provider)}));
  }
  mentionMasterSwitch();
  return ExitCode::done;
}

ExitCode ConnectCommand::disable(AgentLogProvider provider) {
  if (const auto stored = context_.preferences.set(monitoringSettingsKey(provider), false); !stored) {
    return context_.console.failure(localizedDescription(stored.error()));
  }
  context_.console.printLine(L10n::format(QM_TR("已关闭 %@ 的统计。"), {title(provider)}));
  return ExitCode::done;
}

void ConnectCommand::mentionMasterSwitch() {
  if (context_.preferences.value(SettingsKeys::tokenMonitoringEnabled)) return;
  const std::string command =
      context_.toolCommand + " settings set " + std::string(SettingsKeys::tokenMonitoringEnabled.key) + " true";
  context_.console.printLine(L10n::format(QM_TR("Agent Token 监控总开关目前关闭。开启：%@"), {command}));
}

}  // namespace quillmeter::ctl
