#include "ui/screentime/ScreenTimePage.h"

#include <functional>
#include <initializer_list>

#include <QEvent>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/Clock.h"
#include "base/L10n.h"
#include "screentime/ScreenTimeMonitor.h"
#include "ui/screentime/ActivityPalette.h"
#include "ui/screentime/ActivityPeriod.h"
#include "ui/screentime/ActivityUse.h"
#include "ui/screentime/ApplicationList.h"
#include "ui/screentime/ClearRecordDialog.h"
#include "ui/screentime/PeriodBar.h"
#include "ui/screentime/RecordingIntroduction.h"
#include "ui/screentime/ScreenTimeHeader.h"
#include "ui/screentime/TimelineCard.h"
#include "ui/screentime/UsageOverview.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/Notice.h"
#include "ui/widgets/Paragraph.h"
#include "ui/widgets/ScrollPage.h"

namespace quillmeter {
namespace {

constexpr int maximumPageWidth = 900;
constexpr int cardGap = 14;

}  // namespace

struct ScreenTimePage::Parts {
  Parts(ScreenTimePage& owner, const UiServices& uiServices);

  void build();
  void buildState();
  void buildRecord();
  void buildFooter();
  void monitorChanged();
  void showState();
  void showNotices();
  void showLists();
  void showUse();
  void changePeriod(const std::function<void(const Calendar&)>& change);
  void askToClear();
  void retranslate();

  ScreenTimePage& page;
  const UiServices services;
  ActivityPalette palette;
  ActivityPeriod period;
  ActivityUse use;
  Subscription monitorChanges;

  ScreenTimeHeader* header = nullptr;
  Notice* error = nullptr;
  Notice* unavailable = nullptr;
  RecordingIntroduction* introduction = nullptr;
  PeriodBar* periodBar = nullptr;
  UsageOverview* overview = nullptr;
  bool hasUse = false;
  TimelineCard* timeline = nullptr;
  ApplicationList* applications = nullptr;
  QWidget* footer = nullptr;
  Paragraph* privacy = nullptr;
  QPushButton* clear = nullptr;
};

ScreenTimePage::Parts::Parts(ScreenTimePage& owner, const UiServices& uiServices)
    : page(owner), services(uiServices), use(uiServices.screenTime, uiServices.clock, uiServices.timers) {
  build();
  retranslate();
}

void ScreenTimePage::Parts::build() {
  auto* scroll = new ScrollPage(maximumPageWidth, &page);
  auto* outer = new QVBoxLayout(&page);
  outer->setContentsMargins(0, 0, 0, 0);
  outer->addWidget(scroll);
  buildState();
  buildRecord();
  buildFooter();
  scroll->column()->setSpacing(cardGap);
  for (QWidget* part : std::initializer_list<QWidget*>{header, error, unavailable, introduction, periodBar, overview,
                                                       timeline, applications, footer})
    scroll->column()->addWidget(part);
  scroll->column()->addStretch(1);
}

void ScreenTimePage::Parts::buildState() {
  header = new ScreenTimeHeader;
  header->setSwitched([this](bool on) {
    services.screenTime.setEnabled(on);
    showState();
  });
  error = new Notice;
  error->setObjectName("screenTime.error");
  unavailable = new Notice;
  unavailable->setObjectName("screenTime.unavailable");
  introduction = new RecordingIntroduction;
  introduction->setBegun([this] { services.screenTime.setEnabled(true); });
}

void ScreenTimePage::Parts::buildRecord() {
  periodBar = new PeriodBar({
      .kindChosen = [this](ActivityPeriod::Kind kind) { changePeriod([&](const Calendar&) { period.setKind(kind); }); },
      .moved = [this](int steps) { changePeriod([&](const Calendar& calendar) { period.move(steps, calendar); }); },
      .todayChosen = [this] { changePeriod([&](const Calendar& calendar) { period.showToday(calendar); }); },
  });
  overview = new UsageOverview;
  overview->setDayChosen([this](Date day) {
    changePeriod([&](const Calendar& calendar) {
      period.setKind(ActivityPeriod::Kind::day);
      period.showDay(day, calendar);
    });
  });
  timeline = new TimelineCard(palette);
  applications = new ApplicationList(services.applicationIcons, palette);
}

void ScreenTimePage::Parts::buildFooter() {
  privacy = new Paragraph(TextRole::caption, TextTone::secondary);
  privacy->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  clear = new QPushButton;
  clear->setObjectName("screenTime.clear");
  QObject::connect(clear, &QPushButton::clicked, &page, [this] { askToClear(); });
  footer = new QWidget;
  auto* row = new QHBoxLayout(footer);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(16);
  row->addWidget(privacy, 1);
  row->addWidget(clear);
}

void ScreenTimePage::Parts::monitorChanged() {
  showState();
  use.monitorChanged();
}

// What costs nothing to look at: done at each change that the monitor publishes.
void ScreenTimePage::Parts::showState() {
  const ScreenTimeMonitor& monitor = services.screenTime;
  header->showState(monitor);
  showNotices();
  const bool hasRecord = monitor.startedAt().has_value() || monitor.enabled();
  introduction->setVisible(!hasRecord);
  introduction->setCanBegin(monitor.canEnable());
  for (QWidget* part : std::initializer_list<QWidget*>{periodBar, overview, footer}) part->setVisible(hasRecord);
  showLists();
}

void ScreenTimePage::Parts::showNotices() {
  const ScreenTimeMonitor& monitor = services.screenTime;
  if (const auto message = monitor.storageError()) {
    if (monitor.canRetrySave()) {
      error->setAction(qtText(QM_TR("重试")), [this] { services.screenTime.retrySave(); });
    } else {
      error->setAction(qtText(QM_TR("清除记录…")), [this] { askToClear(); });
    }
    error->show(Notice::Kind::error, qtText(*message));
  } else {
    error->clear();
  }
  const std::string state = monitor.enabled() && !monitor.storageError() ? monitor.state() : std::string();
  if (state == QM_TR("活动状态不可用")) {
    unavailable->show(Notice::Kind::information,
                      qtText(QM_TR("这个桌面没有告诉程序哪个应用在前台，或多久没有输入，因此现在不计时。")));
  } else if (state == QM_TR("锁屏状态不可用")) {
    unavailable->show(Notice::Kind::information, qtText(QM_TR("这个桌面没有告诉程序屏幕是否已锁定，因此现在不计时。")));
  } else {
    unavailable->clear();
  }
}

// A period without any use has its empty chart only.
void ScreenTimePage::Parts::showLists() {
  for (QWidget* list : std::initializer_list<QWidget*>{timeline, applications})
    list->setVisible(hasUse && !overview->isHidden());
}

// Sums up the shown period and shows it.
void ScreenTimePage::Parts::showUse() {
  const Calendar calendar = services.currentCalendar();
  const Date now = services.clock.now();
  period.update(now, calendar);
  const DateInterval interval = period.interval(calendar);
  const bool isWeek = period.kind() == ActivityPeriod::Kind::week;
  periodBar->show(period, calendar);
  const ActivitySummary& summary = use.summary(interval, !isWeek, calendar);
  overview->setUse(summary, isWeek, now, calendar);
  timeline->setUse(summary, isWeek, calendar);
  applications->setUse(summary.apps, summary.total);
  hasUse = !summary.spans.empty();
  showLists();
}

void ScreenTimePage::Parts::changePeriod(const std::function<void(const Calendar&)>& change) {
  const Calendar calendar = services.currentCalendar();
  period.update(services.clock.now(), calendar);
  change(calendar);
  showUse();
}

void ScreenTimePage::Parts::askToClear() {
  openClearRecordDialog(&page, [this] {
    services.screenTime.clear();
    showState();
    showUse();
  });
}

void ScreenTimePage::Parts::retranslate() {
  page.setAccessibleName(qtText(QM_TR("屏幕使用时间")));
  header->retranslate();
  introduction->retranslate();
  periodBar->retranslate();
  overview->retranslate();
  timeline->retranslate();
  applications->retranslate();
  privacy->setText(qtText(QM_TR("记录只保存在这台电脑，保留最近 30 天，从不包含窗口标题。")));
  clear->setText(qtText(QM_TR("清除记录…")));
  showState();
  if (page.isVisible()) showUse();
}

ScreenTimePage::ScreenTimePage(const UiServices& services, QWidget* parent) : QWidget(parent) {
  setObjectName("screenTime");
  parts_ = std::make_unique<Parts>(*this, services);
}

ScreenTimePage::~ScreenTimePage() = default;

void ScreenTimePage::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Parts& parts = *parts_;
  parts.monitorChanges = parts.services.screenTime.observe([this] { parts_->monitorChanged(); });
  parts.use.start([this] { parts_->showUse(); });
  parts.showState();
  parts.showUse();
}

void ScreenTimePage::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  parts_->monitorChanges.reset();
  parts_->use.stop();
}

void ScreenTimePage::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) parts_->retranslate();
}

}  // namespace quillmeter
