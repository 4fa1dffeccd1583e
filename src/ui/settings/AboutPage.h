#pragma once

#include "ui/settings/SettingsPage.h"

class QPushButton;

namespace quillmeter {

class FigureLabel;
class SettingRow;
class SettingsGroup;

// What the program is and reads, its version and whether there is a newer one, its licence.
class AboutPage final : public SettingsPage {
 public:
  AboutPage(const UiServices& services, QWidget* parent);

 protected:
  void retranslate() override;
  void refresh() override;
  std::vector<Subscription> subscribe(std::function<void()> changed) override;

 private:
  void buildHead();
  void buildUpdate();
  void buildPrivacy();
  void buildMore();
  void openDownload();

  FigureLabel* version_ = nullptr;
  Paragraph* tagline_ = nullptr;
  SettingsGroup* update_ = nullptr;
  SettingRow* updateRow_ = nullptr;
  QPushButton* check_ = nullptr;
  QWidget* news_ = nullptr;
  Paragraph* notes_ = nullptr;
  QPushButton* download_ = nullptr;
  SettingsGroup* privacy_ = nullptr;
  std::vector<Paragraph*> facts_;
  SettingsGroup* more_ = nullptr;
  SettingRow* onboardingRow_ = nullptr;
  QPushButton* onboarding_ = nullptr;
  SettingRow* licenceRow_ = nullptr;
  FigureLabel* licence_ = nullptr;
};

}  // namespace quillmeter
