#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Observers.h"
#include "platform/PreferenceDomain.h"
#include "preferences/Setting.h"
#include "ui/UiServices.h"
#include "ui/widgets/ScrollPage.h"

namespace quillmeter {

class Paragraph;
class SegmentedControl;
class ToggleSwitch;

// A page of the settings window: a title and groups below it. While it is visible it shows what is stored, whoever
// stored it; a choice of the user is stored at once, and the control goes back when that fails. Owned by the window,
// made when it is first shown.
class SettingsPage : public ScrollPage {
 public:
  static constexpr int widestColumn = 600;

  SettingsPage(const UiServices& services, QWidget* parent);

 protected:
  // Sets every text in the present language; called by the constructor's last step, too.
  virtual void retranslate() = 0;
  // Shows the services' present state in what is not bound to a setting.
  virtual void refresh() {}
  // What the page is about besides the settings, each calling `changed`.
  virtual std::vector<Subscription> subscribe(std::function<void()> changed);

  const UiServices& services() const { return services_; }
  void setPageTitle(const QString& title);
  // Stores a choice; tells the user when that fails, and shows what is stored then.
  bool store(std::string_view key, PreferenceValue value);
  // Keeps a control and a setting the same. A stored text that is no segment shows as the setting's default.
  void bind(ToggleSwitch* control, const BooleanSetting& setting);
  void bind(SegmentedControl* control, const StringSetting& setting);
  // Tab goes through the page as it is read. Once for what is there; controls that come or move later are chained anew.
  void chainFocus();
  // Bound controls, then refresh().
  void showStored();

  bool event(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  const UiServices& services_;
  Paragraph* title_;
  std::vector<std::function<void()>> bindings_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmeter
