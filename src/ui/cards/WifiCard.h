#pragma once

#include "ui/cards/MonitorCard.h"

namespace quillmeter {

struct QuickStatusSnapshot;

class FactList;
class FigureLabel;
class LevelSteps;
class SymbolView;

// What connects the machine, and how well where that is Wi-Fi.
class WifiCard : public MonitorCard {
 public:
  WifiCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services, QWidget* parent);

 protected:
  void refresh() override;
  std::vector<Subscription> subscribe(std::function<void()> changed) override;
  void retranslate() override;

 private:
  void buildFacts();
  void showSignal(const QuickStatusSnapshot& quick);
  void showFacts(const QuickStatusSnapshot& quick);

  SymbolView* symbol_;
  FigureLabel* title_;
  LevelSteps* bars_;
  FigureLabel* note_ = nullptr;  // in the compact form
  FactList* facts_ = nullptr;
  int power_ = 0;
  int signal_ = 0;
  int rate_ = 0;
  int address_ = 0;
};

}  // namespace quillmeter
