#include "ctl/WatchView.h"

#include <algorithm>
#include <iterator>
#include <span>

#include <fmt/format.h>

#include "access/model/AgentLogProvider.h"
#include "base/L10n.h"
#include "core/model/ClockTexts.h"
#include "core/model/MetricFormatter.h"
#include "core/model/UnitInterval.h"
#include "ctl/BarChart.h"
#include "ctl/DisplayWidth.h"
#include "ctl/ScreenLine.h"
#include "ctl/Sparkline.h"

namespace quillmeter::ctl {
namespace {

constexpr int labelCells = 10;
constexpr int percentCells = 5;
constexpr double warningFraction = 0.9;  // from here on a gauge is shown as a warning
constexpr std::size_t mostSessions = 5;

// Which pieces a terminal of some width has room for.
struct Columns {
  explicit Columns(int columns) : all(columns) {
    gauge = columns >= 64 ? 20 : columns >= 40 ? 10 : 0;
    spark = columns >= 72 ? static_cast<int>(SampleHistory::capacity) : 0;
  }
  int all;
  int gauge;
  int spark;
};

class WatchPage {
 public:
  WatchPage(const Console& console, const WatchFrame& frame, int columns)
      : console_(console), frame_(frame), columns_(columns) {}

  std::vector<std::string> body() {
    addTitle();
    addMachine();
    addTokens();
    addHints();
    addSessions();
    addLimits();
    return std::move(lines_);
  }

  std::vector<std::string> footer() {
    if (const auto message = frame_.agents.scanMessage(frame_.locale)) {
      add(line().add(printable(*message), TextStyle::warning));
    }
    ScreenLine keys = line();
    keys.add(QM_TR("q 退出  r 刷新  m 清理内存"), TextStyle::dim);
    if (frame_.activity) keys.addAtRight(*frame_.activity, TextStyle::accent);
    add(std::move(keys));
    return std::move(lines_);
  }

 private:
  ScreenLine line() const { return {console_, columns_.all}; }
  void add(ScreenLine&& line) { lines_.push_back(line.take()); }
  void add(ScreenLine& line) { lines_.push_back(line.take()); }
  void addBlank() { lines_.emplace_back(); }

  std::string minuteText(Date date) const {
    const CalendarTime time = frame_.calendar.components(date);
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}", time.day.year, time.day.month, time.day.day, time.hour,
                       time.minute);
  }

  void addTitle() {
    ScreenLine title = line();
    title.add("Quillmeter", TextStyle::bold).addAtRight(minuteText(frame_.now), TextStyle::dim);
    add(title);
    addBlank();
  }

  // "CPU         12%  ███▌                 ▁▂▃▄  details"
  void addGauge(const std::string& label, std::optional<double> fraction, const SampleHistory* history,
                const std::string& details, bool warnsWhenFull = true) {
    ScreenLine gauge = line();
    gauge.add(label, TextStyle::bold).moveTo(labelCells);
    gauge.add(padded(fraction ? MetricFormatter::percent(*fraction) : "—", percentCells, Alignment::right));
    gauge.moveTo(gauge.width() + 2);
    if (columns_.gauge > 0) {
      const bool warns = warnsWhenFull && fraction && *fraction >= warningFraction;
      const int end = gauge.width() + columns_.gauge;
      gauge.add(blockBar(fraction.value_or(0), columns_.gauge), warns ? TextStyle::warning : TextStyle::accent);
      gauge.moveTo(end).add("▏", TextStyle::dim).moveTo(end + 2);
    }
    if (columns_.spark > 0) {
      const int end = gauge.width() + columns_.spark;
      if (history != nullptr) gauge.add(sparkline(history->values(), columns_.spark), TextStyle::dim);
      gauge.moveTo(end + 2);
    }
    add(gauge.add(details));
  }

  static std::string joined(std::initializer_list<std::string> parts) {
    std::string text;
    for (const std::string& part : parts) {
      if (part.empty() || part == "—") continue;
      if (!text.empty()) text += "  ";
      text += part;
    }
    return text;
  }

  void addMachine() {
    const SystemSnapshot& system = frame_.system;
    addGauge("CPU", system.cpuUsage, &frame_.cpuHistory,
             L10n::format(QM_TR("用户 %@  系统 %@"), {system.cpuUser, system.cpuSystem}));
    addGauge(QM_TR("内存"), system.memoryUsage, &frame_.memoryHistory,
             L10n::format(QM_TR("应用 %@  固定 %@  压缩 %@"),
                          {system.memoryApp, system.memoryWired, system.memoryCompressed}));
    addGauge(QM_TR("磁盘"), system.diskTotal == "—" ? std::nullopt : std::optional(system.diskUsage), nullptr,
             L10n::format(QM_TR("已用 %@ / %@  可用 %@"), {system.diskUsed, system.diskTotal, system.diskFree}));
    addGauge(QM_TR("电量"), system.batteryLevel, nullptr, joined({system.batteryState, system.batteryTime}), false);
    ScreenLine network = line();
    network.add(QM_TR("网络"), TextStyle::bold).moveTo(labelCells + 1);
    network.add(padded("↓ " + system.downloadSpeed, 13, Alignment::left)).moveTo(network.width() + 1);
    network.add(padded("↑ " + system.uploadSpeed, 13, Alignment::left));
    if (columns_.spark > 0) {
      const int sparkColumn = labelCells + percentCells + 2 + columns_.gauge + 2;
      network.moveTo(sparkColumn).add(sparkline(frame_.networkHistory.values(), columns_.spark), TextStyle::dim);
    }
    add(network.moveTo(network.width() + 2).add(system.networkIP));
    ScreenLine heat = line();
    heat.add(QM_TR("散热"), TextStyle::bold).moveTo(labelCells + 1);
    std::string details = system.thermalState;
    if (system.sensorTemperature) details += fmt::format("  {:.1f} °C", *system.sensorTemperature);
    if (system.fanRPM) details += fmt::format("  {} RPM", *system.fanRPM);
    add(heat.add(details, system.thermalState == QM_TR("正常") ? TextStyle::plain : TextStyle::warning));
  }

  void addTokens() {
    addBlank();
    ScreenLine totals = line();
    totals.add("Token", TextStyle::bold);
    int column = labelCells + 2;
    for (const AgentUsageRange range : allAgentUsageRanges) {
      totals.moveTo(column).add(title(range) + " ", TextStyle::dim);
      totals.add(MetricFormatter::tokens(frame_.agents.metrics(range).totalTokens), TextStyle::bold);
      column = totals.width() + 3;
    }
    add(totals);
    for (const AgentProviderUsage& usage : frame_.agents.providers) {
      ScreenLine agent = line();
      agent.add("  " + usage.name).moveTo(18);
      agent.add(padded(MetricFormatter::tokens(usage.todayMetrics.totalTokens), 9, Alignment::right));
      if (usage.lastActivity) {
        agent.moveTo(agent.width() + 2).add(MetricFormatter::relative(*usage.lastActivity, frame_.now), TextStyle::dim);
      }
      add(agent);
    }
  }

  void addHints() {
    if (frame_.hints.empty()) return;
    addBlank();
    add(line().add(QM_TR("在这台电脑上找到，用以下命令连接：")));
    for (const std::string& command : frame_.hints) add(line().add("  " + command, TextStyle::accent));
  }

  void addSessions() {
    const std::vector<AgentActivitySession> sessions = frame_.agents.activeSessions(frame_.now);
    if (sessions.empty()) return;
    addBlank();
    add(line().add(QM_TR("活跃会话"), TextStyle::bold).add("  " + std::to_string(sessions.size())));
    for (const AgentActivitySession& session : std::span(sessions).first(std::min(sessions.size(), mostSessions))) {
      const auto provider = agentLogProviderFromRawValue(session.providerID);
      ScreenLine row = line();
      row.add("  " + (provider ? title(*provider) : printable(session.providerID))).moveTo(18);
      row.add(padded(MetricFormatter::tokens(session.totalTokens), 9, Alignment::right)).moveTo(row.width() + 2);
      row.add(padded(MetricFormatter::relative(session.lastActivity, frame_.now), 12, Alignment::left));
      add(row.moveTo(row.width() + 2).add(printable(session.sessionID), TextStyle::dim));
    }
  }

  // "2 小时 05 分后重置"; what is left, to the minute.
  std::string resetText(std::optional<Date> resetAt) const {
    if (!resetAt) return {};
    const std::optional<std::string> left = timeLeftText(*resetAt, frame_.now);
    if (!left) return QM_TR("已重置");
    return L10n::format(QM_TR("%@ 后重置 (%@)"), {*left, minuteText(*resetAt)});
  }

  void addLimits() {
    const AgentUsageSnapshot& agents = frame_.agents;
    if (!agents.primaryLimitUsed && !agents.weeklyLimitUsed) return;
    addBlank();
    add(line().add(QM_TR("Codex 使用额度"), TextStyle::bold));
    addLimit(QM_TR("5 小时"), agents.primaryLimitUsed, agents.primaryResetAt);
    addLimit(QM_TR("一周"), agents.weeklyLimitUsed, agents.weeklyResetAt);
  }

  void addLimit(const std::string& label, std::optional<double> used, std::optional<Date> resetAt) {
    if (!used) return;
    const double fraction = clampToUnit(*used);
    ScreenLine limit = line();
    limit.add("  " + label).moveTo(labelCells);
    limit.add(padded(MetricFormatter::percent(fraction), percentCells, Alignment::right));
    limit.moveTo(limit.width() + 2);
    if (columns_.gauge > 0) {
      const int end = limit.width() + columns_.gauge;
      limit.add(blockBar(fraction, columns_.gauge),
                fraction >= warningFraction ? TextStyle::warning : TextStyle::accent);
      limit.moveTo(end).add("▏", TextStyle::dim).moveTo(end + 2);
    }
    add(limit.add(resetText(resetAt)));
  }

  const Console& console_;
  const WatchFrame& frame_;
  const Columns columns_;
  std::vector<std::string> lines_;
};

}  // namespace

std::vector<std::string> watchLines(const Console& console, const WatchFrame& frame, ScreenSize size) {
  WatchPage page(console, frame, size.columns);
  std::vector<std::string> lines = page.body();
  std::vector<std::string> footer = page.footer();
  const auto rows = static_cast<std::size_t>(std::max(size.rows, 1));
  footer.resize(std::min(footer.size(), rows));
  const std::size_t room = rows - footer.size();
  if (lines.size() < room) lines.emplace_back();
  lines.resize(std::min(lines.size(), room));
  lines.insert(lines.end(), std::make_move_iterator(footer.begin()), std::make_move_iterator(footer.end()));
  return lines;
}

std::string watchPlainLine(const WatchFrame& frame) {
  const SystemSnapshot& system = frame.system;
  const CalendarTime time = frame.calendar.components(system.updatedAt);
  std::string line =
      fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}  CPU {}  {} {}", time.day.year, time.day.month, time.day.day,
                  time.hour, time.minute, time.second, MetricFormatter::percent(system.cpuUsage), QM_TR("内存"),
                  MetricFormatter::percent(system.memoryUsage));
  const auto out = std::back_inserter(line);
  if (system.diskTotal != "—")
    fmt::format_to(out, "  {} {}", QM_TR("磁盘"), MetricFormatter::percent(system.diskUsage));
  if (system.batteryLevel) {
    fmt::format_to(out, "  {} {}", QM_TR("电量"), MetricFormatter::percent(*system.batteryLevel));
  }
  fmt::format_to(out, "  ↓ {}  ↑ {}  {}  Token {} {}", system.downloadSpeed, system.uploadSpeed, system.thermalState,
                 title(AgentUsageRange::today), MetricFormatter::tokens(frame.agents.todayTokens()));
  if (frame.agents.primaryLimitUsed) {
    fmt::format_to(out, "  Codex {} {}", QM_TR("5 小时"),
                   MetricFormatter::percent(clampToUnit(*frame.agents.primaryLimitUsed)));
  }
  return line;
}

}  // namespace quillmeter::ctl
