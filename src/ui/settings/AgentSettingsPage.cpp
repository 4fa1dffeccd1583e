#include "ui/settings/AgentSettingsPage.h"

#include <algorithm>

#include <QtGui/QHideEvent>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include "access/AgentAuthorizationCoordinator.h"
#include "access/AgentLogAccessManager.h"
#include "access/AgentSwitch.h"
#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingText.h"
#include "preferences/SettingsKeys.h"
#include "ui/AppActions.h"
#include "ui/system/AgentConnecting.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/Notice.h"
#include "ui/widgets/SettingsGroup.h"
#include "ui/widgets/ToggleSwitch.h"

namespace quillmeter {

AgentSettingsPage::AgentSettingsPage(const UiServices& services, QWidget* parent) : SettingsPage(services, parent) {
  setObjectName("settings.agents");
  buildMaster();
  notice_ = new Notice(this);
  notice_->setObjectName("settings.agents.notice");
  column()->addWidget(notice_);
  buildAgents();
  column()->addStretch(1);
  AgentSettingsPage::retranslate();
}

void AgentSettingsPage::buildMaster() {
  master_ = new SettingsGroup(this);
  masterSwitch_ = new ToggleSwitch;
  masterSwitch_->setObjectName("settings.agents.enabled");
  bind(masterSwitch_, SettingsKeys::tokenMonitoringEnabled);
  masterRow_ = master_->addRow(masterSwitch_);
  connectAll_ = new QPushButton;
  connectAll_->setObjectName("settings.agents.connectAll");
  connect(connectAll_, &QPushButton::clicked, this, [this] { connectFolders(waitingAgents()); });
  connectAllRow_ = master_->addRow(connectAll_);
  column()->addWidget(master_);
}

void AgentSettingsPage::buildAgents() {
  agents_ = new SettingsGroup(this);
  for (const AgentLogProvider provider : allAgentLogProviders) {
    AgentSettingRow::Handlers handlers;
    handlers.connect = [this, provider] { connectFolders({provider}); };
    handlers.disconnect = [this, provider] { disconnectAgent(provider); };
    handlers.enable = [this, provider](bool on) { store(monitoringSettingsKey(provider), on); };
    auto* row = new AgentSettingRow(provider, std::move(handlers));
    agents_->addWidget(row);
    rows_.push_back(row);
  }
  column()->addWidget(agents_);
}

void AgentSettingsPage::retranslate() {
  setPageTitle(qtText(QM_TR("Agent")));
  masterRow_->setTitle(qtText(QM_TR("统计 Token 用量")));
  masterRow_->setSubtitle(qtText(QM_TR("每 30 秒读取一次本机日志")));
  agents_->setTitle(qtText(QM_TR("日志来源")));
  agents_->setFootnote(qtText(QM_TR("只读取用量计数和时间，从不读取提示词、代码或工具输出。")));
  for (AgentSettingRow* row : rows_) row->retranslate();
}

std::vector<Subscription> AgentSettingsPage::subscribe(std::function<void()> changed) {
  std::vector<Subscription> subscriptions;
  subscriptions.push_back(services().store.onAgentsChange(changed));
  subscriptions.push_back(services().authorization.onChange(std::move(changed)));
  return subscriptions;
}

void AgentSettingsPage::refresh() {
  for (AgentSettingRow* row : rows_) row->show(stateOf(row->provider()));
  showWaiting();
  showNotice();
}

AgentSettingRow::State AgentSettingsPage::stateOf(AgentLogProvider provider) const {
  const std::filesystem::path& home = services().access.places().homeDirectory;
  const auto granted = services().access.grantedFolder(provider);
  return {.folderState = folderState(provider, granted.has_value()),
          .folder = granted ? *granted : expectedFolderPath(provider, home),
          .home = home,
          .isEnabled = isSwitchedOn(services().preferences, provider),
          .canSwitch = services().preferences.value(SettingsKeys::tokenMonitoringEnabled),
          .canConnect = !services().authorization.isConnecting()};
}

// A grant that is stored is usable: a scan forgets those that are not.
AgentFolderState AgentSettingsPage::folderState(AgentLogProvider provider, bool isGranted) const {
  if (isGranted) return AgentFolderState::connected;
  if (services().access.isDeclined(provider)) return AgentFolderState::unusable;
  const auto& detected = services().store.detectedAgentProviders();
  return std::ranges::find(detected, provider) == detected.end() ? AgentFolderState::notFound : AgentFolderState::found;
}

std::vector<AgentLogProvider> AgentSettingsPage::waitingAgents() const {
  std::vector<AgentLogProvider> waiting;
  for (const AgentLogProvider provider : allAgentLogProviders) {
    const AgentSettingRow::State state = stateOf(provider);
    const bool canBeConnected =
        state.folderState == AgentFolderState::found || state.folderState == AgentFolderState::unusable;
    if (state.isEnabled && canBeConnected) waiting.push_back(provider);
  }
  return waiting;
}

void AgentSettingsPage::showWaiting() {
  const std::vector<AgentLogProvider> waiting = waitingAgents();
  connectAllRow_->setVisible(!waiting.empty());
  connectAll_->setEnabled(!services().authorization.isConnecting());
  if (waiting.empty()) return;
  const std::string name = title(waiting.front());
  const std::string count = std::to_string(waiting.size());
  const bool isOne = waiting.size() == 1;
  connectAllRow_->setTitle(
      qtText(isOne ? L10n::format(QM_TR("只剩已启用的 %@ 未连接，确认一次即可。"), {name})
                   : L10n::format(QM_TR("将依次打开 %d 个已启用来源的目录；确认一个后自动继续。"), {count})));
  const QString button =
      qtText(isOne ? L10n::format(QM_TR("连接 %@"), {name}) : L10n::format(QM_TR("依次连接 %d 个"), {count}));
  connectAll_->setText(button);
  connectAll_->setAccessibleName(button);
}

void AgentSettingsPage::showNotice() {
  const auto progress = services().authorization.progressText();
  const auto& feedback = services().authorization.feedback();
  if (progress) {
    notice_->show(Notice::Kind::information, qtText(*progress));
  } else if (notDisconnected_) {
    const std::string sentence = L10n::format(QM_TR("无法取消 %@ 的文件夹授权。"), {title(*notDisconnected_)});
    notice_->show(Notice::Kind::error, qtText(sentence) + "\n" + qtText(localizedDescription(disconnectProblem_)));
  } else if (feedback) {
    notice_->show(noticeKind(feedback->kind), qtText(feedback->message()));
  } else {
    notice_->clear();
  }
}

void AgentSettingsPage::connectFolders(const std::vector<AgentLogProvider>& providers) {
  notDisconnected_.reset();
  connectAgents(services(), providers);
}

void AgentSettingsPage::disconnectAgent(AgentLogProvider provider) {
  notDisconnected_.reset();
  const auto removed = services().access.removeAccess(provider);
  if (!removed) {
    notDisconnected_ = provider;
    disconnectProblem_ = removed.error();
  }
  refresh();
}

// What came of the last visit is no news on the next one.
void AgentSettingsPage::hideEvent(QHideEvent* event) {
  notDisconnected_.reset();
  SettingsPage::hideEvent(event);
  if (!event->spontaneous() && !services().authorization.isConnecting()) services().authorization.clearFeedback();
}

}  // namespace quillmeter
