#include "ui/cards/AgentTokensCard.h"

#include <QEvent>
#include <QVBoxLayout>

#include "base/Clock.h"
#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "core/model/MetricFormatter.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "ui/AppActions.h"
#include "ui/cards/AgentCardState.h"
#include "ui/cards/BusyIndicator.h"
#include "ui/cards/ConnectPrompt.h"
#include "ui/cards/FactList.h"
#include "ui/cards/MiniBars.h"
#include "ui/cards/ScanMessageLine.h"
#include "ui/cards/UsageBars.h"
#include "ui/cards/UsageRange.h"
#include "ui/theme/QtText.h"
#include "ui/theme/Typography.h"
#include "ui/widgets/BarChart.h"
#include "ui/widgets/Chooser.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/SegmentedControl.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {

namespace {

constexpr int largeFactsWidth = 168;
constexpr int panelChartHeight = 124;
constexpr int miniBarsHeight = 34;
constexpr int headerHeight = 28;

}  // namespace

AgentTokensCard::AgentTokensCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services,
                                 QWidget* parent)
    : MonitorCard(MonitorComponentKind::agentTokens, size, placement, services, parent),
      usage_(new QWidget(this)),
      prompt_(new ConnectPrompt(
          form() == CardForm::compact, objectName(), [&actions = services.actions] { actions.showSettings("agents"); },
          this)) {
  buildHeader();
  buildFacts();
  if (isLarge()) {
    buildLargeUsage();
  } else if (form() == CardForm::compact) {
    buildCompactUsage();
  } else {
    buildUsage();
  }
  fitToText();
  content()->addWidget(usage_, 1);
  content()->addWidget(prompt_);
  if (form() == CardForm::compact) return;
  message_ = new ScanMessageLine(
      objectName(), [&actions = services.actions] { actions.showSettings("agents"); }, this);
  content()->addWidget(message_);
}

void AgentTokensCard::buildHeader() {
  busy_ = new BusyIndicator(services().timers, this);
  name(busy_, "scanning");
  if (!isLarge()) return;
  if (form() == CardForm::wide) {
    ranges_ = new SegmentedControl(this);
    name(ranges_, "range");
    ranges_->setHandler([this](const std::string& id) { chooseUsageRange(this->services(), id); });
    addHeaderControl(ranges_);
  } else {
    // Beside the title the panel has no room for three segments.
    rangeField_ = new Chooser(this);
    name(rangeField_, "range");
    rangeField_->setHandler([this](const std::string& id) { chooseUsageRange(this->services(), id); });
    addHeaderControl(rangeField_);
  }
}

void AgentTokensCard::buildFacts() {
  total_ = new FigureLabel(isLarge() ? TextRole::largeFigure : TextRole::figure, TextTone::primary, usage_);
  name(total_, "total");
  if (form() == CardForm::compact) return;
  facts_ = new FactList(usage_);
  input_ = facts_->add(QStringLiteral("card.agentTokens.input"));
  output_ = facts_->add(QStringLiteral("card.agentTokens.output"));
  cached_ = facts_->add(QStringLiteral("card.agentTokens.cached"));
  hits_ = facts_->add(QStringLiteral("card.agentTokens.hitRate"));
}

void AgentTokensCard::buildCompactUsage() {
  miniBars_ = new MiniBars(usage_);
  miniBars_->setTint(std::string(quillmeter::tint(kind())));
  rangeName_ = new FigureLabel(TextRole::caption, TextTone::secondary, usage_);
  auto* row = new QHBoxLayout;
  row->setSpacing(6);
  row->addWidget(total_);
  row->addWidget(busy_);
  row->addStretch();
  row->addWidget(rangeName_);
  auto* column = new QVBoxLayout(usage_);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(6);
  column->addLayout(row);
  column->addWidget(miniBars_, 1);
}

void AgentTokensCard::buildUsage() {
  miniBars_ = new MiniBars(usage_);
  miniBars_->setTint(std::string(quillmeter::tint(kind())));
  miniBars_->setFixedHeight(miniBarsHeight);
  auto* row = new QHBoxLayout;
  row->setSpacing(8);
  row->addWidget(total_);
  row->addWidget(busy_);
  row->addWidget(miniBars_, 1);
  auto* column = new QVBoxLayout(usage_);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(8);
  column->addLayout(row);
  column->addWidget(facts_);
  column->addStretch();
}

// Two columns in the dashboard; in the panel the chart stands below the figures.
void AgentTokensCard::buildLargeUsage() {
  chart_ = new BarChart(usage_);
  chart_->setTint(std::string(quillmeter::tint(kind())));
  name(chart_, "chart");
  const bool isWide = form() == CardForm::wide;
  auto* top = new QHBoxLayout;
  top->setSpacing(8);
  top->addWidget(total_);
  top->addWidget(busy_);
  auto* figures = isWide ? static_cast<QBoxLayout*>(new QVBoxLayout) : new QHBoxLayout;
  figures->setSpacing(isWide ? 10 : 16);
  figures->addLayout(top);
  figures->addWidget(facts_, isWide ? 0 : 1);
  if (isWide) {
    top->addStretch();
    figures->addStretch();
    chart_->setScaleText(
        [](double value) { return qtText(MetricFormatter::tokens(static_cast<std::int64_t>(value))); });
  } else {
    chart_->setFixedHeight(panelChartHeight);
  }
  auto* layout = isWide ? static_cast<QBoxLayout*>(new QHBoxLayout(usage_)) : new QVBoxLayout(usage_);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(isWide ? 24 : 12);
  layout->addLayout(figures);
  layout->addWidget(chart_, 1);
}

// What has a size of its own, chosen for the text in it.
void AgentTokensCard::fitToText() {
  if (rangeField_ != nullptr) rangeField_->setFixedHeight(lengthForText(headerHeight));
  if (facts_ != nullptr && form() == CardForm::wide) facts_->setFixedWidth(lengthForText(largeFactsWidth));
}

void AgentTokensCard::changeEvent(QEvent* event) {
  MonitorCard::changeEvent(event);
  if (event->type() == QEvent::FontChange) fitToText();
}

void AgentTokensCard::retranslate() {
  busy_->setDescription(qtText(QM_TR("正在读取本地 Agent 日志")));
  retranslateRanges();
  if (facts_ != nullptr) {
    facts_->setLabel(input_, qtText(QM_TR("输入")));
    facts_->setLabel(output_, qtText(QM_TR("输出")));
    facts_->setLabel(cached_, qtText(QM_TR("缓存")));
    facts_->setLabel(hits_, qtText(QM_TR("缓存命中")));
  }
  if (message_ != nullptr) message_->setActionTitle(qtText(QM_TR("去连接")));
}

void AgentTokensCard::retranslateRanges() {
  std::vector<SegmentedControl::Segment> segments = usageRangeSegments();
  if (rangeField_ != nullptr) {
    std::vector<Chooser::Choice> choices;
    for (SegmentedControl::Segment& each : segments) choices.push_back({std::move(each.id), std::move(each.title)});
    rangeField_->setChoices(std::move(choices));
    rangeField_->setAccessibleName(qtText(QM_TR("统计范围")));
  } else if (ranges_ != nullptr) {
    ranges_->setSegments(std::move(segments));
    ranges_->setAccessibleName(qtText(QM_TR("统计范围")));
  }
}

void AgentTokensCard::refresh() {
  const AgentUsageSnapshot& agents = services().store.agents();
  const bool isEnabled = services().preferences.value(SettingsKeys::tokenMonitoringEnabled);
  const AgentCardState state = agentCardState(agents, isEnabled);
  const bool isMeasured = state == AgentCardState::measured || state == AgentCardState::reading;
  const AgentUsageRange range = chosenUsageRange(services());
  showBusy();
  usage_->setVisible(isMeasured);
  showRange(range, isMeasured);
  if (isMeasured) {
    prompt_->hide();
    showUsage(agents, range);
  } else {
    showPrompt(state != AgentCardState::disabled);
  }
  showMessage(agents);
}

void AgentTokensCard::showBusy() {
  const bool isEnabled = services().preferences.value(SettingsKeys::tokenMonitoringEnabled);
  busy_->setBusy(isEnabled && services().store.isRefreshingAgents());
}

void AgentTokensCard::showRange(AgentUsageRange range, bool isMeasured) {
  const std::string chosen(rawValue(range));
  if (ranges_ != nullptr) {
    ranges_->setVisible(isMeasured);
    ranges_->setChosen(chosen);
  } else if (rangeField_ != nullptr) {
    rangeField_->setVisible(isMeasured);
    rangeField_->setChosen(chosen);
  } else if (rangeName_ != nullptr) {
    rangeName_->setText(qtText(title(range)));
  } else {
    setHeaderNote(isMeasured ? qtText(title(range)) : QString());
  }
}

void AgentTokensCard::showPrompt(bool isEnabled) {
  if (isEnabled) {
    prompt_->show(qtText(QM_TR("连接 Agent 后显示 Token 用量")), qtText(QM_TR("连接 Agent")));
  } else {
    prompt_->show(qtText(QM_TR("Agent Token 监控已关闭")), qtText(QM_TR("打开设置")));
  }
}

void AgentTokensCard::showUsage(const AgentUsageSnapshot& agents, AgentUsageRange range) {
  const AgentTokenMetrics& metrics = agents.metrics(range);
  const bool isKnown = agents.lastUpdated > Date::distantPast();
  const auto text = [isKnown](std::int64_t count) {
    return isKnown ? qtText(MetricFormatter::tokens(count)) : QStringLiteral("—");
  };
  total_->setText(text(metrics.totalTokens));
  WidgetAccessibility::setName(*total_, QStringLiteral("%1 %2 Token").arg(qtText(title(range)), total_->text()));
  if (facts_ != nullptr) {
    facts_->setValue(input_, text(metrics.inputTokens));
    facts_->setValue(output_, text(metrics.outputTokens));
    facts_->setValue(cached_, text(metrics.cachedTokens));
    const auto hitRate = metrics.cacheHitRate();
    if (form() == CardForm::wide) {
      facts_->setValue(hits_, hitRate ? qtText(MetricFormatter::percent(*hitRate)) : QStringLiteral("—"));
    }
  }
  showBars(agents, range);
}

void AgentTokensCard::showBars(const AgentUsageSnapshot& agents, AgentUsageRange range) {
  if (chart_ != nullptr) return showUsageBars(*chart_, agents, range, services());
  const std::vector<AgentUsageBucket>& buckets = agents.buckets(range);
  std::vector<double> values;
  for (const AgentUsageBucket& bucket : buckets) values.push_back(static_cast<double>(bucket.metrics.totalTokens));
  miniBars_->setValues(std::move(values), currentBucket(buckets, services().clock.now()));
}

// Where there is no room for the sentence it is the card's tooltip.
void AgentTokensCard::showMessage(const AgentUsageSnapshot& agents) {
  const bool isShown = !usage_->isHidden() && agents.scanStatus.has_value();
  const QString text = isShown ? qtText(*agents.scanMessage(services().conventions())) : QString();
  if (message_ != nullptr) {
    message_->show(isShown ? agents.scanStatus : std::nullopt, text);
  } else if (toolTip() != text) {
    setToolTip(text);
    setAccessibleDescription(text);
  }
}

std::vector<Subscription> AgentTokensCard::subscribe(std::function<void()> changed) {
  std::vector<Subscription> subscriptions;
  subscriptions.push_back(services().store.onAgentsChange(changed));
  subscriptions.push_back(services().store.onActivityChange([this] { showBusy(); }));
  subscriptions.push_back(services().preferences.onChange(
      [changed = std::move(changed)](const std::vector<std::string>&, PreferenceChangeOrigin) { changed(); }));
  return subscriptions;
}

}  // namespace quillmeter
