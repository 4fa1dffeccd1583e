#pragma once

#include <array>
#include <vector>

#include "base/Observers.h"
#include "ui/UiServices.h"
#include "ui/onboarding/OnboardingStep.h"

namespace quillmeter {

class MenuBarStyleTile;

// How the item in the panel looks, chosen by pictures of the present figures.
class MenuBarStep final : public OnboardingStep {
 public:
  MenuBarStep(const UiServices& services, QWidget* parent);
  void retranslate() override;
  QWidget* firstControl() const override;

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void showChoice();
  void showPictures();

  const UiServices services_;
  std::array<MenuBarStyleTile*, 4> tiles_{};
  Paragraph* styleText_ = nullptr;
  std::vector<Subscription> changes_;
};

}  // namespace quillmeter
