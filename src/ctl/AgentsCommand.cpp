#include "ctl/AgentsCommand.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "agents/AgentUsageCollector.h"
#include "base/Calendar.h"
#include "base/FileOpener.h"
#include "base/Iso8601.h"
#include "base/L10n.h"
#include "ctl/ScanProgressLine.h"
#include "ctl/TextTable.h"

namespace quillmeter::ctl {
namespace {

std::string stateText(const AgentOverview& agent) {
  switch (agent.connection) {
    case AgentConnection::connected:
      return QM_TR("已连接");
    case AgentConnection::found:
      return QM_TR("已找到，未连接");
    case AgentConnection::notFound:
      return QM_TR("未找到");
    case AgentConnection::unusable:
      return QM_TR("文件夹无法读取，请重新连接");
  }
  return {};
}

// The folder that is read, the one that was, or the command that gives one.
std::string folderText(const ToolContext& context, const AgentOverview& agent) {
  switch (agent.connection) {
    case AgentConnection::connected:
      return agent.location->selectedURL.string();
    case AgentConnection::found:
      return connectCommand(context, agent.provider);
    case AgentConnection::notFound:
      return std::string(expectedFolder(agent.provider));
    case AgentConnection::unusable:
      return agent.unusableFolder->string() + "  " + connectCommand(context, agent.provider);
  }
  return {};
}

// What the scan found of a connected agent; empty for the others.
std::string findingText(const AgentProviderUsage* usage) {
  if (usage == nullptr) return {};
  const std::string found =
      usage->isDetected ? L10n::format(QM_TR("本月 %d 个会话"), {std::to_string(usage->monthMetrics.sessionCount)})
                        : QM_TR("本月没有日志");
  const std::string note = usage->note();
  return note.empty() ? found : found + " · " + note;
}

}  // namespace

void AgentsCommand::declare(CLI::App& root, ChosenAction& chosen) {
  CLI::App* command = root.add_subcommand("agents", QM_TR("八个 Agent：是否找到、是否开启、文件夹与状态"));
  command->add_flag("--json", json_, QM_TR("输出 JSON"));
  command->callback([this, &chosen] { chosen = [this] { return run(); }; });
}

ExitCode AgentsCommand::run() {
  const std::vector<AgentOverview> agents = agentOverviews(context_);
  const Findings findings = scan(agents);
  if (json_) {
    printJson(agents, findings);
  } else {
    printTable(agents, findings);
  }
  return ExitCode::done;
}

AgentsCommand::Findings AgentsCommand::scan(const std::vector<AgentOverview>& agents) {
  std::vector<AgentLogSource> sources;
  for (const AgentOverview& agent : agents) {
    if (agent.location) sources.push_back({agent.provider, agent.location});
  }
  if (sources.empty()) return {};
  SystemFileOpener opener;
  AgentUsageCollector collector(opener, Calendar::current(context_.locale.firstWeekday), makeAdapters_(opener));
  const ScanProgressLine progressLine(context_.console, collector);
  AgentUsageSnapshot snapshot = collector.collect(sources, context_.clock.now());
  Findings findings;
  for (std::size_t i = 0; i < sources.size(); ++i) {  // one entry a source
    findings.emplace(sources[i].provider, std::move(snapshot.providers[i]));
  }
  return findings;
}

void AgentsCommand::printJson(const std::vector<AgentOverview>& agents, const Findings& findings) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const AgentOverview& agent : agents) {
    nlohmann::ordered_json entry = {{"id", rawValue(agent.provider)},
                                    {"name", title(agent.provider)},
                                    {"detected", agent.detected},
                                    {"enabled", agent.enabled},
                                    {"state", rawValue(agent.connection)}};
    if (agent.location) {
      entry["folder"] = agent.location->selectedURL.string();
      entry["scanRoot"] = agent.location->scanRoot.string();
    } else if (agent.unusableFolder) {
      entry["folder"] = agent.unusableFolder->string();
    }
    entry["expectedFolder"] = expectedFolder(agent.provider);
    if (const auto found = findings.find(agent.provider); found != findings.end()) {
      const AgentProviderUsage& usage = found->second;
      entry["logsFound"] = usage.isDetected;
      entry["sessionsThisMonth"] = usage.monthMetrics.sessionCount;
      if (usage.lastActivity) entry["lastActivity"] = formatIso8601(*usage.lastActivity);
      entry["unreadableSourceCount"] = usage.unreadableSourceCount.value_or(0);
    }
    list.push_back(std::move(entry));
  }
  // A path may hold bytes that are no UTF-8.
  context_.console.printLine(list.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
}

void AgentsCommand::printTable(const std::vector<AgentOverview>& agents, const Findings& findings) {
  TextTable table(
      {Alignment::left, Alignment::left, Alignment::left, Alignment::left, Alignment::left, Alignment::left});
  table.addHead({"Agent", QM_TR("代号"), QM_TR("统计"), QM_TR("状态"), QM_TR("日志"), QM_TR("文件夹或命令")});
  for (const AgentOverview& agent : agents) {
    const bool connected = agent.connection == AgentConnection::connected;
    const bool broken = agent.connection == AgentConnection::unusable;
    const auto found = findings.find(agent.provider);
    const AgentProviderUsage* usage = found == findings.end() ? nullptr : &found->second;
    const bool incomplete = usage != nullptr && usage->isIncomplete();
    const TextStyle style = connected ? TextStyle::plain : broken ? TextStyle::warning : TextStyle::dim;
    table.addRow({{title(agent.provider), TextStyle::bold},
                  {std::string(rawValue(agent.provider))},
                  {agent.enabled ? QM_TR("开") : QM_TR("关"), agent.enabled ? TextStyle::plain : TextStyle::dim},
                  {stateText(agent), style},
                  {findingText(usage), incomplete ? TextStyle::warning : TextStyle::plain},
                  {folderText(context_, agent), style}});
  }
  table.print(context_.console);
}

}  // namespace quillmeter::ctl
