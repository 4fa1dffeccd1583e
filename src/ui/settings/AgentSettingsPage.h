#pragma once

#include <optional>
#include <vector>

#include "platform/PreferenceDomain.h"
#include "ui/settings/AgentSettingRow.h"
#include "ui/settings/SettingsPage.h"

class QPushButton;

namespace quillmeter {

class Notice;
class SettingRow;
class SettingsGroup;

// Which agents are counted, and the folders they are read from. Never looks at a folder itself, which may take long:
// shows what the last scan found, and the stored grants.
class AgentSettingsPage final : public SettingsPage {
 public:
  AgentSettingsPage(const UiServices& services, QWidget* parent);

 protected:
  void retranslate() override;
  void refresh() override;
  std::vector<Subscription> subscribe(std::function<void()> changed) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void buildMaster();
  void buildAgents();
  AgentSettingRow::State stateOf(AgentLogProvider provider) const;
  AgentFolderState folderState(AgentLogProvider provider, bool isGranted) const;
  // Switched on and not connected: found, or connected once to a folder that was lost since.
  std::vector<AgentLogProvider> waitingAgents() const;
  void connectFolders(const std::vector<AgentLogProvider>& providers);
  void disconnectAgent(AgentLogProvider provider);
  void showWaiting();
  void showNotice();

  SettingsGroup* master_ = nullptr;
  SettingRow* masterRow_ = nullptr;
  ToggleSwitch* masterSwitch_ = nullptr;
  QPushButton* connectAll_ = nullptr;
  SettingRow* connectAllRow_ = nullptr;
  Notice* notice_ = nullptr;
  SettingsGroup* agents_ = nullptr;
  std::vector<AgentSettingRow*> rows_;
  std::optional<AgentLogProvider> notDisconnected_;  // the last one that could not be, until the next action
  PreferenceProblem disconnectProblem_;
};

}  // namespace quillmeter
