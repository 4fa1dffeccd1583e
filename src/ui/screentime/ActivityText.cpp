#include "ui/screentime/ActivityText.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <string>

#include <fmt/format.h>

#include "base/L10n.h"
#include "core/model/ClockTexts.h"
#include "ui/theme/QtText.h"

namespace quillmeter::ActivityText {
namespace {

constexpr std::array<const char*, 7> weekdays = {QM_TR_NOOP("周日"), QM_TR_NOOP("周一"), QM_TR_NOOP("周二"),
                                                 QM_TR_NOOP("周三"), QM_TR_NOOP("周四"), QM_TR_NOOP("周五"),
                                                 QM_TR_NOOP("周六")};
constexpr std::array<const char*, 12> months = {QM_TR_NOOP("1月"),  QM_TR_NOOP("2月"),  QM_TR_NOOP("3月"),
                                                QM_TR_NOOP("4月"),  QM_TR_NOOP("5月"),  QM_TR_NOOP("6月"),
                                                QM_TR_NOOP("7月"),  QM_TR_NOOP("8月"),  QM_TR_NOOP("9月"),
                                                QM_TR_NOOP("10月"), QM_TR_NOOP("11月"), QM_TR_NOOP("12月")};

std::string monthName(const CalendarDay& day) {
  return L10n::string(months[static_cast<std::size_t>(day.month - 1)]);
}

std::string weekdayName(Date date, const Calendar& calendar) {
  return L10n::string(weekdays[static_cast<std::size_t>(calendar.weekday(date))]);
}

}  // namespace

QString name(const ActivityApp& app) {
  QString line = qtText(app.name).simplified();
  line.removeIf([](QChar c) { return !c.isPrint() && !c.isSurrogate(); });
  return line.isEmpty() ? qtText(app.id).simplified() : line;
}

QString duration(double seconds) {
  const auto whole = static_cast<std::int64_t>(std::floor(seconds));
  const std::int64_t hours = whole / 3'600;
  const std::int64_t minutes = whole / 60 % 60;
  if (hours > 0) {
    return qtText(L10n::format(QM_TR("%@ 小时 %@ 分"), {std::to_string(hours), fmt::format("{:02}", minutes)}));
  }
  if (minutes > 0) {
    return qtText(L10n::format(QM_TR("%@ 分 %@ 秒"), {std::to_string(minutes), fmt::format("{:02}", whole % 60)}));
  }
  return qtText(L10n::format(QM_TR("%@ 秒"), {std::to_string(whole)}));
}

QString scale(double seconds) {
  const auto minutes = static_cast<std::int64_t>(std::llround(seconds / 60));
  if (minutes == 0) return qtText(L10n::format(QM_TR("%@ 秒"), {std::to_string(std::llround(seconds))}));
  if (minutes % 60 == 0) return qtText(L10n::format(QM_TR("%@ 小时"), {std::to_string(minutes / 60)}));
  if (minutes < 60) return qtText(L10n::format(QM_TR("%@ 分钟"), {std::to_string(minutes)}));
  return duration(static_cast<double>(minutes) * 60);
}

QString clock(Date date, const Calendar& calendar) {
  return qtText(clockText(date, calendar));
}

QString clockRange(Date start, Date end, const Calendar& calendar) {
  const bool endsTheDay = end == calendar.startOfDay(end) && end > start;
  return qtText(clockText(start, calendar) + "–" + (endsTheDay ? "24:00" : clockText(end, calendar)));
}

QString day(Date date, const Calendar& calendar) {
  const CalendarDay shown = calendar.components(date).day;
  return qtText(L10n::format(QM_TR("%1$@%2$@日"), {monthName(shown), std::to_string(shown.day)}));
}

QString longDay(Date date, const Calendar& calendar) {
  const CalendarDay shown = calendar.components(date).day;
  return qtText(L10n::format(QM_TR("%1$@%2$@日 %3$@"),
                             {monthName(shown), std::to_string(shown.day), weekdayName(date, calendar)}));
}

QString weekday(Date date, const Calendar& calendar) {
  return qtText(weekdayName(date, calendar));
}

QString period(const DateInterval& interval, bool isWeek, const Calendar& calendar) {
  if (!isWeek) return longDay(interval.start, calendar);
  const Date last{interval.end.microseconds - 1};
  return day(interval.start, calendar) + QStringLiteral(" – ") + day(last, calendar);
}

}  // namespace quillmeter::ActivityText
