#pragma once

#include <memory>
#include <vector>

#include <QWidget>

#include "agents/model/AgentUsageSnapshot.h"
#include "base/Observers.h"
#include "platform/TimerFactory.h"
#include "ui/UiServices.h"

class QBoxLayout;

namespace quillmeter {

class AgentTable;
class AgentsIntroduction;
class BarChart;
class BusyIndicator;
class Card;
class Notice;
class PageHeader;
class ScrollPage;
class SegmentedControl;
class SymbolButton;
class UsageTotals;

// The agents' token usage of today, this week or this month: totals, their course, the sessions that are active, and
// every agent with its state and figures. Hears changes while it is visible.
class AgentsPage : public QWidget {
 public:
  explicit AgentsPage(const UiServices& services, QWidget* parent = nullptr);
  ~AgentsPage() override;

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void buildHeader();
  void buildCards();
  void retranslate();
  void refresh();
  void refreshSoon();
  void showNotice(const AgentUsageSnapshot& agents, bool isConnected);
  void showFeedback();
  void showUsage(const AgentUsageSnapshot& agents, AgentUsageRange range);
  void connectFound();
  void enableMonitoring();

  const UiServices& services_;
  PageHeader* header_ = nullptr;
  BusyIndicator* busy_ = nullptr;
  SegmentedControl* ranges_ = nullptr;
  SymbolButton* refresh_ = nullptr;
  ScrollPage* scroll_ = nullptr;
  Notice* notice_ = nullptr;
  Notice* feedback_ = nullptr;
  AgentsIntroduction* introduction_ = nullptr;
  QWidget* usage_ = nullptr;
  UsageTotals* totals_ = nullptr;
  QBoxLayout* middle_ = nullptr;
  Card* course_ = nullptr;
  BarChart* chart_ = nullptr;
  Card* list_ = nullptr;
  AgentTable* table_ = nullptr;
  std::vector<Subscription> subscriptions_;
  std::unique_ptr<Timer> pending_;
};

}  // namespace quillmeter
