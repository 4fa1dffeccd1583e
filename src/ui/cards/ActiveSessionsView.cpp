#include "ui/cards/ActiveSessionsView.h"

#include <algorithm>
#include <cmath>

#include <QEvent>
#include <QVBoxLayout>

#include "agents/model/AgentUsageSnapshot.h"
#include "base/Clock.h"
#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "ui/cards/BusyIndicator.h"
#include "ui/cards/SessionLine.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/SymbolButton.h"

namespace quillmeter {

namespace {

constexpr double secondsPerMinute = 60;
constexpr double slackSeconds = 0.05;  // a timer may come a moment early

}  // namespace

ActiveSessionsView::ActiveSessionsView(const UiServices& services, int maximumLines, QWidget* parent)
    : QWidget(parent), services_(services), maximumLines_(maximumLines) {
  setObjectName(QStringLiteral("sessions"));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(8);
  buildHeader(column);
  lineColumn_ = new QVBoxLayout;
  lineColumn_->setSpacing(6);
  column->addLayout(lineColumn_);
  empty_ = new FigureLabel(TextRole::body, TextTone::secondary, this);
  empty_->setObjectName(QStringLiteral("sessions.empty"));
  column->addWidget(empty_);
  more_ = new FigureLabel(TextRole::caption, TextTone::secondary, this);
  more_->setObjectName(QStringLiteral("sessions.more"));
  column->addWidget(more_);
  retranslate();
  refresh();
}

ActiveSessionsView::~ActiveSessionsView() = default;

void ActiveSessionsView::buildHeader(QVBoxLayout* column) {
  title_ = new FigureLabel(TextRole::heading, TextTone::primary, this);
  count_ = new FigureLabel(TextRole::body, TextTone::secondary, this);
  count_->setObjectName(QStringLiteral("sessions.count"));
  busy_ = new BusyIndicator(services_.timers, this);
  refresh_ = new SymbolButton("arrow.clockwise", this);
  refresh_->setObjectName(QStringLiteral("sessions.refresh"));
  connect(refresh_, &SymbolButton::clicked, this, [this] { services_.store.refreshAgents(); });
  auto* row = new QHBoxLayout;
  row->setSpacing(8);
  row->addWidget(title_);
  row->addWidget(count_);
  row->addStretch();
  row->addWidget(busy_);
  row->addWidget(refresh_);
  column->addLayout(row);
}

void ActiveSessionsView::retranslate() {
  title_->setText(qtText(QM_TR("活跃会话")));
  empty_->setText(qtText(QM_TR("最近五分钟没有活跃会话")));
  refresh_->setDescription(qtText(QM_TR("重新扫描")));
  busy_->setDescription(qtText(QM_TR("正在读取本地 Agent 日志")));
}

void ActiveSessionsView::refresh() {
  const std::vector<AgentActivitySession> sessions = services_.store.agents().activeSessions(services_.clock.now());
  busy_->setBusy(services_.store.isRefreshingAgents());
  count_->setText(sessions.empty() ? QString() : QString::number(sessions.size()));
  empty_->setVisible(sessions.empty());
  showLines(sessions);
  waitForNextChange(sessions);
}

void ActiveSessionsView::showLines(const std::vector<AgentActivitySession>& sessions) {
  const Date now = services_.clock.now();
  const std::size_t most = maximumLines_ > 0 ? static_cast<std::size_t>(maximumLines_) : sessions.size();
  const std::size_t shown = std::min(sessions.size(), most);
  while (lines_.size() < shown) {
    lines_.push_back(new SessionLine(this));
    lineColumn_->addWidget(lines_.back());
  }
  for (std::size_t index = 0; index < lines_.size(); ++index) {
    if (index < shown) {
      lines_[index]->show(sessions[index], now);
    } else {
      lines_[index]->hide();
    }
  }
  more_->setText(sessions.size() > shown ? QStringLiteral("+%1").arg(sessions.size() - shown) : QString());
  more_->setVisible(sessions.size() > shown);
}

// The ages change with the sessions' own minutes, and at five of them a session is gone.
void ActiveSessionsView::waitForNextChange(const std::vector<AgentActivitySession>& sessions) {
  aging_.reset();
  if (sessions.empty() || !isVisible()) return;
  const Date now = services_.clock.now();
  double next = secondsPerMinute;
  for (const AgentActivitySession& session : sessions) {
    const double age = now.secondsSince(session.lastActivity);
    next = std::min(next, secondsPerMinute - std::fmod(age, secondsPerMinute));
  }
  aging_ = services_.timers.once(next + slackSeconds, [this] {
    const std::unique_ptr<Timer> ended = std::move(aging_);
    refresh();
  });
}

void ActiveSessionsView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!subscriptions_.empty()) return;
  subscriptions_.push_back(services_.store.onAgentsChange([this] { refresh(); }));
  subscriptions_.push_back(
      services_.store.onActivityChange([this] { busy_->setBusy(services_.store.isRefreshingAgents()); }));
  refresh();
}

void ActiveSessionsView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  subscriptions_.clear();
  aging_.reset();
}

void ActiveSessionsView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::LanguageChange) return;
  retranslate();
  refresh();
}

}  // namespace quillmeter
