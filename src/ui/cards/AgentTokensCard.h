#pragma once

#include "agents/model/AgentUsageSnapshot.h"
#include "ui/cards/MonitorCard.h"

namespace quillmeter {

class BarChart;
class BusyIndicator;
class Chooser;
class ConnectPrompt;
class FactList;
class FigureLabel;
class MiniBars;
class ScanMessageLine;
class SegmentedControl;

// Tokens of the range that the user looks at, with their course by hour or day and what the scan has to say. Without
// anything to count it says why and leads to the settings.
class AgentTokensCard : public MonitorCard {
 public:
  AgentTokensCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services, QWidget* parent);

 protected:
  void refresh() override;
  std::vector<Subscription> subscribe(std::function<void()> changed) override;
  void retranslate() override;
  void changeEvent(QEvent* event) override;

 private:
  bool isLarge() const { return size() == DashboardCardSize::large; }
  void buildHeader();
  void buildFacts();
  void buildUsage();
  void buildCompactUsage();
  void buildLargeUsage();
  void retranslateRanges();
  void fitToText();
  void showBusy();
  void showRange(AgentUsageRange range, bool isMeasured);
  void showPrompt(bool isEnabled);
  void showUsage(const AgentUsageSnapshot& agents, AgentUsageRange range);
  void showBars(const AgentUsageSnapshot& agents, AgentUsageRange range);
  void showMessage(const AgentUsageSnapshot& agents);

  BusyIndicator* busy_ = nullptr;
  SegmentedControl* ranges_ = nullptr;  // in the wide form
  Chooser* rangeField_ = nullptr;       // in the panel's large card
  QWidget* usage_;
  FigureLabel* total_ = nullptr;
  FigureLabel* rangeName_ = nullptr;  // in the compact form
  FactList* facts_ = nullptr;
  int input_ = 0;
  int output_ = 0;
  int cached_ = 0;
  int hits_ = 0;
  MiniBars* miniBars_ = nullptr;
  BarChart* chart_ = nullptr;
  ScanMessageLine* message_ = nullptr;
  ConnectPrompt* prompt_;
};

}  // namespace quillmeter
