#pragma once

#include <functional>
#include <vector>

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
  void refresh() override;
  std::vector<Subscription> subscribe(std::function<void()> changed) override;

 private:
  void buildFeatures();
  void buildLanguage();

  std::vector<Paragraph*> features_;
  SegmentedControl* language_ = nullptr;
};

}  // namespace quillmeter
