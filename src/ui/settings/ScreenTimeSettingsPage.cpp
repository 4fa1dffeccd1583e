#include "ui/settings/ScreenTimeSettingsPage.h"

#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include "access/AgentLogAccessManager.h"
#include "base/L10n.h"
#include "screentime/ScreenTimeMonitor.h"
#include "ui/AppActions.h"
#include "ui/screentime/ClearRecordDialog.h"
#include "ui/settings/PathLabel.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/Notice.h"
#include "ui/widgets/SettingsGroup.h"
#include "ui/widgets/ToggleSwitch.h"

namespace quillmeter {

namespace {

constexpr int widestPlace = 320;

}  // namespace

ScreenTimeSettingsPage::ScreenTimeSettingsPage(const UiServices& services, QWidget* parent)
    : SettingsPage(services, parent) {
  setObjectName("settings.screenTime");
  buildRecording();
  buildRecord();
  column()->addStretch(1);
  ScreenTimeSettingsPage::retranslate();
}

void ScreenTimeSettingsPage::buildRecording() {
  recording_ = new SettingsGroup(this);
  switch_ = new ToggleSwitch;
  switch_->setObjectName("settings.screenTime.enabled");
  connect(switch_, &QAbstractButton::clicked, this, [this](bool on) {
    services().screenTime.setEnabled(on);
    refresh();
  });
  switchRow_ = recording_->addRow(switch_);
  column()->addWidget(recording_);
  error_ = new Notice(this);
  error_->setObjectName("settings.screenTime.error");
  column()->addWidget(error_);
}

void ScreenTimeSettingsPage::buildRecord() {
  record_ = new SettingsGroup(this);
  open_ = new QPushButton;
  open_->setObjectName("settings.screenTime.open");
  connect(open_, &QPushButton::clicked, this, [this] { services().actions.showDashboard("screenTime"); });
  openRow_ = record_->addRow(open_);
  place_ = new PathLabel;
  place_->setObjectName("settings.screenTime.place");
  place_->setMaximumWidth(widestPlace);
  place_->setPath(services().screenTimeRecord, services().access.places().homeDirectory);
  placeRow_ = record_->addRow(place_);
  clear_ = new QPushButton;
  clear_->setObjectName("settings.screenTime.clear");
  connect(clear_, &QPushButton::clicked, this, [this] { askToClear(); });
  clearRow_ = record_->addRow(clear_);
  column()->addWidget(record_);
}

void ScreenTimeSettingsPage::retranslate() {
  setPageTitle(qtText(QM_TR("屏幕使用时间")));
  switchRow_->setTitle(qtText(QM_TR("记录屏幕使用时间")));
  recording_->setFootnote(qtText(QM_TR("只记录哪个应用在前台、用了多久；60 秒没有输入、锁屏或休眠时不计时。")));
  record_->setTitle(qtText(QM_TR("记录")));
  record_->setFootnote(qtText(QM_TR("记录只保存在这台电脑，保留最近 30 天，从不包含窗口标题。")));
  openRow_->setTitle(qtText(QM_TR("每天与每周的使用时间")));
  open_->setText(qtText(QM_TR("打开")));
  placeRow_->setTitle(qtText(QM_TR("保存位置")));
  place_->setAccessibleName(place_->toolTip());
  clearRow_->setTitle(qtText(QM_TR("全部记录")));
  clear_->setText(qtText(QM_TR("清除记录…")));
  for (QPushButton* button : {open_, clear_}) button->setAccessibleName(button->text());
}

std::vector<Subscription> ScreenTimeSettingsPage::subscribe(std::function<void()> changed) {
  std::vector<Subscription> subscriptions;
  subscriptions.push_back(services().screenTime.observe(std::move(changed)));
  return subscriptions;
}

void ScreenTimeSettingsPage::refresh() {
  const ScreenTimeMonitor& monitor = services().screenTime;
  switch_->setChecked(monitor.enabled());
  switch_->setEnabled(monitor.canEnable());
  switchRow_->setSubtitle(qtText(monitor.enabled() ? monitor.state() : QM_TR("未在记录")));
  clear_->setEnabled(monitor.startedAt().has_value() || monitor.storageError().has_value());
  showError();
}

void ScreenTimeSettingsPage::showError() {
  const auto error = services().screenTime.storageError();
  if (!error) return error_->clear();
  error_->show(Notice::Kind::error, qtText(*error));
  if (services().screenTime.canRetrySave()) {
    error_->setAction(qtText(QM_TR("重试")), [this] { services().screenTime.retrySave(); });
  } else {
    error_->removeAction();
  }
}

void ScreenTimeSettingsPage::askToClear() {
  openClearRecordDialog(this, [this] { services().screenTime.clear(); });
}

}  // namespace quillmeter
