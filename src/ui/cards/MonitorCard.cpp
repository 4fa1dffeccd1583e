#include "ui/cards/MonitorCard.h"

#include <QEvent>
#include <QLayout>

#include "core/MonitorStore.h"
#include "ui/theme/QtText.h"

namespace quillmeter {

namespace {

constexpr int compactPadding = 12;
constexpr int compactSpacing = 8;

}  // namespace

CardForm cardForm(DashboardCardSize size, ComponentPlacement placement) {
  const bool small = size == DashboardCardSize::small;
  if (placement == ComponentPlacement::menuBar) return small ? CardForm::compact : CardForm::regular;
  return small ? CardForm::regular : CardForm::wide;
}

MonitorCard::MonitorCard(MonitorComponentKind kind, DashboardCardSize size, ComponentPlacement placement,
                         const UiServices& services, QWidget* parent)
    : Card(parent), kind_(kind), size_(size), placement_(placement), services_(services) {
  setObjectName(QStringLiteral("card.") + qtText(rawValue(kind)));
  if (form() != CardForm::compact) return;
  setPadding(compactPadding);
  layout()->setSpacing(compactSpacing);
}

void MonitorCard::name(QWidget* widget, const char* part) const {
  widget->setObjectName(objectName() + QLatin1Char('.') + QLatin1String(part));
}

void MonitorCard::prepare() {
  prepared_ = true;
  setHeader(std::string(symbol(kind_)), std::string(quillmeter::tint(kind_)), qtText(title(kind_)));
  retranslate();
  refresh();
  measure();
}

std::vector<Subscription> MonitorCard::subscribe(std::function<void()> changed) {
  std::vector<Subscription> subscriptions;
  subscriptions.push_back(services_.store.onSystemChange(std::move(changed)));
  return subscriptions;
}

// Layouts within layouts hear of a change only when the event loop turns, which is too late for who asks for the size
// now. Inner ones come after the outer ones in the list.
void MonitorCard::measure() {
  const QList<QWidget*> widgets = findChildren<QWidget*>();
  for (auto widget = widgets.rbegin(); widget != widgets.rend(); ++widget) {
    if (QLayout* inner = (*widget)->layout()) inner->activate();
  }
  layout()->activate();
}

void MonitorCard::showEvent(QShowEvent* event) {
  Card::showEvent(event);
  if (!subscriptions_.empty()) return;
  if (!prepared_) prepare();
  subscriptions_ = subscribe([this] { refresh(); });
  refresh();
}

void MonitorCard::hideEvent(QHideEvent* event) {
  Card::hideEvent(event);
  subscriptions_.clear();
}

void MonitorCard::changeEvent(QEvent* event) {
  Card::changeEvent(event);
  if (!prepared_) return;
  if (event->type() == QEvent::LanguageChange) prepare();
  if (event->type() == QEvent::PaletteChange) refresh();
}

}  // namespace quillmeter
