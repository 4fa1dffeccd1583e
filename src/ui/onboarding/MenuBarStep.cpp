#include "ui/onboarding/MenuBarStep.h"

#include <string>
#include <utility>

#include <QVBoxLayout>

#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "menubar/model/CompactIconOptions.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "quickstatus/QuickStatusMonitor.h"
#include "ui/settings/MenuBarStyleChooser.h"
#include "ui/settings/MenuBarStylePictures.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/Paragraph.h"

namespace quillmeter {
namespace {

constexpr std::array<MenuBarStyle, MenuBarStyleChooser::count> styles = {
    MenuBarStyle::systemTrio, MenuBarStyle::resourceTrio, MenuBarStyle::metrics, MenuBarStyle::symbol};

}  // namespace

MenuBarStep::MenuBarStep(const UiServices& services, QWidget* parent) : OnboardingStep(services, parent) {
  setObjectName("onboarding.menuBar");
  styles_ = new MenuBarStyleChooser(styles, "onboarding.style");
  styles_->setHandler(
      [this](MenuBarStyle style) { store(SettingsKeys::menuBarStyle.key, std::string(rawValue(style))); });
  content()->addWidget(styles_);
  styleText_ = new Paragraph(TextRole::caption, TextTone::secondary, this);
  styleText_->setAlignment(Qt::AlignHCenter);
  content()->addWidget(styleText_);
  content()->addStretch(1);
  MenuBarStep::retranslate();
}

void MenuBarStep::retranslate() {
  setHeading(qtText(QM_TR("选择图标样式")), qtText(QM_TR("它一直在系统托盘里，以后可以在设置里更改。")));
  styles_->retranslate();
  showChoice();
}

void MenuBarStep::showChoice() {
  const MenuBarStyle chosen = chosenMenuBarStyle(services().preferences);
  styles_->setChosen(chosen);
  styleText_->setText(qtText(MenuBarStylePictures::text(chosen)));
}

void MenuBarStep::showPictures() {
  styles_->showPictures(services(), CompactIconOptions::stored(services().preferences));
}

QWidget* MenuBarStep::firstControl() const {
  return styles_;
}

std::vector<Subscription> MenuBarStep::subscribe(std::function<void()> changed) {
  std::vector<Subscription> subscriptions;
  subscriptions.push_back(services().store.onSystemChange([this] { showPictures(); }));
  subscriptions.push_back(services().quickStatus.onChange([this] { showPictures(); }));
  subscriptions.push_back(services().preferences.onChange(
      [changed = std::move(changed)](const std::vector<std::string>&, PreferenceChangeOrigin) { changed(); }));
  return subscriptions;
}

void MenuBarStep::refresh() {
  showChoice();
  showPictures();
}

}  // namespace quillmeter
