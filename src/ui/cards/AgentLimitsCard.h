#pragma once

#include <memory>

#include "platform/TimerFactory.h"
#include "ui/cards/MonitorCard.h"

namespace quillmeter {

class ConnectPrompt;
class LimitMeter;

// The two rate-limit windows of Codex with the time to their reset, which goes on with the minute of the clock while
// the card is visible.
class AgentLimitsCard : public MonitorCard {
 public:
  AgentLimitsCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services, QWidget* parent);
  ~AgentLimitsCard() override;

 protected:
  void refresh() override;
  std::vector<Subscription> subscribe(std::function<void()> changed) override;
  void retranslate() override;
  void hideEvent(QHideEvent* event) override;

 private:
  void buildMeters();
  void showMeters();
  void showAge(bool hasLimits);
  void showPrompt();
  void tickWithMinute();

  LimitMeter* primary_ = nullptr;
  LimitMeter* weekly_ = nullptr;
  QWidget* meters_;
  ConnectPrompt* prompt_;
  std::unique_ptr<Timer> minute_;
};

}  // namespace quillmeter
