#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include <QWidget>

#include "access/model/AgentLogProvider.h"

class QCheckBox;
class QPushButton;

namespace quillmeter {

class FigureLabel;
class PathLabel;

// An agent that was found: whether it is to be connected with the others, where its logs lie, and its state or the
// button that connects it alone.
class FoundAgentRow : public QWidget {
 public:
  FoundAgentRow(AgentLogProvider provider, QWidget* parent);

  AgentLogProvider provider() const { return provider_; }
  bool isChosen() const;
  void setChosen(bool chosen);
  void setHandlers(std::function<void()> chosenChanged, std::function<void()> connect);
  // `granted` is absent for an agent that is not connected.
  void showState(const std::optional<std::filesystem::path>& granted, const std::filesystem::path& home, bool isBusy);
  void retranslate();

 private:
  void buildControls();

  AgentLogProvider provider_;
  bool isConnected_ = false;
  QCheckBox* chosen_ = nullptr;
  FigureLabel* name_ = nullptr;
  PathLabel* folder_ = nullptr;
  FigureLabel* state_ = nullptr;
  QPushButton* connect_ = nullptr;
};

}  // namespace quillmeter
