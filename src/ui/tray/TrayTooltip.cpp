#include "ui/tray/TrayTooltip.h"

#include <initializer_list>
#include <optional>
#include <vector>

#include "base/L10n.h"
#include "core/model/MetricFormatter.h"
#include "core/model/UnitInterval.h"
#include "preferences/MonitorComponentKind.h"

namespace quillmeter {

namespace {

constexpr const char* unknown = "—";

std::string share(const std::string& label, std::optional<double> fraction) {
  return fraction ? label + " " + MetricFormatter::percent(clampToUnit(*fraction)) : std::string();
}

// One line; pieces that are empty or unknown are left out.
class Line {
 public:
  Line& add(const std::string& piece) {
    if (piece.empty() || piece == unknown) return *this;
    if (!text_.empty()) text_ += " · ";
    text_ += piece;
    return *this;
  }
  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

Line batteryLine(const SystemSnapshot& system) {
  Line line;
  if (!system.batteryLevel) return line;
  return line.add(share(title(MonitorComponentKind::battery), system.batteryLevel))
      .add(system.batteryState)
      .add(system.batteryTime);
}

Line networkLine(const SystemSnapshot& system) {
  Line line;
  const std::string sampling = QM_TR("正在采样");
  if (system.downloadSpeed != sampling) line.add("↓ " + system.downloadSpeed);
  if (system.uploadSpeed != sampling) line.add("↑ " + system.uploadSpeed);
  return line;
}

Line limitsLine(const AgentUsageSnapshot& agents) {
  Line line;
  if (!agents.primaryLimitUsed && !agents.weeklyLimitUsed) return line;
  return line.add(QM_TR("Codex 使用额度"))
      .add(share(QM_TR("5 小时"), agents.primaryLimitUsed))
      .add(share(QM_TR("一周"), agents.weeklyLimitUsed));
}

}  // namespace

std::string todayTokensText(const AgentUsageSnapshot& agents) {
  return L10n::format(QM_TR("今天 %@ Token"), {MetricFormatter::tokens(agents.todayTokens())});
}

std::string trayTooltipText(const SystemSnapshot& system, const AgentUsageSnapshot& agents) {
  const bool knowsDisk = system.diskTotal != unknown;
  const Line machine =
      Line()
          .add(share(title(MonitorComponentKind::cpu), system.cpuUsage))
          .add(share(title(MonitorComponentKind::memory), system.memoryUsage))
          .add(share(title(MonitorComponentKind::disk), knowsDisk ? std::optional(system.diskUsage) : std::nullopt));
  std::string text;
  for (const std::string& line : {machine.text(), batteryLine(system).text(), networkLine(system).text(),
                                  todayTokensText(agents), limitsLine(agents).text()}) {
    if (line.empty()) continue;
    if (!text.empty()) text += '\n';
    text += line;
  }
  return text;
}

}  // namespace quillmeter
