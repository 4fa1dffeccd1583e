#include "ui/onboarding/MenuBarStep.h"

#include <string>
#include <utility>

#include <QGridLayout>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "menubar/model/CompactIconOptions.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "quickstatus/QuickStatusMonitor.h"
#include "ui/settings/MenuBarStylePictures.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/Paragraph.h"

namespace quillmeter {
namespace {

constexpr std::array<MenuBarStyle, 4> styles = {MenuBarStyle::systemTrio, MenuBarStyle::resourceTrio,
                                                MenuBarStyle::metrics, MenuBarStyle::symbol};

}  // namespace

MenuBarStep::MenuBarStep(const UiServices& services, QWidget* parent) : OnboardingStep(services, parent) {
  setObjectName("onboarding.menuBar");
  auto* grid = new QGridLayout;
  grid->setSpacing(14);
  for (std::size_t index = 0; index < styles.size(); ++index) {
    const MenuBarStyle style = styles[index];
    auto* tile = new MenuBarStyleTile(style, this);
    tile->setObjectName("onboarding.style." + qtText(rawValue(style)));
    QObject::connect(tile, &QAbstractButton::clicked, this,
                     [this, style] { store(SettingsKeys::menuBarStyle.key, std::string(rawValue(style))); });
    grid->addWidget(tile, static_cast<int>(index) / 2, static_cast<int>(index) % 2);
    tiles_[index] = tile;
  }
  content()->addLayout(grid);
  styleText_ = new Paragraph(TextRole::caption, TextTone::secondary, this);
  styleText_->setAlignment(Qt::AlignHCenter);
  content()->addWidget(styleText_);
  content()->addStretch(1);
  MenuBarStep::retranslate();
}

void MenuBarStep::retranslate() {
  setHeading(qtText(QM_TR("选择图标样式")), qtText(QM_TR("它一直在系统托盘里，以后可以在设置里更改。")));
  for (MenuBarStyleTile* tile : tiles_) {
    tile->setText(qtText(MenuBarStylePictures::title(tile->style())));
    tile->setAccessibleName(tile->text());
    tile->setAccessibleDescription(qtText(MenuBarStylePictures::text(tile->style())));
  }
  showChoice();
}

void MenuBarStep::showChoice() {
  const MenuBarStyle chosen = chosenMenuBarStyle(services().preferences);
  for (MenuBarStyleTile* tile : tiles_) {
    if (tile->style() == chosen) tile->setChecked(true);
  }
  styleText_->setText(qtText(MenuBarStylePictures::text(chosen)));
}

void MenuBarStep::showPictures() {
  const CompactIconOptions options = CompactIconOptions::stored(services().preferences);
  for (MenuBarStyleTile* tile : tiles_)
    tile->show(MenuBarStylePictures::picture(tile->style(), services(), options, devicePixelRatioF()));
}

QWidget* MenuBarStep::firstControl() const {
  for (MenuBarStyleTile* tile : tiles_) {
    if (tile->isChecked()) return tile;
  }
  return nullptr;
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
