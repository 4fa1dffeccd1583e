#pragma once

#include <vector>

#include "base/Observers.h"
#include "preferences/DashboardCardConfig.h"
#include "ui/UiServices.h"
#include "ui/widgets/Card.h"

namespace quillmeter {

// How much room a card has: half the panel's width, one column, two columns.
enum class CardForm { compact, regular, wide };

CardForm cardForm(DashboardCardSize size, ComponentPlacement placement);

// The card of one component, in the dashboard or the popover. It reads the services and shows them; it hears their
// changes only while it is visible, and paints only what changed. Texts are looked up anew on a change of language.
class MonitorCard : public Card {
 public:
  MonitorCard(MonitorComponentKind kind, DashboardCardSize size, ComponentPlacement placement,
              const UiServices& services, QWidget* parent);
  MonitorComponentKind kind() const { return kind_; }
  DashboardCardSize size() const { return size_; }
  CardForm form() const { return cardForm(size_, placement_); }
  // Sets every text and value, so that the size is known before the card is shown.
  void prepare();

 protected:
  // Shows the services' present values; called when shown, after each change of what subscribe() named, and on a
  // change of language or palette.
  virtual void refresh() = 0;
  // The changes this card is about, each calling `changed`: the samples of the machine, unless it is about others.
  virtual std::vector<Subscription> subscribe(std::function<void()> changed);
  // The texts that no value changes; before refresh().
  virtual void retranslate() {}
  const UiServices& services() const { return services_; }
  // Names a part "card.cpu.<part>".
  void name(QWidget* widget, const char* part) const;

  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void measure();

  const MonitorComponentKind kind_;
  const DashboardCardSize size_;
  const ComponentPlacement placement_;
  const UiServices& services_;
  bool prepared_ = false;
  std::vector<Subscription> subscriptions_;
};

// The card of a component; `services` outlives it.
MonitorCard* makeMonitorCard(const DashboardCardConfig& config, ComponentPlacement placement,
                             const UiServices& services, QWidget* parent);

}  // namespace quillmeter
