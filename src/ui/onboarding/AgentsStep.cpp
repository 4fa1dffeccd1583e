#include "ui/onboarding/AgentsStep.h"

#include <algorithm>
#include <string>
#include <utility>

#include <QHBoxLayout>
#include <QHideEvent>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "access/AgentAuthorizationCoordinator.h"
#include "access/AgentLogAccessManager.h"
#include "access/AgentSwitch.h"
#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "preferences/PreferenceStore.h"
#include "ui/onboarding/FoundAgentRow.h"
#include "ui/system/AgentConnecting.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/Card.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/Notice.h"
#include "ui/widgets/Paragraph.h"

namespace quillmeter {

AgentsStep::AgentsStep(const UiServices& services, QWidget* parent) : OnboardingStep(services, parent) {
  setObjectName("onboarding.agents");
  list_ = new Card;
  none_ = new Paragraph(TextRole::body, TextTone::secondary);
  none_->setAlignment(Qt::AlignCenter);
  list_->content()->setSpacing(0);
  list_->content()->addWidget(none_);
  auto* scroll = new QScrollArea(this);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidgetResizable(true);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll->setFocusPolicy(Qt::NoFocus);
  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(list_);
  column->addStretch(1);
  scroll->setWidget(page);
  content()->addWidget(scroll, 1);

  feedback_ = new Notice(this);
  feedback_->setObjectName("onboarding.feedback");
  content()->addWidget(feedback_);
  progress_ = new FigureLabel(TextRole::body, TextTone::secondary, this);
  progress_->setObjectName("onboarding.progress");
  connectAll_ = new QPushButton(this);
  connectAll_->setObjectName("onboarding.connectAll");
  QObject::connect(connectAll_, &QPushButton::clicked, this, [this] { connectFolders(chosenAgents()); });
  auto* actions = new QHBoxLayout;
  actions->addWidget(progress_, 1);
  actions->addWidget(connectAll_);
  content()->addLayout(actions);
  AgentsStep::retranslate();
}

// What the last look at the machine found; an agent that was found before keeps its line and its choice.
void AgentsStep::findAgents() {
  for (const AgentLogProvider provider : services().store.detectedAgentProviders()) {
    if (std::ranges::none_of(rows_, [&](const FoundAgentRow* row) { return row->provider() == provider; }))
      addAgent(provider);
  }
}

void AgentsStep::addAgent(AgentLogProvider provider) {
  auto* row = new FoundAgentRow(provider, list_);
  row->setChosen(!wasSwitchedOff(services().preferences, provider));
  row->setHandlers([this] { showSequence(); }, [this, provider] { connectFolders({provider}); });
  const auto behind =
      std::ranges::find_if(rows_, [&](const FoundAgentRow* other) { return other->provider() > provider; });
  list_->content()->insertWidget(static_cast<int>(behind - rows_.begin()), row);
  rows_.insert(behind, row);
  row->show();  // at once, not with the next turn of the event loop
}

std::vector<AgentLogProvider> AgentsStep::chosenAgents() const {
  std::vector<AgentLogProvider> providers;
  for (const FoundAgentRow* row : rows_) {
    if (row->isChosen()) providers.push_back(row->provider());
  }
  return providers;
}

void AgentsStep::connectFolders(const std::vector<AgentLogProvider>& providers) {
  connectAgents(services(), providers, HandMadeOff::isTurnedOn);
}

void AgentsStep::showState() {
  const AgentAuthorizationCoordinator& flow = services().authorization;
  const std::filesystem::path& home = services().access.places().homeDirectory;
  for (FoundAgentRow* row : rows_)
    row->showState(services().access.grantedFolder(row->provider()), home, flow.isConnecting());
  none_->setVisible(rows_.empty());
  if (flow.feedback()) {
    feedback_->show(noticeKind(flow.feedback()->kind), qtText(flow.feedback()->message()));
  } else {
    feedback_->clear();
  }
  showSequence();
}

void AgentsStep::showSequence() {
  const AgentAuthorizationCoordinator& flow = services().authorization;
  const std::vector<AgentLogProvider> chosen = chosenAgents();
  connectAll_->setVisible(!rows_.empty());
  connectAll_->setEnabled(!chosen.empty() && !flow.isConnecting());
  connectAll_->setText(qtText(L10n::format(QM_TR("依次连接 %d 个"), {std::to_string(chosen.size())})));
  std::string hint = flow.progressText().value_or("");
  if (hint.empty() && chosen.size() > 1) {
    hint = L10n::format(QM_TR("将依次打开 %d 个目录；确认一个后自动继续。"), {std::to_string(chosen.size())});
  }
  progress_->setText(qtText(hint));
}

void AgentsStep::retranslate() {
  setHeading(qtText(QM_TR("连接你的 Agent")),
             qtText(QM_TR("只读取日志里的用量计数和时间。由你确认每个日志文件夹，随时可以断开。")));
  none_->setText(qtText(QM_TR("没有在这台电脑上找到 Agent。以后安装了，可以在设置里连接。")));
  for (FoundAgentRow* row : rows_) row->retranslate();
  showState();
}

QWidget* AgentsStep::firstControl() const {
  return connectAll_->isEnabled() && !connectAll_->isHidden() ? connectAll_ : nullptr;
}

std::vector<Subscription> AgentsStep::subscribe(std::function<void()> changed) {
  std::vector<Subscription> subscriptions;
  subscriptions.push_back(services().authorization.onChange(changed));
  subscriptions.push_back(services().store.onAgentsChange(std::move(changed)));
  return subscriptions;
}

void AgentsStep::refresh() {
  findAgents();
  showState();
}

// What came of this visit is no news on the next one, nor on the other pages that connect agents.
void AgentsStep::hideEvent(QHideEvent* event) {
  OnboardingStep::hideEvent(event);
  if (!event->spontaneous() && !services().authorization.isConnecting()) services().authorization.clearFeedback();
}

}  // namespace quillmeter
