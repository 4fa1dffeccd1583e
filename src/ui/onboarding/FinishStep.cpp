#include "ui/onboarding/FinishStep.h"

#include <QVBoxLayout>

#include "base/L10n.h"
#include "preferences/LaunchAtLoginManager.h"
#include "ui/onboarding/DoneEmblem.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/Notice.h"
#include "ui/widgets/SettingsGroup.h"
#include "ui/widgets/ToggleSwitch.h"

namespace quillmeter {

FinishStep::FinishStep(const UiServices& services, QWidget* parent) : OnboardingStep(services, parent) {
  setObjectName("onboarding.finish");
  setEmblem(new DoneEmblem(this));
  content()->addStretch(1);
  group_ = new SettingsGroup(this);
  login_ = new ToggleSwitch;
  login_->setObjectName("onboarding.launchAtLogin");
  QObject::connect(login_, &QAbstractButton::clicked, this, [this](bool on) { setLoginItem(on); });
  loginRow_ = group_->addRow(login_);
  content()->addWidget(group_);
  failure_ = new Notice(this);
  failure_->setObjectName("onboarding.launchAtLoginFailure");
  content()->addWidget(failure_);
  content()->addStretch(2);
  FinishStep::retranslate();
}

void FinishStep::retranslate() {
  setHeading(qtText(QM_TR("准备好了")), qtText(QM_TR("点按托盘里的图标查看概览，右键打开仪表盘和设置。")));
  loginRow_->setTitle(qtText(QM_TR("开机自启")));
  login_->setAccessibleName(qtText(QM_TR("开机自启")));
  refresh();
}

void FinishStep::refresh() {
  const LaunchAtLoginState state = LaunchAtLoginManager::state(services().loginItems);
  login_->setChecked(LaunchAtLoginManager::isChosen(state));
  login_->setEnabled(state != LaunchAtLoginState::unsupported);
  const auto hint = LaunchAtLoginManager::hint(state);
  loginRow_->setSubtitle(qtText(hint.value_or(QM_TR("登录后在后台安静地启动，不打开窗口。"))));
}

void FinishStep::setLoginItem(bool on) {
  const auto done = LaunchAtLoginManager::setEnabled(on, services().loginItems, services().preferences);
  if (done) {
    failure_->clear();
  } else {
    failure_->show(Notice::Kind::error, qtText(done.error().errorDescription()));
  }
  refresh();
}

}  // namespace quillmeter
