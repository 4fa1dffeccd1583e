#include "ui/cards/NetworkCard.h"

#include <QGridLayout>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "ui/cards/FactList.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/Sparkline.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {

namespace {

constexpr int arrowSpacing = 6;
constexpr int historyHeight = 44;
constexpr int wideHistoryHeight = 72;
constexpr int sectionSpacing = 24;

}  // namespace

NetworkCard::NetworkCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services,
                         QWidget* parent)
    : MonitorCard(MonitorComponentKind::network, size, placement, services, parent), history_(new Sparkline(this)) {
  name(history_, "history");
  history_->setTint(std::string(quillmeter::tint(kind())));
  const bool isCompact = form() == CardForm::compact;
  QBoxLayout* row = isCompact ? static_cast<QBoxLayout*>(new QVBoxLayout) : new QHBoxLayout;
  row->setSpacing(isCompact ? 6 : form() == CardForm::wide ? sectionSpacing : 14);
  auto* rates = new QGridLayout;
  rates->setHorizontalSpacing(arrowSpacing);
  rates->setVerticalSpacing(isCompact ? 2 : 6);
  rates->setColumnStretch(2, 1);
  down_ = addRate(rates, "↓", "down");
  up_ = addRate(rates, "↑", "up");
  row->addLayout(rates);
  if (isCompact) history_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  if (form() == CardForm::wide) history_->setFixedHeight(wideHistoryHeight);
  if (form() == CardForm::regular) history_->setFixedHeight(historyHeight);
  row->addWidget(history_, 1);
  content()->addLayout(row, 1);
  if (isCompact) return;
  facts_ = new FactList(this);
  address_ = facts_->add(QStringLiteral("card.network.address"));
  content()->addWidget(facts_);
}

NetworkCard::Rate NetworkCard::addRate(QGridLayout* grid, const char* arrow, const char* part) {
  const bool isWide = form() == CardForm::wide;
  const int row = grid->count() == 0 ? 0 : 1;
  auto* sign = new FigureLabel(TextRole::strong, TextTone::secondary, this);
  sign->setText(QString::fromUtf8(arrow));
  sign->setTint(std::string(quillmeter::tint(kind())));
  grid->addWidget(sign, row, 0);
  Rate rate;
  if (isWide) {
    rate.label = new FigureLabel(TextRole::body, TextTone::secondary, this);
    grid->addWidget(rate.label, row, 1);
  }
  rate.value = new FigureLabel(isWide ? TextRole::figure : TextRole::strong, TextTone::primary, this);
  rate.value->setWidestText(QStringLiteral("1023.9 MB/s"));
  if (isWide) rate.value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  name(rate.value, part);
  grid->addWidget(rate.value, row, 2);
  return rate;
}

void NetworkCard::retranslate() {
  if (facts_ != nullptr) facts_->setLabel(address_, qtText(QM_TR("本机地址")));
}

void NetworkCard::show(const Rate& rate, const QString& name, const std::string& value) {
  if (rate.label != nullptr) rate.label->setText(name);
  rate.value->setText(qtText(value));
  WidgetAccessibility::setName(*rate.value, QStringLiteral("%1 %2").arg(name, rate.value->text()));
}

void NetworkCard::refresh() {
  const SystemSnapshot& system = services().store.system();
  show(down_, qtText(QM_TR("下载")), system.downloadSpeed);
  show(up_, qtText(QM_TR("上传")), system.uploadSpeed);
  history_->setValues(services().store.networkHistory().values());
  if (facts_ != nullptr) facts_->setValue(address_, qtText(system.networkIP));
}

}  // namespace quillmeter
