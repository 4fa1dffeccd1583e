#include "ui/screentime/ScreenTimePage.h"

#include <cerrno>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QDialog>
#include <QPushButton>
#include <QTest>

#include "base/L10n.h"
#include "demo/FakeServices.h"
#include "ui/screentime/ActivityPalette.h"
#include "ui/screentime/ActivityPeriod.h"
#include "ui/screentime/ActivityText.h"
#include "ui/screentime/ActivityUse.h"
#include "ui/screentime/TimelineStrip.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/BarChart.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/Notice.h"
#include "ui/widgets/SegmentedControl.h"

namespace quillmeter::test {
namespace {

const Calendar shanghai = *Calendar::forZone("Asia/Shanghai", 1);

Date at(const Date& day, double hours) {
  return Date{shanghai.startOfDay(day).microseconds + static_cast<std::int64_t>(hours * 3'600) * 1'000'000};
}

Date daysBefore(Date now, int days) {
  return shanghai.startOfDay(*shanghai.adding(-days, CalendarUnit::day, now));
}

// Recording since long: today the editor from 09:00 to 10:30 and the browser from 10:30 to 11:00, two days ago the
// browser for an hour.
MachineDescription recordingMachine() {
  MachineDescription machine;
  const Date now = machine.now;
  const ActivityApp editor{"org.example.Editor", "Editor"};
  const ActivityApp browser{"org.example.Browser", "Browser"};
  machine.screenTime.isEnabled = true;
  machine.screenTime.startedAt = daysBefore(now, 20);
  machine.screenTime.spans = {{at(daysBefore(now, 2), 20), at(daysBefore(now, 2), 21), browser},
                              {at(now, 9), at(now, 10.5), editor},
                              {at(now, 10.5), at(now, 11), browser}};
  return machine;
}

struct Page {
  explicit Page(MachineDescription machine = recordingMachine()) : services(std::move(machine)) {
    services.start();
    page.resize(840, 1'000);
    page.show();
  }
  ~Page() { L10n::install({}); }

  template <typename Widget>
  Widget& part(const char* name) {
    auto* found = dynamic_cast<Widget*>(page.findChild<QWidget*>(name));
    if (found == nullptr) throw std::runtime_error(std::string("no ") + name);
    return *found;
  }
  std::string text(const char* name) { return part<FigureLabel>(name).text().toStdString(); }
  void click(const char* name) { part<QAbstractButton>(name).click(); }
  bool shows(const char* name) { return part<QWidget>(name).isVisible(); }
  void chooseWeek() {
    for (auto* button : part<SegmentedControl>("screenTime.kind").findChildren<QAbstractButton*>()) {
      if (button->text() == "周") button->click();
    }
  }
  void front(const char* id, const char* name) {
    services.foreground.application = RunningApplication{id, name, 1, std::nullopt};
  }

  FakeServices services;
  ScreenTimePage page{services.ui};
};

TEST(ScreenTimePage, explainsItselfUntilRecordingIsSwitchedOnAndNothingIsRecordedBefore) {
  Page opened{MachineDescription()};
  opened.front("org.example.Editor", "Editor");
  opened.services.advance(20);
  EXPECT_TRUE(opened.shows("screenTime.introduction"));
  EXPECT_FALSE(opened.shows("screenTime.overview"));
  EXPECT_EQ(opened.text("screenTime.state"), "未在记录");
  EXPECT_TRUE(opened.services.screenTime.spans().empty());

  opened.click("screenTime.begin");
  opened.services.advance(10);
  EXPECT_FALSE(opened.shows("screenTime.introduction"));
  EXPECT_EQ(opened.text("screenTime.state"), "活跃中 · Editor");
  EXPECT_TRUE(opened.part<QAbstractButton>("screenTime.switch").isChecked());

  opened.click("screenTime.switch");
  EXPECT_EQ(opened.text("screenTime.state"), "未在记录");
  EXPECT_TRUE(opened.shows("screenTime.overview")) << "the record stays";
}

TEST(ScreenTimePage, showsADayAndAWeekAndABarOpensItsDay) {
  Page opened;
  EXPECT_EQ(opened.text("screenTime.period"), "3月18日 周三");
  EXPECT_EQ(opened.text("screenTime.total"), "2 小时 00 分");
  EXPECT_EQ(opened.text("screenTime.longest"), "1 小时 30 分");
  EXPECT_FALSE(opened.part<QWidget>("screenTime.today").isEnabled());
  EXPECT_FALSE(opened.part<QWidget>("screenTime.next").isEnabled());

  opened.chooseWeek();
  EXPECT_EQ(opened.text("screenTime.period"), "3月16日 – 3月22日");
  EXPECT_EQ(opened.text("screenTime.total"), "3 小时 00 分");
  auto& chart = opened.part<BarChart>("screenTime.chart");
  ASSERT_EQ(chart.bars().size(), 7U);
  EXPECT_TRUE(chart.bars()[2].isCurrent);

  chart.setFocus();
  for (int i = 0; i < 7; ++i) QTest::keyClick(&chart, Qt::Key_Left);
  QTest::keyClick(&chart, Qt::Key_Return);
  EXPECT_EQ(opened.text("screenTime.period"), "3月16日 周一");
  EXPECT_EQ(opened.text("screenTime.total"), "1 小时 00 分");
  opened.click("screenTime.today");
  EXPECT_EQ(opened.text("screenTime.period"), "3月18日 周三");
}

TEST(ScreenTimePage, goesBackToTheFirstKeptDayAndNoFurther) {
  Page opened;
  for (int i = 0; i < 40; ++i) opened.click("screenTime.previous");
  EXPECT_EQ(opened.text("screenTime.period"), "2月17日 周二") << "29 days before 18 March";
  EXPECT_FALSE(opened.part<QWidget>("screenTime.previous").isEnabled());
  opened.chooseWeek();
  EXPECT_EQ(opened.text("screenTime.period"), "2月16日 – 2月22日");
  EXPECT_FALSE(opened.part<QWidget>("screenTime.previous").isEnabled());
  for (int i = 0; i < 9; ++i) opened.click("screenTime.next");
  EXPECT_EQ(opened.text("screenTime.period"), "3月16日 – 3月22日");
}

TEST(ScreenTimePage, todayBecomesTheNextDayAtMidnightAlsoWhileNothingHappens) {
  MachineDescription machine = recordingMachine();
  machine.now = Date{at(machine.now, 24).microseconds - 20'000'000};
  for (const bool choosesADay : {false, true}) {
    Page opened(machine);
    if (choosesADay) opened.click("screenTime.previous");
    opened.services.advance(60);
    EXPECT_EQ(opened.text("screenTime.period"), choosesADay ? "3月17日 周二" : "3月19日 周四");
  }
}

TEST(ScreenTimePage, tellsEachFailureOfTheStoreAndWhatCanBeDone) {
  Page opened;
  opened.front("org.example.Editor", "Editor");
  opened.services.archive.saveOutcome = ArchiveOutcome::failed;
  opened.services.advance(40);
  auto& error = opened.part<Notice>("screenTime.error");
  EXPECT_EQ(error.text().toStdString(), "活动记录保存失败，计时已停止。请重试或清除记录。");
  opened.services.useLanguage("en");
  EXPECT_EQ(error.text().toStdString(),
            "The activity record could not be saved and counting has stopped. Try again or clear the record.");
  opened.services.useLanguage("zh-Hans");
  opened.services.archive.saveOutcome = ArchiveOutcome::done;
  auto* action = error.findChild<QPushButton*>("action");
  EXPECT_EQ(action->text().toStdString(), "重试");
  action->click();
  EXPECT_FALSE(error.isVisible());
  EXPECT_EQ(opened.text("screenTime.state"), "活跃中 · Editor");
}

TEST(ScreenTimePage, aRecordThatCannotBeReadKeepsRecordingOffUntilItIsCleared) {
  Page opened{MachineDescription()};
  opened.services.archive.asLeft = false;  // another program left something there meanwhile
  opened.services.archive.loadError = EBADMSG;
  opened.click("screenTime.begin");
  auto& error = opened.part<Notice>("screenTime.error");
  EXPECT_EQ(error.text().toStdString(), "活动记录读取失败，原文件已保留。可清除记录后重新开启。");
  EXPECT_FALSE(opened.part<QWidget>("screenTime.switch").isEnabled());
  EXPECT_FALSE(opened.part<QWidget>("screenTime.begin").isEnabled());
  EXPECT_FALSE(opened.shows("screenTime.overview"));

  auto* action = error.findChild<QPushButton*>("action");
  EXPECT_EQ(action->text().toStdString(), "清除记录…");
  action->click();
  opened.services.archive.removeOutcome = ArchiveOutcome::failed;
  opened.click("screenTime.clearDialog.clear");
  EXPECT_EQ(error.text().toStdString(), "清除失败，请检查本地存储后重试。");
  EXPECT_FALSE(opened.part<QWidget>("screenTime.begin").isEnabled());
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

  opened.services.archive.removeOutcome = ArchiveOutcome::done;
  error.findChild<QPushButton*>("action")->click();
  opened.click("screenTime.clearDialog.clear");
  EXPECT_FALSE(error.isVisible());
  opened.click("screenTime.begin");
  EXPECT_TRUE(opened.services.screenTime.enabled());
  EXPECT_TRUE(opened.shows("screenTime.overview"));
}

TEST(ScreenTimePage, saysWhenTheDesktopTellsTooLittle) {
  Page opened;
  auto& notice = opened.part<Notice>("screenTime.unavailable");
  opened.front("org.example.Editor", "Editor");
  opened.services.advance(2);
  EXPECT_FALSE(notice.isVisible());
  opened.services.foreground.supported = false;
  opened.services.advance(2);
  EXPECT_TRUE(notice.isVisible());
  EXPECT_EQ(opened.text("screenTime.state"), "活动状态不可用");
  opened.services.foreground.supported = true;
  opened.services.lock.registry = std::nullopt;
  opened.services.advance(2);
  EXPECT_TRUE(notice.isVisible());
  EXPECT_EQ(opened.text("screenTime.state"), "锁屏状态不可用");
  opened.services.lock.registry = false;
  opened.services.advance(2);
  EXPECT_FALSE(notice.isVisible());
}

TEST(ScreenTimePage, clearsOnlyAfterAskingAndThenExplainsItselfAgain) {
  Page opened;
  opened.click("screenTime.switch");
  opened.click("screenTime.clear");
  opened.click("screenTime.clear");
  EXPECT_EQ(opened.page.findChildren<QDialog*>().size(), 1);
  opened.services.useLanguage("en");
  EXPECT_EQ(opened.part<QAbstractButton>("screenTime.clearDialog.cancel").text().toStdString(), "Cancel");
  opened.click("screenTime.clearDialog.cancel");
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(opened.services.screenTime.spans().size(), 3U);
  opened.click("screenTime.clear");
  opened.click("screenTime.clearDialog.clear");
  EXPECT_TRUE(opened.services.screenTime.spans().empty());
  EXPECT_TRUE(opened.shows("screenTime.introduction"));
}

TEST(ScreenTimePage, theTimelineIsReadByKeyAndSpeaksTheLanguage) {
  Page opened;
  TimelineStrip* strip = nullptr;
  for (auto* widget : opened.part<QWidget>("screenTime.timeline").findChildren<QWidget*>()) {
    if (auto* found = dynamic_cast<TimelineStrip*>(widget); found != nullptr && found->isVisible()) strip = found;
  }
  ASSERT_NE(strip, nullptr);
  QTest::keyClick(strip, Qt::Key_Left);
  EXPECT_EQ(opened.text("screenTime.timeline.described"), "10:30–11:00 · 30 分 00 秒 · Browser");
  QTest::keyClick(strip, Qt::Key_Left);
  EXPECT_EQ(opened.text("screenTime.timeline.described"), "09:00–10:30 · 1 小时 30 分 · Editor");
  EXPECT_EQ(strip->accessibleDescription().toStdString(), opened.text("screenTime.timeline.described"));
  QTest::keyClick(strip, Qt::Key_Escape);
  EXPECT_EQ(opened.text("screenTime.timeline.described"), "");
  opened.services.useLanguage("en");
  EXPECT_EQ(opened.text("screenTime.period"), "Wed 18 Mar");
  EXPECT_EQ(opened.text("screenTime.total"), "2 h 00 min");
}

// A record as long as it gets: the day's part alone is looked at, and seldom.
TEST(ActivityUse, isMadeAnewOnlyWhenTheShownPeriodChangesAndNotWithEachSecond) {
  MachineDescription machine = recordingMachine();
  machine.screenTime.spans.clear();
  const Date first = daysBefore(machine.now, 29);
  for (int index = 0; index < 100'000; ++index) {
    const Date start{first.microseconds + index * 20'000'000LL};
    machine.screenTime.spans.push_back({start, Date{start.microseconds + 10'000'000}, {"app", "App"}});
  }
  FakeServices services(machine);
  services.start();
  services.foreground.application = RunningApplication{"app", "App", 1, std::nullopt};
  ActivityUse use(services.screenTime, services.clock, services.timers);
  ActivityPeriod period;
  period.update(services.clock.now(), shanghai);
  const auto show = [&] { use.summary(period.interval(shanghai), true, shanghai); };
  use.start(show);
  const Subscription changes = services.screenTime.observe([&] { use.monitorChanged(); });
  show();
  services.advance(60);
  EXPECT_GT(use.made(), 5);
  EXPECT_LE(use.made(), 1 + 60 / static_cast<int>(ActivityUse::renewalSeconds));

  const int made = use.made();
  period.move(-1, shanghai);
  show();
  services.advance(60);
  EXPECT_EQ(use.made(), made + 1) << "a day that is over does not change";
  use.stop();
  period.showToday(shanghai);
  services.advance(60);
  EXPECT_EQ(use.made(), made + 1) << "nobody looks";
}

TEST(ActivityPeriod, daysThatBeginLateKeepTheirPlaceAmongTheOthers) {
  // Midnight of 6 September 2026 does not exist in Santiago.
  const Calendar santiago = *Calendar::forZone("America/Santiago", 1);
  ActivityPeriod period;
  period.update(*santiago.dateFrom(2026, 9, 7), santiago);
  period.move(-1, santiago);
  const DateInterval late = period.interval(santiago);
  EXPECT_EQ(late.end.secondsSince(late.start), 23 * 3'600);
  period.move(-1, santiago);
  EXPECT_EQ(period.interval(santiago).end, late.start);
  period.move(1, santiago);
  EXPECT_EQ(period.interval(santiago), late);
}

TEST(ActivityPalette, applicationsDifferAndKeepTheirColour) {
  ActivityPalette palette;
  std::set<std::string> seen;
  const std::string first = palette.tint("app0");
  for (int index = 0; index < 12; ++index) seen.insert(palette.tint("app" + std::to_string(index)));
  EXPECT_EQ(seen.size(), 12U);
  EXPECT_FALSE(palette.tint("one more").empty());
  EXPECT_EQ(palette.tint("app0"), first);
}

TEST(ActivityText, aNameIsOnePrintableLine) {
  EXPECT_EQ(ActivityText::name({"id", "Two\nlines\x07 and\u202E more"}).toStdString(), "Two lines and more");
  EXPECT_EQ(ActivityText::name({"org.example.App", " \n"}).toStdString(), "org.example.App");
  EXPECT_EQ(ActivityText::name({"id", "\xF0\x9F\xA6\x8A Fox"}).toStdString(), "\xF0\x9F\xA6\x8A Fox");
}

TEST(ActivityText, theEndOfADayIsTwentyFour) {
  const Date day = *shanghai.dateFrom(2026, 3, 18);
  EXPECT_EQ(ActivityText::clockRange(at(day, 23.5), at(day, 24), shanghai).toStdString(), "23:30–24:00");
  EXPECT_EQ(ActivityText::scale(2'700).toStdString(), "45 分钟");
  EXPECT_EQ(ActivityText::scale(4'500).toStdString(), "1 小时 15 分");
  EXPECT_EQ(ActivityText::scale(7'200).toStdString(), "2 小时");
}

}  // namespace
}  // namespace quillmeter::test
