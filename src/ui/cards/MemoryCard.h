#pragma once

#include "ui/cards/MonitorCard.h"

namespace quillmeter {

class GaugeBody;
class Paragraph;
class SweepOverlay;
class SymbolButton;

// Memory in use and what it is used for, with a button that cleans the program's own caches. A sweep runs over the card
// meanwhile; what came of it is said afterwards. In the compact form that takes the place of the course, for as long as
// the card stays visible.
class MemoryCard : public MonitorCard {
 public:
  MemoryCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services, QWidget* parent);

 protected:
  void refresh() override;
  std::vector<Subscription> subscribe(std::function<void()> changed) override;
  void retranslate() override;
  void hideEvent(QHideEvent* event) override;

 private:
  void showCleanup();

  GaugeBody* body_;
  SymbolButton* clean_;
  Paragraph* message_;
  SweepOverlay* sweep_;
  bool sawCleanup_ = false;
  int app_ = 0;
  int wired_ = 0;
  int compressed_ = 0;
};

}  // namespace quillmeter
