#include "ui/popover/PopoverFooter.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "base/Clock.h"
#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "core/model/MetricFormatter.h"
#include "ui/AppActions.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/Paragraph.h"
#include "ui/widgets/SymbolButton.h"

namespace quillmeter {

PopoverFooter::PopoverFooter(const UiServices& services, QWidget* parent) : QWidget(parent), services_(services) {
  setObjectName("popover.footer");
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(16, 10, 12, 10);
  column->setSpacing(6);
  message_ = new Paragraph(TextRole::caption, TextTone::secondary, this);
  message_->setObjectName("popover.message");
  column->addWidget(message_);
  age_ = new FigureLabel(TextRole::caption, TextTone::secondary, this);
  age_->setObjectName("popover.age");
  buildButtons();
  auto* row = new QHBoxLayout;
  row->setSpacing(4);
  row->addWidget(age_, 1);
  for (SymbolButton* button : {refresh_, settings_, dashboard_}) row->addWidget(button);
  column->addLayout(row);
  retranslate();
}

void PopoverFooter::buildButtons() {
  refresh_ = new SymbolButton("arrow.clockwise", this);
  refresh_->setObjectName("popover.refresh");
  connect(refresh_, &SymbolButton::clicked, this, [this] { services_.store.refreshAll(); });
  settings_ = new SymbolButton("gearshape", this);
  settings_->setObjectName("popover.settings");
  connect(settings_, &SymbolButton::clicked, this, [this] {
    window()->close();
    services_.actions.showSettings();
  });
  dashboard_ = new SymbolButton("square.grid.2x2", this);
  dashboard_->setObjectName("popover.dashboard");
  connect(dashboard_, &SymbolButton::clicked, this, [this] {
    window()->close();
    services_.actions.showDashboard();
  });
}

void PopoverFooter::retranslate() {
  refresh_->setDescription(qtText(QM_TR("立即刷新")));
  settings_->setDescription(qtText(QM_TR("设置…")));
  dashboard_->setText(qtText(QM_TR("仪表盘")));
  dashboard_->setAccessibleName(qtText(QM_TR("打开仪表盘")));
  refresh();
}

void PopoverFooter::refresh() {
  const AgentUsageSnapshot& agents = services_.store.agents();
  const auto message = agents.scanMessage(services_.conventions());
  const QString text = message ? qtText(*message) : QString();
  if (message_->text() != text) message_->setText(text);
  message_->setVisible(!text.isEmpty());
  const bool wasScanned = agents.lastUpdated != Date::distantPast();
  const std::string age = MetricFormatter::relative(agents.lastUpdated, services_.clock.now());
  age_->setText(wasScanned ? qtText(L10n::format(QM_TR("%@更新"), {age})) : QString());
}

void PopoverFooter::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!subscriptions_.empty()) return;
  // The age grows with the samples, without a timer of its own.
  subscriptions_.push_back(services_.store.onSystemChange([this] { refresh(); }));
  subscriptions_.push_back(services_.store.onAgentsChange([this] { refresh(); }));
  refresh();
}

void PopoverFooter::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  subscriptions_.clear();
}

void PopoverFooter::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) retranslate();
}

}  // namespace quillmeter
