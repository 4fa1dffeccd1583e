#include "ctl/AgentsCommand.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "base/L10n.h"
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

}  // namespace

void AgentsCommand::declare(CLI::App& root, ChosenAction& chosen) {
  CLI::App* command = root.add_subcommand("agents", QM_TR("八个 Agent：是否找到、是否开启、文件夹与状态"));
  command->add_flag("--json", json_, QM_TR("输出 JSON"));
  command->callback([this, &chosen] { chosen = [this] { return run(); }; });
}

ExitCode AgentsCommand::run() {
  const std::vector<AgentOverview> agents = agentOverviews(context_);
  if (json_) {
    printJson(agents);
  } else {
    printTable(agents);
  }
  return ExitCode::done;
}

void AgentsCommand::printJson(const std::vector<AgentOverview>& agents) {
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
    list.push_back(std::move(entry));
  }
  // A path may hold bytes that are no UTF-8.
  context_.console.printLine(list.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
}

void AgentsCommand::printTable(const std::vector<AgentOverview>& agents) {
  TextTable table({Alignment::left, Alignment::left, Alignment::left, Alignment::left, Alignment::left});
  table.addHead({"Agent", QM_TR("代号"), QM_TR("统计"), QM_TR("状态"), QM_TR("文件夹或命令")});
  for (const AgentOverview& agent : agents) {
    const bool connected = agent.connection == AgentConnection::connected;
    const bool broken = agent.connection == AgentConnection::unusable;
    const TextStyle style = connected ? TextStyle::plain : broken ? TextStyle::warning : TextStyle::dim;
    table.addRow({{title(agent.provider), TextStyle::bold},
                  {std::string(rawValue(agent.provider))},
                  {agent.enabled ? QM_TR("开") : QM_TR("关"), agent.enabled ? TextStyle::plain : TextStyle::dim},
                  {stateText(agent), style},
                  {folderText(context_, agent), style}});
  }
  table.print(context_.console);
}

}  // namespace quillmeter::ctl
