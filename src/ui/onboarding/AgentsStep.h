#pragma once

#include <functional>
#include <vector>

#include "access/model/AgentLogProvider.h"
#include "ui/onboarding/OnboardingStep.h"

class QPushButton;

namespace quillmeter {

class FoundAgentRow;
class Card;
class FigureLabel;
class Notice;

// The agents that were found on this machine, and how to let the program read their logs: one alone or the chosen ones
// one after another. No folder is asked for without a click.
class AgentsStep final : public OnboardingStep {
 public:
  AgentsStep(const UiServices& services, QWidget* parent);
  void retranslate() override;
  QWidget* firstControl() const override;

 protected:
  void refresh() override;
  std::vector<Subscription> subscribe(std::function<void()> changed) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void findAgents();
  void addAgent(AgentLogProvider provider);
  std::vector<AgentLogProvider> chosenAgents() const;
  void connectFolders(const std::vector<AgentLogProvider>& providers);
  void showState();
  void showSequence();

  Card* list_ = nullptr;
  std::vector<FoundAgentRow*> rows_;
  Paragraph* none_ = nullptr;
  QPushButton* connectAll_ = nullptr;
  FigureLabel* progress_ = nullptr;
  Notice* feedback_ = nullptr;
};

}  // namespace quillmeter
