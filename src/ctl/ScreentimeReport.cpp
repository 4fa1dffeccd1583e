#include "ctl/ScreentimeReport.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "base/Iso8601.h"
#include "base/L10n.h"
#include "core/model/ClockTexts.h"
#include "ctl/BarChart.h"
#include "ctl/TextTable.h"
#include "screentime/model/ActivityTimelineGroup.h"

namespace quillmeter::ctl {
namespace {

using Json = nlohmann::ordered_json;

constexpr int appBarCells = 20;
constexpr std::size_t timelineApps = 3;

std::string dayText(const CalendarDay& day) {
  return fmt::format("{:04}-{:02}-{:02}", day.year, day.month, day.day);
}

std::string bucketLabel(const ScreentimeReportInput& input, Date start) {
  return input.isWeek ? monthDayText(start, input.calendar) : clockText(start, input.calendar);
}

void printSection(Console& console, const std::string& heading) {
  console.printLine();
  console.printLine(console.styled(heading, TextStyle::bold));
}

void printTitle(Console& console, const ScreentimeReportInput& input) {
  std::string days = dayText(input.calendar.components(input.interval.start).day);
  if (input.isWeek) days += " – " + dayText(input.calendar.components(Date{input.interval.end.microseconds - 1}).day);
  console.printLine(console.styled(QM_TR("屏幕使用时间"), TextStyle::bold) + "  " +
                    console.styled(days + " (" + input.calendar.zoneName() + ")", TextStyle::dim));
  if (!input.archive.startedAt) {
    console.printLine();
    console.printLine(QM_TR("还没有开启过记录。"));
    return;
  }
  const ActivitySpan* longest = input.summary.longestSpan();
  TextTable table({Alignment::left, Alignment::right, Alignment::left});
  table.addRow({{QM_TR("有效使用时间")}, {durationText(input.summary.total), TextStyle::bold}});
  if (longest != nullptr) {
    const std::string when = clockText(longest->start, input.calendar) + "–" + clockText(longest->end, input.calendar);
    table.addRow({{QM_TR("最长连续使用")},
                  {durationText(longest->seconds()), TextStyle::bold},
                  {when + "  " + printable(longest->app.name), TextStyle::dim}});
  }
  console.printLine();
  table.print(console);
}

void printApps(Console& console, const ActivitySummary& summary) {
  TextTable table({Alignment::left, Alignment::right, Alignment::left, Alignment::left});
  for (const ActivitySummary::AppTotal& total : summary.apps) {
    table.addRow({{printable(total.app.name)},
                  {durationText(total.seconds)},
                  {blockBar(total.seconds / summary.apps.front().seconds, appBarCells), TextStyle::accent},
                  {printable(total.app.id), TextStyle::dim}});
  }
  printSection(console, QM_TR("应用"));
  table.print(console);
}

void printBars(Console& console, const ScreentimeReportInput& input) {
  std::vector<ChartBar> bars;
  for (const ActivitySummary::Bucket& bucket : input.summary.buckets) {
    bars.push_back(
        {bucketLabel(input, bucket.start), std::llround(bucket.seconds * 1'000), durationText(bucket.seconds)});
  }
  printSection(console, input.isWeek ? QM_TR("每天") : QM_TR("每小时"));
  printBarChart(console, bars);
}

void printTimeline(Console& console, const ScreentimeReportInput& input) {
  TextTable table({Alignment::left, Alignment::right, Alignment::left});
  for (const ActivityTimelineGroup& group : ActivityTimelineGroup::make(input.summary)) {
    std::string apps;
    for (std::size_t index = 0; index < std::min(group.apps.size(), timelineApps); ++index) {
      if (index > 0) apps += ", ";
      apps += printable(group.apps[index].app.name) + " " + durationText(group.apps[index].seconds);
    }
    if (group.apps.size() > timelineApps) apps += " …";
    table.addRow({{bucketLabel(input, group.start)}, {durationText(group.total)}, {apps, TextStyle::dim}});
  }
  printSection(console, QM_TR("时间线"));
  table.print(console);
}

Json appJson(const ActivityApp& app) {
  return {{"id", app.id}, {"name", app.name}};
}

Json appsJson(const std::vector<ActivitySummary::AppTotal>& apps) {
  Json list = Json::array();
  for (const auto& total : apps) list.push_back({{"app", appJson(total.app)}, {"seconds", total.seconds}});
  return list;
}

Json spanJson(const ActivitySpan& span) {
  return {{"start", formatIso8601(span.start)}, {"end", formatIso8601(span.end)}, {"app", appJson(span.app)}};
}

std::string csvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + '"';
}

}  // namespace

std::string durationText(double seconds) {
  const auto whole = static_cast<std::int64_t>(std::floor(seconds));
  const std::int64_t hours = whole / 3'600;
  const std::int64_t minutes = whole / 60 % 60;
  if (hours > 0) return L10n::format(QM_TR("%@ 小时 %@ 分"), {std::to_string(hours), fmt::format("{:02}", minutes)});
  if (minutes > 0)
    return L10n::format(QM_TR("%@ 分 %@ 秒"), {std::to_string(minutes), fmt::format("{:02}", whole % 60)});
  return L10n::format(QM_TR("%@ 秒"), {std::to_string(whole)});
}

void printScreentimeReport(Console& console, const ScreentimeReportInput& input) {
  printTitle(console, input);
  if (!input.archive.startedAt) return;
  if (input.summary.spans.empty()) {
    console.printLine();
    console.printLine(QM_TR("这段时间没有使用记录。"));
    return;
  }
  printApps(console, input.summary);
  printBars(console, input);
  printTimeline(console, input);
}

std::string encodeScreentime(const ScreentimeReportInput& input) {
  Json object;
  object["start"] = formatIso8601(input.interval.start);
  object["end"] = formatIso8601(input.interval.end);
  object["enabled"] = input.archive.enabled;
  if (input.archive.startedAt) object["startedAt"] = formatIso8601(*input.archive.startedAt);
  object["total"] = input.summary.total;
  if (const ActivitySpan* longest = input.summary.longestSpan()) object["longest"] = spanJson(*longest);
  object["apps"] = appsJson(input.summary.apps);
  object["buckets"] = Json::array();
  for (const auto& bucket : input.summary.buckets) {
    object["buckets"].push_back(
        {{"start", formatIso8601(bucket.start)}, {"end", formatIso8601(bucket.end)}, {"seconds", bucket.seconds}});
  }
  object["timeline"] = Json::array();
  for (const ActivityTimelineGroup& group : ActivityTimelineGroup::make(input.summary)) {
    Json spans = Json::array();
    for (const ActivitySpan& span : group.spans) spans.push_back(spanJson(span));
    object["timeline"].push_back({{"start", formatIso8601(group.start)},
                                  {"end", formatIso8601(group.end)},
                                  {"total", group.total},
                                  {"apps", appsJson(group.apps)},
                                  {"spans", std::move(spans)}});
  }
  return object.dump(2, ' ', false, Json::error_handler_t::replace);
}

std::string screentimeCsv(const std::vector<ActivitySpan>& spans) {
  std::string csv = "start,end,seconds,id,name\r\n";
  for (const ActivitySpan& span : spans) {
    csv += fmt::format("{},{},{},{},{}\r\n", formatIso8601(span.start), formatIso8601(span.end), span.seconds(),
                       csvField(span.app.id), csvField(span.app.name));
  }
  return csv;
}

}  // namespace quillmeter::ctl
