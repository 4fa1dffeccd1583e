#pragma once

#include <optional>
#include <string>

#include "ui/settings/SettingsPage.h"

namespace quillmeter {

class Notice;
class SettingRow;
class SettingsGroup;

// Appearance, language, how often the machine is sampled, and where the program shows and when it starts.
class GeneralPage final : public SettingsPage {
 public:
  GeneralPage(const UiServices& services, QWidget* parent);

 protected:
  void retranslate() override;
  void refresh() override;
  void hideEvent(QHideEvent* event) override;

 private:
  void buildAppearance();
  void buildSampling();
  void buildPresence();
  void showInterval();
  void showLoginItem();
  void setLaunchAtLogin(bool on);
  void setDockIcon(bool visible);
  std::string secondsText(double seconds) const;

  SettingsGroup* appearance_ = nullptr;
  SegmentedControl* theme_ = nullptr;
  SettingRow* themeRow_ = nullptr;
  SegmentedControl* language_ = nullptr;
  SettingRow* languageRow_ = nullptr;
  SettingsGroup* sampling_ = nullptr;
  SegmentedControl* interval_ = nullptr;
  std::optional<double> otherSeconds_;  // a stored interval that is none of the offered ones
  SettingRow* intervalRow_ = nullptr;
  SettingsGroup* presence_ = nullptr;
  ToggleSwitch* loginItem_ = nullptr;
  SettingRow* loginItemRow_ = nullptr;
  ToggleSwitch* dock_ = nullptr;
  SettingRow* dockRow_ = nullptr;
  Notice* loginItemFailure_ = nullptr;
  Notice* dockFailure_ = nullptr;
};

}  // namespace quillmeter
