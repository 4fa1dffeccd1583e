#include "ctl/SystemReport.h"

#include <optional>

#include <fmt/format.h>

#include "base/L10n.h"
#include "core/model/MetricFormatter.h"
#include "ctl/BarChart.h"
#include "ctl/TextTable.h"

namespace quillmeter::ctl {
namespace {

constexpr int gaugeCells = 20;

void addGauge(TextTable& table, const std::string& label, std::optional<double> fraction, const std::string& details) {
  const std::string bar = fraction ? padded(blockBar(*fraction, gaugeCells), gaugeCells, Alignment::left) + "▏" : "";
  table.addRow({{label, TextStyle::bold},
                {fraction ? MetricFormatter::percent(*fraction) : "—"},
                {bar, TextStyle::accent},
                {details}});
}

std::string batteryDetails(const SystemSnapshot& system) {
  std::string text = system.batteryLevel ? system.batteryState + "  " + system.batteryTime : system.batteryTime;
  const auto add = [&text](const std::string& format, const std::string& value) {
    if (value != "—") text += "  " + L10n::format(format, {value});
  };
  add(QM_TR("循环 %@ 次"), system.batteryCycles);
  add(QM_TR("温度 %@"), system.batteryTemperature);
  if (system.batteryHealth) add(QM_TR("健康度 %@"), fmt::format("{:.0f}%", *system.batteryHealth));
  return text;
}

std::string heatDetails(const SystemSnapshot& system) {
  std::string text = system.thermalState;
  if (system.sensorTemperature) text += fmt::format("  {:.1f} °C", *system.sensorTemperature);
  if (system.fanRPM) text += fmt::format("  {} RPM", *system.fanRPM);
  return text;
}

}  // namespace

void printSystemReport(Console& console, const SystemSnapshot& system, const Calendar& calendar) {
  const CalendarTime time = calendar.components(system.updatedAt);
  console.printLine(
      console.styled(QM_TR("系统状态"), TextStyle::bold) + "  " +
      console.styled(fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02} ({})", time.day.year, time.day.month,
                                 time.day.day, time.hour, time.minute, time.second, calendar.zoneName()),
                     TextStyle::dim));
  console.printLine();
  TextTable table({Alignment::left, Alignment::right, Alignment::left, Alignment::left});
  addGauge(table, "CPU", system.cpuUsage, L10n::format(QM_TR("用户 %@  系统 %@"), {system.cpuUser, system.cpuSystem}));
  addGauge(table, QM_TR("内存"), system.memoryUsage,
           L10n::format(QM_TR("应用 %@  固定 %@  压缩 %@"),
                        {system.memoryApp, system.memoryWired, system.memoryCompressed}));
  addGauge(table, QM_TR("磁盘"), system.diskTotal == "—" ? std::nullopt : std::optional(system.diskUsage),
           L10n::format(QM_TR("已用 %@ / %@  可用 %@"), {system.diskUsed, system.diskTotal, system.diskFree}));
  addGauge(table, QM_TR("电量"), system.batteryLevel, batteryDetails(system));
  table.addRow({{QM_TR("网络"), TextStyle::bold},
                {""},
                {"↓ " + system.downloadSpeed + "  ↑ " + system.uploadSpeed},
                {system.networkIP}});
  table.addRow({{QM_TR("散热"), TextStyle::bold}, {""}, {heatDetails(system)}});
  table.print(console);
}

}  // namespace quillmeter::ctl
