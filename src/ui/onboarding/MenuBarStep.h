#pragma once

#include <functional>
#include <vector>

#include "ui/onboarding/OnboardingStep.h"

namespace quillmeter {

class MenuBarStyleChooser;

// How the item in the panel looks, chosen by pictures of the present figures.
class MenuBarStep final : public OnboardingStep {
 public:
  MenuBarStep(const UiServices& services, QWidget* parent);
  void retranslate() override;
  QWidget* firstControl() const override;

 protected:
  void refresh() override;
  std::vector<Subscription> subscribe(std::function<void()> changed) override;

 private:
  void showChoice();
  void showPictures();

  MenuBarStyleChooser* styles_ = nullptr;
  Paragraph* styleText_ = nullptr;
};

}  // namespace quillmeter
