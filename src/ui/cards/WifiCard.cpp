#include "ui/cards/WifiCard.h"

#include <QVBoxLayout>

#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "core/model/NumberText.h"
#include "quickstatus/QuickStatusMonitor.h"
#include "ui/cards/FactList.h"
#include "ui/cards/LevelSteps.h"
#include "ui/theme/QtText.h"
#include "ui/theme/ThemeColors.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/SymbolView.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {

namespace {

constexpr int signalSteps = 4;
constexpr int symbolPoints = 22;
constexpr int tileColumns = 3;

// As desktops draw it: from about -55 dBm a link is as fast as it gets, below -80 dBm it breaks.
int signalLevel(int dBm) {
  if (dBm >= -55) return 4;
  if (dBm >= -67) return 3;
  if (dBm >= -75) return 2;
  return dBm >= -85 ? 1 : 0;
}

QString signalText(const QuickStatusSnapshot& quick) {
  return quick.wifiRSSI ? qtText(std::to_string(*quick.wifiRSSI) + " dBm") : QString();
}

QString rateText(const QuickStatusSnapshot& quick) {
  return quick.wifiRate ? qtText(fixedDecimalText(*quick.wifiRate, 0) + " Mbit/s") : QString();
}

}  // namespace

WifiCard::WifiCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services, QWidget* parent)
    : MonitorCard(MonitorComponentKind::wifi, size, placement, services, parent),
      symbol_(new SymbolView("questionmark", std::string(quillmeter::tint(kind())), symbolPoints, this)),
      title_(new FigureLabel(form() == CardForm::wide ? TextRole::heading : TextRole::strong, TextTone::primary, this)),
      bars_(new LevelSteps(signalSteps, LevelSteps::Shape::rising, this)) {
  name(title_, "title");
  name(bars_, "signal");
  const bool isCompact = form() == CardForm::compact;
  auto* row = new QHBoxLayout;
  row->setSpacing(10);
  if (!isCompact) row->addWidget(symbol_);
  row->addWidget(title_, 1);
  if (!isCompact) row->addWidget(bars_, 0, Qt::AlignBottom);
  content()->addLayout(row);
  if (isCompact) {
    auto* line = new QHBoxLayout;
    line->setSpacing(10);
    line->addWidget(symbol_, 0, Qt::AlignVCenter);
    line->addWidget(bars_, 0, Qt::AlignBottom);
    line->addStretch();
    content()->addLayout(line);
    note_ = new FigureLabel(TextRole::caption, TextTone::secondary, this);
    name(note_, "note");
    content()->addWidget(note_);
  } else {
    content()->addSpacing(6);
    buildFacts();
  }
  content()->addStretch();
}

void WifiCard::buildFacts() {
  facts_ = form() == CardForm::wide ? new FactList(this, tileColumns) : new FactList(this);
  power_ = facts_->add(QStringLiteral("card.wifi.power"));
  signal_ = facts_->add(QStringLiteral("card.wifi.rssi"));
  rate_ = facts_->add(QStringLiteral("card.wifi.rate"));
  address_ = facts_->add(QStringLiteral("card.wifi.address"));
  content()->addWidget(facts_);
}

void WifiCard::retranslate() {
  if (facts_ == nullptr) return;
  facts_->setLabel(power_, QStringLiteral("Wi-Fi"));
  facts_->setLabel(signal_, qtText(QM_TR("信号")));
  facts_->setLabel(rate_, qtText(QM_TR("速率")));
  facts_->setLabel(address_, qtText(QM_TR("本机地址")));
}

void WifiCard::refresh() {
  const QuickStatusSnapshot& quick = services().quickStatus.snapshot();
  symbol_->setSymbol(std::string(quick.networkSymbol()));
  const bool isOffline = quick.connection == QuickConnection::offline;
  const bool isKnown = quick.connection != QuickConnection::checking;
  symbol_->setTint(isKnown && !isOffline ? std::string(quillmeter::tint(kind())) : std::string());
  title_->setText(qtText(quick.networkTitle()));
  title_->setTone(isKnown ? TextTone::primary : TextTone::secondary);
  showSignal(quick);
  if (facts_ != nullptr) {
    showFacts(quick);
  } else {
    const QString rate = rateText(quick);
    note_->setText(rate.isEmpty() ? signalText(quick) : rate);
  }
}

void WifiCard::showSignal(const QuickStatusSnapshot& quick) {
  bars_->setVisible(quick.wifiRSSI.has_value());
  if (!quick.wifiRSSI) return;
  bars_->setLevel(signalLevel(*quick.wifiRSSI), ThemeColors::of(palette()).tint(quillmeter::tint(kind())));
  WidgetAccessibility::setName(*bars_, QStringLiteral("%1 %2").arg(qtText(QM_TR("信号")), signalText(quick)));
}

void WifiCard::showFacts(const QuickStatusSnapshot& quick) {
  // Where the title has said so already it is not said again.
  const bool isTold = quick.connection == QuickConnection::wifi || quick.networkSymbol() == "wifi.slash";
  const bool isImplied = !quick.wifiPowered || isTold;
  const std::string power = isImplied ? "" : *quick.wifiPowered ? QM_TR("已打开") : QM_TR("已关闭");
  facts_->setKnownValue(power_, qtText(power));
  facts_->setKnownValue(signal_, signalText(quick));
  facts_->setKnownValue(rate_, rateText(quick));
  const bool isConnected =
      quick.connection != QuickConnection::checking && quick.connection != QuickConnection::offline;
  facts_->setKnownValue(address_, isConnected ? qtText(services().store.system().networkIP) : QString());
}

std::vector<Subscription> WifiCard::subscribe(std::function<void()> changed) {
  std::vector<Subscription> subscriptions;
  subscriptions.push_back(services().quickStatus.onChange(changed));
  subscriptions.push_back(services().store.onSystemChange(std::move(changed)));
  return subscriptions;
}

}  // namespace quillmeter
