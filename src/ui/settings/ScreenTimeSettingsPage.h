#pragma once

#include "ui/settings/SettingsPage.h"

class QPushButton;

namespace quillmeter {

class Notice;
class PathLabel;
class SettingRow;
class SettingsGroup;

// The switch of the screen-time record, how it is doing, where it is kept, and how it is removed.
class ScreenTimeSettingsPage final : public SettingsPage {
 public:
  ScreenTimeSettingsPage(const UiServices& services, QWidget* parent);

 protected:
  void retranslate() override;
  void refresh() override;
  std::vector<Subscription> subscribe(std::function<void()> changed) override;

 private:
  void buildRecording();
  void buildRecord();
  void showError();
  void askToClear();

  SettingsGroup* recording_ = nullptr;
  SettingRow* switchRow_ = nullptr;
  ToggleSwitch* switch_ = nullptr;
  Notice* error_ = nullptr;
  SettingsGroup* record_ = nullptr;
  SettingRow* openRow_ = nullptr;
  QPushButton* open_ = nullptr;
  SettingRow* placeRow_ = nullptr;
  PathLabel* place_ = nullptr;
  SettingRow* clearRow_ = nullptr;
  QPushButton* clear_ = nullptr;
};

}  // namespace quillmeter
