#include "ctl/UsageReport.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

#include "access/AgentSwitch.h"
#include "base/L10n.h"
#include "core/model/ClockTexts.h"
#include "core/model/MetricFormatter.h"
#include "core/model/UnitInterval.h"
#include "ctl/AgentOverview.h"
#include "ctl/BarChart.h"
#include "ctl/TextTable.h"

namespace quillmeter::ctl {
namespace {

constexpr int limitBarCells = 20;

// Every digit, in groups of three where the locale has a separator.
std::string exactCount(std::int64_t count, const LocaleConventions& locale) {
  std::string digits = std::to_string(count);
  const std::size_t first = digits.starts_with('-') ? 1 : 0;
  for (std::size_t end = digits.size(); end > first + 3;) {
    end -= 3;
    digits.insert(end, locale.groupingSeparator);
  }
  return digits;
}

std::string hitRate(const AgentTokenMetrics& metrics) {
  const auto rate = metrics.cacheHitRate();
  return rate ? MetricFormatter::percent(*rate) : "—";
}

void printSection(Console& console, const std::string& heading) {
  console.printLine();
  console.printLine(console.styled(heading, TextStyle::bold));
}

void printTitle(Console& console, const UsageReportInput& input) {
  const CalendarTime time = input.calendar.components(input.now);
  const std::string moment = fmt::format("{:04}-{:02}-{:02} {:02}:{:02} ({})", time.day.year, time.day.month,
                                         time.day.day, time.hour, time.minute, input.calendar.zoneName());
  console.printLine(console.styled(QM_TR("Token 用量"), TextStyle::bold) + "  " +
                    console.styled(moment, TextStyle::dim));
}

void printTotals(Console& console, const AgentUsageSnapshot& snapshot, const LocaleConventions& locale) {
  TextTable table({Alignment::left, Alignment::right, Alignment::right, Alignment::right, Alignment::right,
                   Alignment::right, Alignment::right});
  table.addHead({"", QM_TR("总计"), QM_TR("输入"), QM_TR("输出"), QM_TR("缓存"), QM_TR("会话"), QM_TR("缓存命中")});
  for (const AgentUsageRange range : allAgentUsageRanges) {
    const AgentTokenMetrics& metrics = snapshot.metrics(range);
    table.addRow({{title(range)},
                  {exactCount(metrics.totalTokens, locale), TextStyle::bold},
                  {exactCount(metrics.inputTokens, locale)},
                  {exactCount(metrics.outputTokens, locale)},
                  {exactCount(metrics.cachedTokens, locale)},
                  {exactCount(metrics.sessionCount, locale)},
                  {hitRate(metrics)}});
  }
  console.printLine();
  table.print(console);
}

std::string noteFor(const AgentProviderUsage& usage, const UsageReportInput& input) {
  const auto source =
      std::ranges::find(input.sources, usage.id, [](const AgentLogSource& s) { return rawValue(s.provider); });
  if (source != input.sources.end() && !source->location) return QM_TR("未连接文件夹");
  return usage.note();
}

void printAgents(Console& console, const UsageReportInput& input) {
  if (input.snapshot.providers.empty()) return;
  TextTable table(
      {Alignment::left, Alignment::right, Alignment::right, Alignment::right, Alignment::left, Alignment::left});
  table.addHead({"Agent", title(AgentUsageRange::today), title(AgentUsageRange::week), title(AgentUsageRange::month),
                 QM_TR("最近活动"), ""});
  for (const AgentProviderUsage& usage : input.snapshot.providers) {
    table.addRow({{usage.name},
                  {MetricFormatter::tokens(usage.todayMetrics.totalTokens)},
                  {MetricFormatter::tokens(usage.weekMetrics.totalTokens)},
                  {MetricFormatter::tokens(usage.monthMetrics.totalTokens)},
                  {usage.lastActivity ? MetricFormatter::relative(*usage.lastActivity, input.now) : "—"},
                  {noteFor(usage, input), TextStyle::warning}});
  }
  console.printLine();
  table.print(console);
}

std::string bucketLabel(const UsageReportInput& input, Date start) {
  return input.range == AgentUsageRange::today ? clockText(start, input.calendar) : monthDayText(start, input.calendar);
}

// The bars up to now, or up to the last one with usage where logs run ahead of the clock.
void printBars(Console& console, const UsageReportInput& input) {
  const auto& buckets = input.snapshot.buckets(input.range);
  std::size_t count = 0;
  std::vector<ChartBar> bars;
  for (const AgentUsageBucket& bucket : buckets) {
    const std::int64_t tokens = bucket.metrics.totalTokens;
    bars.push_back({bucketLabel(input, bucket.start), tokens, MetricFormatter::tokens(tokens)});
    if (tokens > 0 || bucket.start <= input.now) count = bars.size();
  }
  bars.resize(count);
  if (bars.empty()) return;
  printSection(console, courseTitle(input.range));
  printBarChart(console, bars);
}

void printActiveSessions(Console& console, const UsageReportInput& input) {
  const std::vector<AgentActivitySession> sessions = input.snapshot.activeSessions(input.now);
  if (sessions.empty()) return;
  printSection(console, QM_TR("活跃会话"));
  TextTable table({Alignment::left, Alignment::right, Alignment::left, Alignment::left});
  for (const AgentActivitySession& session : sessions) {
    const auto provider = agentLogProviderFromRawValue(session.providerID);
    table.addRow({{provider ? title(*provider) : session.providerID},
                  {MetricFormatter::tokens(session.totalTokens)},
                  {MetricFormatter::relative(session.lastActivity, input.now)},
                  {session.sessionID, TextStyle::dim}});
  }
  table.print(console);
}

std::string resetText(const UsageReportInput& input, std::optional<Date> resetAt) {
  if (!resetAt) return {};
  const std::string format = *resetAt > input.now ? QM_TR("%@重置 (%@)") : QM_TR("已于 %@重置 (%@)");
  return L10n::format(format, {MetricFormatter::relative(*resetAt, input.now),
                               monthDayText(*resetAt, input.calendar) + " " + clockText(*resetAt, input.calendar)});
}

void printLimits(Console& console, const UsageReportInput& input) {
  const AgentUsageSnapshot& snapshot = input.snapshot;
  if (!snapshot.primaryLimitUsed && !snapshot.weeklyLimitUsed) return;
  printSection(console, QM_TR("Codex 使用额度"));
  TextTable table({Alignment::left, Alignment::right, Alignment::left, Alignment::left});
  const auto addLimit = [&](const std::string& name, std::optional<double> used, std::optional<Date> resetAt) {
    if (!used) return;
    const double fraction = clampToUnit(*used);
    const std::string bar = padded(blockBar(fraction, limitBarCells), limitBarCells, Alignment::left) + "▏";
    table.addRow({{name}, {MetricFormatter::percent(fraction)}, {bar, TextStyle::accent}, {resetText(input, resetAt)}});
  };
  addLimit(QM_TR("5 小时"), snapshot.primaryLimitUsed, snapshot.primaryResetAt);
  addLimit(QM_TR("一周"), snapshot.weeklyLimitUsed, snapshot.weeklyResetAt);
  table.print(console);
}

// Agents that could be counted at once: found here, not connected, and not switched off by the user.
std::vector<AgentOverview> connectableAgents(ToolContext& context) {
  std::vector<AgentOverview> connectable;
  for (const AgentOverview& agent : agentOverviews(context)) {
    const bool unconnected =
        agent.connection == AgentConnection::found || (agent.connection == AgentConnection::unusable && agent.detected);
    if (unconnected && !wasSwitchedOff(context.preferences, agent.provider)) connectable.push_back(agent);
  }
  return connectable;
}

void printConnectCommands(ToolContext& context, const std::vector<AgentOverview>& agents) {
  printSection(context.console, QM_TR("在这台电脑上找到，用以下命令连接："));
  TextTable table({Alignment::left, Alignment::left});
  for (const AgentOverview& agent : agents) {
    table.addRow({{"  " + title(agent.provider)}, {connectCommand(context, agent.provider), TextStyle::accent}});
  }
  table.print(context.console);
}

void printWhatHinders(ToolContext& context, const UsageReportInput& input, bool anyConnected) {
  Console& console = context.console;
  const auto message = input.snapshot.scanMessage(context.locale);
  if (message) {
    console.printLine();
    console.printLine(console.styled(*message, TextStyle::warning));
  }
  const bool disabled = input.snapshot.scanStatus == AgentScanStatus::monitoringDisabled();
  if (input.foldersGiven || disabled) return;
  const std::vector<AgentOverview> connectable = connectableAgents(context);
  if (!connectable.empty()) {
    printConnectCommands(context, connectable);
  } else if (!anyConnected) {
    console.printLine(QM_TR("在这台电脑上没有找到 Agent。日志在别处时，给出文件夹："));
    console.printLine("  " + context.toolCommand + " connect codex /…/.codex");
  }
}

}  // namespace

void printUsageReport(ToolContext& context, const UsageReportInput& input) {
  Console& console = context.console;
  const bool anyConnected =
      std::ranges::any_of(input.sources, [](const AgentLogSource& s) { return s.location.has_value(); });
  printTitle(console, input);
  if (anyConnected && input.snapshot.scanStatus != AgentScanStatus::monitoringDisabled()) {
    printTotals(console, input.snapshot, context.locale);
    printAgents(console, input);
    printBars(console, input);
    printActiveSessions(console, input);
    printLimits(console, input);
  }
  printWhatHinders(context, input, anyConnected);
}

}  // namespace quillmeter::ctl
