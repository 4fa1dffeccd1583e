#include "ctl/LayoutCommand.h"

#include <CLI/CLI.hpp>

#include "base/L10n.h"
#include "ctl/TextTable.h"
#include "preferences/DashboardLayoutStorage.h"

namespace quillmeter::ctl {
namespace {

std::string_view nameOf(ComponentPlacement placement) {
  return placement == ComponentPlacement::dashboard ? "dashboard" : "menubar";
}

std::string titleOf(ComponentPlacement placement) {
  return placement == ComponentPlacement::dashboard ? QM_TR("仪表盘") : QM_TR("菜单栏");
}

}  // namespace

void LayoutCommand::declare(CLI::App& root, ChosenAction& chosen) {
  CLI::App* command = root.add_subcommand("layout", QM_TR("仪表盘与菜单栏的组件布局"));
  command->add_flag("--json", json_, QM_TR("输出 JSON"));
  command
      ->add_option_function<std::string>(
          "PLACEMENT", [this](const std::string& text) { placement_ = text; }, QM_TR("dashboard 或 menubar"))
      ->type_name("");
  command->callback([this, &chosen] { chosen = [this] { return run(); }; });
}

ExitCode LayoutCommand::run() {
  std::vector<ComponentPlacement> placements;
  for (const ComponentPlacement placement : {ComponentPlacement::dashboard, ComponentPlacement::menuBar}) {
    if (!placement_ || *placement_ == nameOf(placement)) placements.push_back(placement);
  }
  if (placements.empty()) {
    return context_.console.wrongUse(
        L10n::format(QM_TR("没有“%@”这个布局，可选 dashboard 或 menubar。"), {*placement_}));
  }
  if (json_) return printJson(placements);
  for (const ComponentPlacement placement : placements) {
    if (placement != placements.front()) context_.console.printLine();
    printTable(placement);
  }
  return ExitCode::done;
}

// One layout is the array as it is stored; both are an object of the two.
ExitCode LayoutCommand::printJson(const std::vector<ComponentPlacement>& placements) {
  std::string text;
  for (const ComponentPlacement placement : placements) {
    const auto array = DashboardLayoutStorage::encode(DashboardLayoutStorage::load(context_.preferences, placement));
    if (!array) return context_.console.failure(QM_TR("布局无法编码。"));
    if (placements.size() == 1) {
      text = *array;
    } else {
      text += text.empty() ? "{\"" : ",\"";
      text.append(nameOf(placement)).append("\":").append(*array);
    }
  }
  context_.console.printLine(placements.size() == 1 ? text : text + "}");
  return ExitCode::done;
}

void LayoutCommand::printTable(ComponentPlacement placement) {
  context_.console.printLine(context_.console.styled(titleOf(placement), TextStyle::bold));
  TextTable table({Alignment::left, Alignment::left, Alignment::left, Alignment::left});
  table.addHead({QM_TR("组件"), QM_TR("大小"), QM_TR("显示"), QM_TR("代号")});
  for (const DashboardCardConfig& card : DashboardLayoutStorage::load(context_.preferences, placement)) {
    const TextStyle style = card.isEnabled ? TextStyle::plain : TextStyle::dim;
    table.addRow({{title(card.kind), style},
                  {card.size == DashboardCardSize::large ? QM_TR("大") : QM_TR("小"), style},
                  {card.isEnabled ? QM_TR("开") : QM_TR("关"), style},
                  {std::string(rawValue(card.kind)), TextStyle::dim}});
  }
  table.print(context_.console);
}

}  // namespace quillmeter::ctl
