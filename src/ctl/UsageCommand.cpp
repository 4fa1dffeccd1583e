#include "ctl/UsageCommand.h"

#include <cstring>
#include <map>

#include <CLI/CLI.hpp>

#include "access/AgentLogFolders.h"
#include "access/AgentSwitch.h"
#include "agents/model/AgentUsageEncoding.h"
#include "base/FileOpener.h"
#include "base/Iso8601.h"
#include "base/L10n.h"
#include "ctl/ProviderArgument.h"
#include "ctl/ScanProgressLine.h"
#include "ctl/UsageReport.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter::ctl {

void UsageCommand::declare(CLI::App& root, ChosenAction& chosen) {
  CLI::App* command = root.add_subcommand("usage", QM_TR("今天、本周、本月的 Token 用量"));
  command->add_flag("--json", json_, QM_TR("输出 JSON"));
  command->add_option("--range", range_, QM_TR("柱状图的范围：today、week 或 month"))->type_name("RANGE");
  command
      ->add_option_function<std::string>(
          "--now", [this](const std::string& text) { now_ = text; },
          QM_TR("以此时刻代替当前时间，例如 2026-11-21T03:00:00Z"))
      ->type_name("ISO");
  command->add_option("--folder", folders_, QM_TR("只统计给出的文件夹，可重复，例如 codex=~/.codex"))
      ->type_name("PROVIDER=DIR")
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->allow_extra_args(false);
  command->add_flag("--verbose", verbose_, QM_TR("在标准错误上列出无法读取的文件"));
  command->callback([this, &chosen] { chosen = [this] { return run(); }; });
}

ExitCode UsageCommand::run() {
  Console& console = context_.console;
  const std::optional<Date> now = now_ ? parseIso8601(*now_) : context_.clock.now();
  if (!now)
    return console.wrongUse(L10n::format(QM_TR("“%@”不是 ISO 8601 时间，例如 2026-11-21T03:00:00Z。"), {*now_}));
  const Calendar calendar = Calendar::current(context_.locale.firstWeekday);
  // A scan lists files from the day before the month on.
  if (!calendar.adding(-1, CalendarUnit::day, calendar.startOfMonth(*now))) {
    return console.wrongUse(L10n::format(QM_TR("“%@”太早，无法统计。"), {now_.value_or("")}));
  }
  const std::optional<AgentUsageRange> range = agentUsageRangeFromRawValue(range_);
  if (!range) return console.wrongUse(L10n::format(QM_TR("没有“%@”这个范围，可选 today、week 或 month。"), {range_}));
  const auto sourceList = sources();
  if (!sourceList) return console.wrongUse(sourceList.error());

  AgentUsageSnapshot snapshot;
  if (folders_.empty() && !context_.preferences.value(SettingsKeys::tokenMonitoringEnabled)) {
    snapshot.lastUpdated = *now;
    snapshot.scanStatus = AgentScanStatus::monitoringDisabled();
  } else {
    snapshot = scan(*sourceList, calendar, *now);
  }
  if (json_) {
    console.printLine(encodeAgentUsageSnapshot(snapshot, 2));
  } else {
    printUsageReport(context_, {snapshot, *sourceList, calendar, *now, *range, !folders_.empty()});
  }
  return ExitCode::done;
}

tl::expected<std::vector<AgentLogSource>, std::string> UsageCommand::sources() {
  if (!folders_.empty()) return sourcesFromFolders();
  std::vector<AgentLogSource> list;
  for (const AgentLogProvider provider : allAgentLogProviders) {
    if (!isSwitchedOn(context_.preferences, provider)) continue;
    list.push_back({provider, context_.access.location(provider)});
  }
  return list;
}

tl::expected<std::vector<AgentLogSource>, std::string> UsageCommand::sourcesFromFolders() {
  std::map<AgentLogProvider, std::string> folders;  // ordered as the catalogue is
  for (const std::string& argument : folders_) {
    const std::size_t separator = argument.find('=');
    if (separator == std::string::npos || separator + 1 == argument.size()) {
      return tl::unexpected(L10n::format(QM_TR("“%@”不是 PROVIDER=DIR 的形式，例如 codex=~/.codex。"), {argument}));
    }
    const auto provider = providerArgument(argument.substr(0, separator));
    if (!provider) return tl::unexpected(provider.error());
    if (!folders.emplace(*provider, argument.substr(separator + 1)).second) {
      return tl::unexpected(L10n::format(QM_TR("%@ 的文件夹给出了两次。"), {title(*provider)}));
    }
  }
  std::vector<AgentLogSource> list;
  for (const auto& [provider, folder] : folders) {
    const auto location =
        locationFromPickedFolder(provider, folder, context_.access.places().homeDirectory, context_.access.probe());
    if (!location) context_.console.diagnose(location.error().errorDescription().value_or("") + " (" + folder + ")");
    list.push_back({provider, location ? std::optional(*location) : std::nullopt});
  }
  return list;
}

AgentUsageSnapshot UsageCommand::scan(const std::vector<AgentLogSource>& sources, const Calendar& calendar, Date now) {
  SystemFileOpener opener;
  AgentUsageCollector collector(opener, calendar, makeAdapters_(opener));
  AgentUsageSnapshot snapshot;
  {
    const ScanProgressLine progressLine(context_.console, collector);
    snapshot = collector.collect(sources, now);
  }
  if (verbose_) nameUnreadable(sources, snapshot, collector.unreadableLogs());
  return snapshot;
}

// What an agent's reader only counts, such as archives in a database, is told with the folder it lies in.
void UsageCommand::nameUnreadable(const std::vector<AgentLogSource>& sources, const AgentUsageSnapshot& snapshot,
                                  const std::vector<UnreadableLog>& logs) {
  for (std::size_t i = 0; i < sources.size(); ++i) {  // one entry a source
    const std::string name = title(sources[i].provider);
    std::int64_t unnamed = snapshot.providers[i].unreadableSourceCount.value_or(0);
    for (const UnreadableLog& log : logs) {
      if (log.provider != sources[i].provider) continue;
      --unnamed;
      context_.console.diagnose(L10n::format(QM_TR("%@：无法读取 %@"), {name, log.path}) + " (" +
                                std::strerror(log.error) + ")");
    }
    if (unnamed <= 0 || !sources[i].location) continue;
    context_.console.diagnose(L10n::format(QM_TR("%@：%@ 下无法读取的来源：%d"),
                                           {name, sources[i].location->scanRoot.string(), std::to_string(unnamed)}));
  }
}

}  // namespace quillmeter::ctl
