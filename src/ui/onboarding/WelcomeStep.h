#pragma once

#include <vector>

#include "base/Observers.h"
#include "ui/UiServices.h"
#include "ui/onboarding/OnboardingStep.h"

namespace quillmeter {

class SegmentedControl;

// What the program shows, and in which language.
class WelcomeStep final : public OnboardingStep {
 public:
  WelcomeStep(const UiServices& services, QWidget* parent);
  void retranslate() override;
  QWidget* firstControl() const override;

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void buildFeatures();
  void buildLanguage();
  void showLanguage();

  const UiServices services_;
  std::vector<Paragraph*> features_;
  SegmentedControl* language_ = nullptr;
  Subscription settingChanges_;
};

}  // namespace quillmeter
