#pragma once

#include <memory>
#include <vector>

#include <QWidget>

#include "base/Observers.h"
#include "platform/TimerFactory.h"
#include "ui/UiServices.h"

class QVBoxLayout;

namespace quillmeter {

class BusyIndicator;
class FigureLabel;
class SessionLine;
class SymbolButton;
struct AgentActivitySession;

// The sessions of the agents that were active in the last five minutes, newest first, with a button that scans again.
// Hears changes while it is visible; sessions leave the list as they grow old.
class ActiveSessionsView : public QWidget {
 public:
  // At most so many lines, then "+N"; 0 shows all.
  ActiveSessionsView(const UiServices& services, int maximumLines, QWidget* parent = nullptr);
  ~ActiveSessionsView() override;

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void buildHeader(QVBoxLayout* column);
  void retranslate();
  void refresh();
  void showLines(const std::vector<AgentActivitySession>& sessions);
  void waitForNextChange(const std::vector<AgentActivitySession>& sessions);

  const UiServices& services_;
  const int maximumLines_;
  FigureLabel* title_ = nullptr;
  FigureLabel* count_ = nullptr;
  BusyIndicator* busy_ = nullptr;
  SymbolButton* refresh_ = nullptr;
  FigureLabel* empty_ = nullptr;
  FigureLabel* more_ = nullptr;
  QVBoxLayout* lineColumn_ = nullptr;
  std::vector<SessionLine*> lines_;
  std::vector<Subscription> subscriptions_;
  std::unique_ptr<Timer> aging_;
};

}  // namespace quillmeter
