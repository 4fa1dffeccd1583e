#include "ui/cards/AgentLimitsCard.h"

#include <QVBoxLayout>

#include "base/Clock.h"
#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "ui/AppActions.h"
#include "ui/cards/AgentCardState.h"
#include "ui/cards/ConnectPrompt.h"
#include "ui/cards/LimitMeter.h"
#include "ui/theme/QtText.h"

namespace quillmeter {

namespace {

constexpr double slackSeconds = 0.05;  // a timer may come a moment early, the minute would still be the old one
constexpr std::int64_t microsecondsPerMinute = 60 * Date::microsecondsPerSecond;

}  // namespace

AgentLimitsCard::AgentLimitsCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services,
                                 QWidget* parent)
    : MonitorCard(MonitorComponentKind::agentLimits, size, placement, services, parent),
      meters_(new QWidget(this)),
      prompt_(new ConnectPrompt(
          form() == CardForm::compact, objectName(), [&actions = services.actions] { actions.showSettings("agents"); },
          this)) {
  buildMeters();
  content()->addWidget(meters_, form() == CardForm::wide ? 1 : 0);
  content()->addWidget(prompt_);
  if (form() != CardForm::wide) content()->addStretch();
}

AgentLimitsCard::~AgentLimitsCard() = default;

void AgentLimitsCard::buildMeters() {
  const std::string hex(quillmeter::tint(kind()));
  primary_ = new LimitMeter(form(), hex, QStringLiteral("card.agentLimits.primary"), meters_);
  weekly_ = new LimitMeter(form(), hex, QStringLiteral("card.agentLimits.weekly"), meters_);
  QBoxLayout* layout =
      form() == CardForm::wide ? static_cast<QBoxLayout*>(new QHBoxLayout(meters_)) : new QVBoxLayout(meters_);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(form() == CardForm::wide ? 24 : form() == CardForm::regular ? 14 : 10);
  layout->addWidget(primary_, 1);
  layout->addWidget(weekly_, 1);
}

void AgentLimitsCard::retranslate() {
  primary_->setTitle(qtText(QM_TR("5 小时")));
  weekly_->setTitle(qtText(QM_TR("一周")));
}

void AgentLimitsCard::refresh() {
  const AgentUsageSnapshot& agents = services().store.agents();
  const bool hasLimits = agents.primaryLimitUsed || agents.weeklyLimitUsed;
  meters_->setVisible(hasLimits);
  if (hasLimits) {
    prompt_->hide();
    showMeters();
  } else {
    showPrompt();
  }
  showAge(hasLimits);
  tickWithMinute();
}

void AgentLimitsCard::showMeters() {
  const AgentUsageSnapshot& agents = services().store.agents();
  const Date now = services().clock.now();
  const Calendar calendar = services().currentCalendar();
  primary_->show(agents.primaryLimitUsed, agents.primaryResetAt, now, calendar);
  weekly_->show(agents.weeklyLimitUsed, agents.weeklyResetAt, now, calendar);
}

void AgentLimitsCard::showAge(bool hasLimits) {
  const std::optional<Date> observed = hasLimits ? services().store.agents().limitsObservedAt : std::nullopt;
  const std::optional<std::string> age =
      observed ? std::optional(ageText(*observed, services().clock.now())) : std::nullopt;
  const QString text = age ? qtText(L10n::format(QM_TR("额度记录时间：%@"), {*age})) : QString();
  if (form() != CardForm::compact) setHeaderNote(age ? qtText(*age) : QString());
  if (toolTip() == text) return;
  setToolTip(text);
  setAccessibleDescription(text);
}

void AgentLimitsCard::showPrompt() {
  const bool isEnabled = services().preferences.value(SettingsKeys::tokenMonitoringEnabled);
  switch (codexCardState(services().store.agents(), isEnabled)) {
    case AgentCardState::disabled:
      prompt_->show(qtText(QM_TR("Agent Token 监控已关闭")), qtText(QM_TR("打开设置")));
      break;
    case AgentCardState::reading:
      prompt_->show(qtText(QM_TR("正在读取本地 Agent 日志")), {});
      break;
    case AgentCardState::notConnected:
      prompt_->show(qtText(QM_TR("连接 Codex 后显示它的使用额度")), qtText(L10n::format(QM_TR("连接 %@"), {"Codex"})));
      break;
    case AgentCardState::measured:
      prompt_->show(qtText(QM_TR("Codex 日志中暂无使用额度记录")), {});
      break;
  }
}

// Runs only while there is something that goes on.
void AgentLimitsCard::tickWithMinute() {
  const AgentUsageSnapshot& agents = services().store.agents();
  const bool goesOn = isVisible() && (agents.primaryLimitUsed || agents.weeklyLimitUsed);
  if (!goesOn) {
    minute_.reset();
    return;
  }
  if (minute_) return;
  const std::int64_t intoMinute = services().clock.now().microseconds % microsecondsPerMinute;
  const double left = static_cast<double>(microsecondsPerMinute - intoMinute) / Date::microsecondsPerSecond;
  minute_ = services().timers.once(left + slackSeconds, [this] {
    const std::unique_ptr<Timer> ended = std::move(minute_);
    refresh();
  });
}

void AgentLimitsCard::hideEvent(QHideEvent* event) {
  MonitorCard::hideEvent(event);
  minute_.reset();
}

std::vector<Subscription> AgentLimitsCard::subscribe(std::function<void()> changed) {
  std::vector<Subscription> subscriptions;
  subscriptions.push_back(services().preferences.onChange(
      [changed](const std::vector<std::string>&, PreferenceChangeOrigin) { changed(); }));
  subscriptions.push_back(services().store.onAgentsChange(std::move(changed)));
  return subscriptions;
}

}  // namespace quillmeter
