#include "ctl/ScreentimeCommand.h"

#include <charconv>
#include <cstring>
#include <string_view>

#include <CLI/CLI.hpp>

#include "base/L10n.h"
#include "ctl/ScreentimeReport.h"
#include "screentime/ActivityArchiveFile.h"

namespace quillmeter::ctl {
namespace {

// "2026-11-21", every digit of it.
std::optional<Date> dayFrom(std::string_view text, const Calendar& calendar) {
  if (text.size() != 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
  const auto number = [&](std::size_t start, std::size_t length) -> int {
    int value = 0;
    const char* end = text.data() + start + length;
    const auto result = std::from_chars(text.data() + start, end, value);
    return result.ec == std::errc() && result.ptr == end ? value : -1;
  };
  return calendar.dateFrom(number(0, 4), number(5, 2), number(8, 2));
}

}  // namespace

void ScreentimeCommand::declare(CLI::App& root, ChosenAction& chosen) {
  CLI::App* command = root.add_subcommand("screentime", QM_TR("屏幕使用时间：总计、应用、柱状图与时间线"));
  CLI::Option* json = command->add_flag("--json", json_, QM_TR("输出 JSON"));
  command->add_flag("--csv", csv_, QM_TR("输出 CSV；不给日期时导出全部记录"))->excludes(json);
  CLI::Option* day = command->add_option("--day", day_, QM_TR("这一天，例如 2026-11-21（默认今天）"))->type_name("D");
  command->add_option("--week", week_, QM_TR("这一天所在的一周"))->type_name("D")->excludes(day);
  command->add_option("--archive", archive_, QM_TR("读取这个记录文件"))->type_name("FILE");
  command->callback([this, &chosen] { chosen = [this] { return run(); }; });
}

ExitCode ScreentimeCommand::run() {
  Console& console = context_.console;
  const Calendar calendar = Calendar::current(context_.locale.firstWeekday);
  const auto chosen = interval(calendar);
  if (!chosen) {
    return console.wrongUse(L10n::format(QM_TR("“%@”不是日期，例如 2026-11-21。"), {week_.empty() ? day_ : week_}));
  }
  const auto archive = load();
  if (!archive) return console.failure(archive.error());
  if (csv_ && day_.empty() && week_.empty()) {
    console.print(screentimeCsv(archive->spans));
    return ExitCode::done;
  }
  const bool isWeek = !week_.empty();
  const auto summary = ActivitySummary::make(archive->spans, *chosen, !isWeek, calendar);
  const ScreentimeReportInput input{*archive, summary, calendar, *chosen, isWeek};
  if (csv_) {
    console.print(screentimeCsv(summary.spans));
  } else if (json_) {
    console.printLine(encodeScreentime(input));
  } else {
    printScreentimeReport(console, input);
  }
  return ExitCode::done;
}

std::optional<DateInterval> ScreentimeCommand::interval(const Calendar& calendar) const {
  const std::string& text = week_.empty() ? day_ : week_;
  const std::optional<Date> day = text.empty() ? calendar.startOfDay(context_.clock.now()) : dayFrom(text, calendar);
  if (!day) return std::nullopt;
  constexpr int daysOfWeek = 7;
  const Date start = week_.empty() ? *day : calendar.startOfWeek(*day);
  const auto end = calendar.adding(week_.empty() ? 1 : daysOfWeek, CalendarUnit::day, start);
  if (!end) return std::nullopt;
  return DateInterval{start, calendar.startOfDay(*end)};
}

tl::expected<ActivityArchive, std::string> ScreentimeCommand::load() const {
  const std::filesystem::path path = archive_.empty() ? defaultArchive_ : std::filesystem::path(archive_);
  auto stored = ActivityArchiveFile(path).load();
  if (!stored) {
    return tl::unexpected(L10n::format(QM_TR("无法读取活动记录 %@"), {path.string()}) + " (" +
                          std::strerror(stored.error()) + ")");
  }
  if (*stored) return std::move(**stored);
  if (!archive_.empty()) return tl::unexpected(L10n::format(QM_TR("没有活动记录 %@"), {path.string()}));
  return ActivityArchive{};
}

}  // namespace quillmeter::ctl
