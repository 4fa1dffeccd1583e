#include "platform/qt/QtLocale.h"

#include <QLocale>
#include <QStringList>
#include <string>

#include "platform/qt/QtCatalogue.h"
#include "platform/qt/UserLocale.h"

namespace quillmeter {

namespace {

// What the locale's list patterns put between two neighbours.
std::string between(const QString& list, QChar left, QChar right) {
  const auto begin = list.indexOf(left) + 1;
  return list.mid(begin, list.indexOf(right) - begin).toStdString();
}

void fillListPatterns(const QLocale& locale, LocaleConventions& conventions) {
  const QString pair = locale.createSeparatedList({QStringLiteral("1"), QStringLiteral("2")});
  const QString four =
      locale.createSeparatedList({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("4")});
  conventions.listPair = between(pair, u'1', u'2');
  conventions.listMiddle = between(four, u'2', u'3');
  conventions.listEnd = between(four, u'3', u'4');
}

Weekday firstWeekdayOf(const QLocale& locale) {
  // Weeks in China begin on Monday by national standard. The common locale data say so since release 42, the C
  // library's always did; Qt 6.4 carries release 41.
  if (locale.territory() == QLocale::China) return 1;
  constexpr int daysPerWeek = 7;  // Qt counts Monday = 1 ... Sunday = 7
  return static_cast<Weekday>(locale.firstDayOfWeek()) % daysPerWeek;
}

}  // namespace

LocaleConventions localeConventions(std::string_view interfaceLanguage) {
  LocaleConventions conventions;
  const QLocale numbers = userLocale("LC_NUMERIC");
  if (numbers != QLocale::c()) {
    conventions.decimalSeparator = numbers.decimalPoint().toStdString();
    conventions.groupingSeparator = numbers.groupSeparator().toStdString();
  }
  conventions.firstWeekday = firstWeekdayOf(userLocale("LC_TIME"));
  const bool chinese = interfaceLanguage == simplifiedChineseLanguage;
  fillListPatterns(chinese ? QLocale(QLocale::Chinese, QLocale::SimplifiedHanScript, QLocale::China)
                           : QLocale(QLocale::English, QLocale::UnitedStates),
                   conventions);
  return conventions;
}

}  // namespace quillmeter
