#include "ui/dashboard/AgentsPage.h"

#include <QHideEvent>
#include <QVBoxLayout>

#include "access/AgentAuthorizationCoordinator.h"
#include "base/Clock.h"
#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "core/model/ClockTexts.h"
#include "core/model/MetricFormatter.h"
#include "preferences/MonitorComponentKind.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "ui/AppActions.h"
#include "ui/cards/ActiveSessionsView.h"
#include "ui/cards/AgentCardState.h"
#include "ui/cards/BusyIndicator.h"
#include "ui/cards/UsageBars.h"
#include "ui/cards/UsageRange.h"
#include "ui/dashboard/AgentRows.h"
#include "ui/dashboard/AgentTable.h"
#include "ui/dashboard/AgentsIntroduction.h"
#include "ui/dashboard/PageHeader.h"
#include "ui/dashboard/UsageTotals.h"
#include "ui/system/AgentConnecting.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/BarChart.h"
#include "ui/widgets/Notice.h"
#include "ui/widgets/ScrollPage.h"
#include "ui/widgets/SegmentedControl.h"
#include "ui/widgets/SymbolButton.h"

namespace quillmeter {

namespace {

constexpr int gap = 14;
constexpr int sessionsBesideFrom = 820;  // width of the page
constexpr int chartHeight = 190;
using Kind = MonitorComponentKind;

std::string named(std::string_view text) {
  return std::string(text);
}

}  // namespace

AgentsPage::AgentsPage(const UiServices& services, QWidget* parent) : QWidget(parent), services_(services) {
  setObjectName(QStringLiteral("dashboard.agents"));
  buildHeader();
  scroll_ = new ScrollPage(PageHeader::maximumWidth, this);
  scroll_->setObjectName(QStringLiteral("dashboard.agents.scroll"));
  header_->standAbove(*scroll_);
  buildCards();
  retranslate();
  refresh();
}

AgentsPage::~AgentsPage() = default;

void AgentsPage::buildHeader() {
  header_ = new PageHeader(this);
  busy_ = new BusyIndicator(services_.timers, this);
  ranges_ = new SegmentedControl(this);
  ranges_->setObjectName(QStringLiteral("dashboard.agents.range"));
  ranges_->setHandler([this](const std::string& id) { chooseUsageRange(services_, id); });
  refresh_ = new SymbolButton("arrow.clockwise", this);
  refresh_->setObjectName(QStringLiteral("dashboard.agents.refresh"));
  connect(refresh_, &QAbstractButton::clicked, this, [this] { services_.store.refreshAgents(); });
  header_->addControl(busy_);
  header_->addControl(ranges_);
  header_->addControl(refresh_);
}

void AgentsPage::buildCards() {
  notice_ = new Notice(scroll_);
  notice_->setObjectName(QStringLiteral("dashboard.agents.notice"));
  feedback_ = new Notice(scroll_);
  feedback_->setObjectName(QStringLiteral("dashboard.agents.feedback"));
  introduction_ = new AgentsIntroduction([this] { connectFound(); }, scroll_);
  usage_ = new QWidget(scroll_);
  totals_ = new UsageTotals(usage_);
  course_ = new Card(usage_);
  chart_ = new BarChart(course_);
  chart_->setObjectName(QStringLiteral("dashboard.agents.chart"));
  chart_->setTint(named(quillmeter::tint(Kind::agentTokens)));
  chart_->setScaleText([](double value) { return qtText(MetricFormatter::tokens(static_cast<std::int64_t>(value))); });
  chart_->setMinimumHeight(chartHeight);
  course_->content()->addWidget(chart_, 1);
  auto* sessions = new Card(usage_);
  sessions->content()->addWidget(new ActiveSessionsView(services_, 0, sessions));
  sessions->content()->addStretch(1);
  middle_ = new QBoxLayout(QBoxLayout::TopToBottom);
  middle_->setSpacing(gap);
  middle_->addWidget(course_, 3);
  middle_->addWidget(sessions, 2);
  auto* parts = new QVBoxLayout(usage_);
  parts->setContentsMargins(0, 0, 0, 0);
  parts->setSpacing(gap);
  parts->addWidget(totals_);
  parts->addLayout(middle_);
  list_ = new Card(scroll_);
  table_ = new AgentTable([this](AgentLogProvider) { services_.actions.showSettings("agents"); }, list_);
  list_->content()->addWidget(table_);

  QVBoxLayout* column = scroll_->column();
  column->setSpacing(gap);
  for (QWidget* part : {static_cast<QWidget*>(notice_), static_cast<QWidget*>(feedback_),
                        static_cast<QWidget*>(introduction_), usage_, static_cast<QWidget*>(list_)}) {
    column->addWidget(part);
  }
  column->addStretch(1);
}

void AgentsPage::retranslate() {
  header_->setTitle(qtText(QM_TR("Agent")));
  busy_->setDescription(qtText(QM_TR("正在读取本地 Agent 日志")));
  refresh_->setDescription(qtText(QM_TR("重新扫描")));
  ranges_->setSegments(usageRangeSegments());
  ranges_->setAccessibleName(qtText(QM_TR("统计范围")));
  list_->setHeader("terminal", {}, qtText(QM_TR("各个 Agent")));
  table_->setAccessibleName(qtText(QM_TR("各个 Agent")));
}

void AgentsPage::connectFound() {
  const std::vector<AgentLogProvider> providers = connectableAgents(services_);
  if (providers.empty()) return services_.actions.showSettings("agents");
  connectAgents(services_, providers);
}

void AgentsPage::enableMonitoring() {
  const auto stored = services_.preferences.set(SettingsKeys::tokenMonitoringEnabled.key, true);
  if (!stored) services_.actions.preferenceFailed(stored.error());
}

void AgentsPage::refresh() {
  pending_.reset();
  const AgentUsageSnapshot& agents = services_.store.agents();
  const bool isEnabled = services_.preferences.value(SettingsKeys::tokenMonitoringEnabled);
  const AgentCardState state = agentCardState(agents, isEnabled);
  const bool isConnected = state != AgentCardState::notConnected;
  const AgentUsageRange range = chosenUsageRange(services_);
  ranges_->setChosen(named(rawValue(range)));
  busy_->setBusy(isEnabled && services_.store.isRefreshingAgents());
  refresh_->setEnabled(isEnabled);
  header_->setSubtitle(
      agents.lastUpdated <= Date::distantPast()
          ? QString()
          : qtText(L10n::format(QM_TR("日志读取于 %@"), {clockText(agents.lastUpdated, services_.currentCalendar())})));
  showNotice(agents, isConnected);
  showFeedback();
  introduction_->setVisible(!isConnected);
  usage_->setVisible(state == AgentCardState::measured || state == AgentCardState::reading);
  ranges_->setVisible(!usage_->isHidden());
  if (isConnected) {
    showUsage(agents, range);
  } else {
    std::vector<std::string> names;
    for (const AgentLogProvider provider : connectableAgents(services_)) names.push_back(title(provider));
    introduction_->setFound(joinList(names, services_.conventions()));
  }
  table_->setRows(agentRows(services_, range), services_.clock.now());
}

// What the scan has to say. While nothing is connected the introduction says it.
void AgentsPage::showNotice(const AgentUsageSnapshot& agents, bool isConnected) {
  const auto status = agents.scanStatus;
  if (!status || !isConnected) return notice_->clear();
  const QString message = qtText(status->message(services_.conventions()));
  switch (status->kind) {
    case AgentScanStatus::Kind::missingAuthorization:
      notice_->setAction(qtText(QM_TR("去连接")), [this] { connectFound(); });
      break;
    case AgentScanStatus::Kind::monitoringDisabled:
      notice_->setAction(qtText(QM_TR("开启监控")), [this] { enableMonitoring(); });
      break;
    case AgentScanStatus::Kind::reading:
    case AgentScanStatus::Kind::incompleteLogs:
    case AgentScanStatus::Kind::noLogs:
      notice_->removeAction();
      break;
  }
  const bool isProblem = status->kind == AgentScanStatus::Kind::incompleteLogs;
  notice_->show(isProblem ? Notice::Kind::warning : Notice::Kind::information, message);
}

void AgentsPage::showFeedback() {
  const AgentAuthorizationCoordinator& authorization = services_.authorization;
  if (const auto progress = authorization.progressText()) {
    feedback_->show(Notice::Kind::information, qtText(*progress));
  } else if (const auto& feedback = authorization.feedback()) {
    feedback_->show(noticeKind(feedback->kind), qtText(feedback->message()));
  } else {
    feedback_->clear();
  }
}

void AgentsPage::showUsage(const AgentUsageSnapshot& agents, AgentUsageRange range) {
  totals_->setTitle(qtText(title(range)));
  const bool isKnown = agents.lastUpdated > Date::distantPast();
  totals_->setMetrics(isKnown ? std::optional(agents.metrics(range)) : std::nullopt);
  course_->setHeader("chart.bar.fill", named(quillmeter::tint(Kind::agentTokens)), qtText(courseTitle(range)));
  showUsageBars(*chart_, agents, range, services_);
}

// Settings are told from within whoever writes them, the manager of the grants among them, which a row asks.
void AgentsPage::refreshSoon() {
  if (!pending_) pending_ = services_.timers.once(0, [this] { refresh(); });
}

void AgentsPage::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!subscriptions_.empty()) return;
  subscriptions_.push_back(services_.store.onAgentsChange([this] { refreshSoon(); }));
  subscriptions_.push_back(
      services_.store.onActivityChange([this] { busy_->setBusy(services_.store.isRefreshingAgents()); }));
  subscriptions_.push_back(services_.authorization.onChange([this] { refreshSoon(); }));
  subscriptions_.push_back(services_.preferences.onChange(
      [this](const std::vector<std::string>&, PreferenceChangeOrigin) { refreshSoon(); }));
  refresh();
}

void AgentsPage::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  subscriptions_.clear();
  pending_.reset();
  if (!event->spontaneous() && !services_.authorization.isConnecting()) services_.authorization.clearFeedback();
}

void AgentsPage::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::LanguageChange) return;
  retranslate();
  refresh();
}

void AgentsPage::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  middle_->setDirection(width() >= sessionsBesideFrom ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
}

}  // namespace quillmeter
