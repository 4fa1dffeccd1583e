#pragma once

#include <filesystem>
#include <functional>

#include <QWidget>

#include "access/model/AgentLogProvider.h"

class QPushButton;

namespace quillmeter {

class FigureLabel;
class PathLabel;
class ToggleSwitch;

// What is known of an agent's folder without a look at it.
enum class AgentFolderState { connected, found, notFound, unusable };

// One agent on the settings page: what it is, where its folder is and in which state, the buttons that connect it, and
// whether it is counted.
class AgentSettingRow final : public QWidget {
 public:
  struct Handlers {
    std::function<void()> connect;
    std::function<void()> disconnect;
    std::function<void(bool)> enable;
  };
  struct State {
    AgentFolderState folderState = AgentFolderState::notFound;
    std::filesystem::path folder;  // granted or expected
    std::filesystem::path home;
    bool isEnabled = false;
    bool canSwitch = true;   // the switch of all is on
    bool canConnect = true;  // no picker is open
  };

  AgentSettingRow(AgentLogProvider provider, Handlers handlers, QWidget* parent = nullptr);
  AgentLogProvider provider() const { return provider_; }
  void show(const State& state);
  using QWidget::show;
  void retranslate();

 private:
  QPushButton* addButton(const QString& name, std::function<void()> clicked);
  void showFolderState(AgentFolderState state);

  const AgentLogProvider provider_;
  const Handlers handlers_;
  FigureLabel* title_;
  FigureLabel* state_;
  PathLabel* folder_;
  QPushButton* connect_;
  QPushButton* change_;
  QPushButton* disconnect_;
  ToggleSwitch* switch_;
};

}  // namespace quillmeter
