#pragma once

#include "ui/onboarding/OnboardingStep.h"

namespace quillmeter {

class Notice;
class SettingRow;
class SettingsGroup;
class ToggleSwitch;

// The last step: whether the program starts at login, and where it is found from now on.
class FinishStep final : public OnboardingStep {
 public:
  FinishStep(const UiServices& services, QWidget* parent);
  void retranslate() override;

 protected:
  void refresh() override;

 private:
  void setLoginItem(bool on);

  SettingsGroup* group_ = nullptr;
  ToggleSwitch* login_ = nullptr;
  SettingRow* loginRow_ = nullptr;
  Notice* failure_ = nullptr;
};

}  // namespace quillmeter
