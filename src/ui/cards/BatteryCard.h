#pragma once

#include "ui/cards/MonitorCard.h"

namespace quillmeter {

class GaugeBody;
class SymbolView;

// The battery: level in the colour of its urgency, what it does and for how long, and what is known of its age. A
// machine without one says so.
class BatteryCard : public MonitorCard {
 public:
  BatteryCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services, QWidget* parent);

 protected:
  void refresh() override;
  void retranslate() override;

 private:
  void showFacts();

  GaugeBody* body_;
  SymbolView* power_;
  int time_ = 0;
  int cycles_ = 0;
  int temperature_ = 0;
  int health_ = 0;
  int capacity_ = 0;
};

}  // namespace quillmeter
