#pragma once

#include <string>
#include <vector>

#include "menubar/model/CompactIconOptions.h"
#include "menubar/model/MenuBarStyle.h"
#include "ui/settings/SettingsPage.h"

namespace quillmeter {

class Chooser;
class MenuBarStyleChooser;
class SettingRow;
class SettingsGroup;
class SliderField;
class SymbolChooser;

// How the item in the panel looks: the style, by pictures of the present figures, and the options that the chosen style
// has. Others are hidden.
class MenuBarPage final : public SettingsPage {
 public:
  MenuBarPage(const UiServices& services, QWidget* parent);

 protected:
  void retranslate() override;
  void refresh() override;
  std::vector<Subscription> subscribe(std::function<void()> changed) override;

 private:
  void buildStyles();
  void buildMetric();
  void buildOptions();
  void buildSymbols();
  void connectSliders();
  void showOptions(MenuBarStyle style);
  void showPictures();
  QString points(double value, int fractionDigits) const;
  // As stored, but for the slider that is being dragged.
  CompactIconOptions shownOptions() const;

  MenuBarStyleChooser* styles_ = nullptr;
  Paragraph* styleText_ = nullptr;
  SettingsGroup* metricGroup_ = nullptr;
  Chooser* metric_ = nullptr;
  SettingRow* metricRow_ = nullptr;
  SettingsGroup* options_ = nullptr;
  SliderField* size_ = nullptr;
  SettingRow* sizeRow_ = nullptr;
  SliderField* stroke_ = nullptr;
  SettingRow* strokeRow_ = nullptr;
  ToggleSwitch* color_ = nullptr;
  SettingRow* colorRow_ = nullptr;
  ToggleSwitch* arc_ = nullptr;
  SettingRow* arcRow_ = nullptr;
  ToggleSwitch* audio_ = nullptr;
  SettingRow* audioRow_ = nullptr;
  SettingsGroup* symbolGroup_ = nullptr;
  SymbolChooser* symbols_ = nullptr;
};

}  // namespace quillmeter
