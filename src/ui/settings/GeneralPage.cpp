#include "ui/settings/GeneralPage.h"

#include <algorithm>
#include <array>
#include <charconv>

#include <QtWidgets/QVBoxLayout>

#include "base/L10n.h"
#include "preferences/AppLanguage.h"
#include "preferences/DockVisibilityManager.h"
#include "preferences/LaunchAtLoginManager.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/Notice.h"
#include "ui/widgets/SegmentedControl.h"
#include "ui/widgets/SettingsGroup.h"
#include "ui/widgets/ToggleSwitch.h"

namespace quillmeter {

namespace {

constexpr std::array<double, 4> offeredSeconds = {1, 2, 5, 10};

// The shortest text that reads back as the same number; also the id of a segment.
std::string numberText(double number) {
  std::array<char, 32> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
  return {buffer.data(), result.ptr};
}

}  // namespace

GeneralPage::GeneralPage(const UiServices& services, QWidget* parent) : SettingsPage(services, parent) {
  setObjectName("settings.general");
  buildAppearance();
  buildSampling();
  buildPresence();
  column()->addStretch(1);
  GeneralPage::retranslate();
}

void GeneralPage::buildAppearance() {
  appearance_ = new SettingsGroup(this);
  theme_ = new SegmentedControl;
  theme_->setObjectName("settings.general.theme");
  themeRow_ = appearance_->addRow(theme_);
  bind(theme_, SettingsKeys::appTheme);
  language_ = new SegmentedControl;
  language_->setObjectName("settings.general.language");
  languageRow_ = appearance_->addRow(language_);
  bind(language_, SettingsKeys::appLanguage);
  column()->addWidget(appearance_);
}

void GeneralPage::buildSampling() {
  sampling_ = new SettingsGroup(this);
  interval_ = new SegmentedControl;
  interval_->setObjectName("settings.general.refreshInterval");
  interval_->setHandler([this](const std::string& id) {
    double seconds = 0;
    std::from_chars(id.data(), id.data() + id.size(), seconds);
    store(SettingsKeys::refreshInterval.key, seconds);
  });
  intervalRow_ = sampling_->addRow(interval_);
  column()->addWidget(sampling_);
}

void GeneralPage::buildPresence() {
  presence_ = new SettingsGroup(this);
  loginItem_ = new ToggleSwitch;
  loginItem_->setObjectName("settings.general.launchAtLogin");
  connect(loginItem_, &QAbstractButton::clicked, this, [this](bool on) { setLaunchAtLogin(on); });
  loginItemRow_ = presence_->addRow(loginItem_);
  dock_ = new ToggleSwitch;
  dock_->setObjectName("settings.general.showInDock");
  connect(dock_, &QAbstractButton::clicked, this, [this](bool on) { setDockIcon(on); });
  dockRow_ = presence_->addRow(dock_);
  column()->addWidget(presence_);
  loginItemFailure_ = new Notice(this);
  loginItemFailure_->setObjectName("settings.general.launchAtLoginFailure");
  column()->addWidget(loginItemFailure_);
  dockFailure_ = new Notice(this);
  dockFailure_->setObjectName("settings.general.showInDockFailure");
  column()->addWidget(dockFailure_);
}

void GeneralPage::retranslate() {
  setPageTitle(qtText(QM_TR("通用")));
  appearance_->setTitle(qtText(QM_TR("外观")));
  themeRow_->setTitle(qtText(QM_TR("主题")));
  theme_->setSegments(
      {{"light", qtText(QM_TR("浅色"))}, {"system", qtText(QM_TR("跟随系统"))}, {"dark", qtText(QM_TR("深色"))}});
  languageRow_->setTitle(qtText(QM_TR("语言")));
  // Each language in its own words, so that everybody finds the way back.
  language_->setSegments({{std::string(rawValue(AppLanguage::system)), qtText(QM_TR("跟随系统"))},
                          {std::string(rawValue(AppLanguage::simplifiedChinese)), QStringLiteral("简体中文")},
                          {std::string(rawValue(AppLanguage::english)), QStringLiteral("English")}});
  sampling_->setTitle(qtText(QM_TR("采样")));
  sampling_->setFootnote(qtText(QM_TR("间隔越短，数值越及时，耗电也略多。")));
  intervalRow_->setTitle(qtText(QM_TR("刷新间隔")));
  presence_->setTitle(qtText(QM_TR("启动与显示")));
  loginItemRow_->setTitle(qtText(QM_TR("开机自启")));
  dockRow_->setTitle(qtText(QM_TR("在 Dock 中显示图标")));
  dockRow_->setSubtitle(qtText(QM_TR("关闭后只在菜单栏显示")));
  if (!dockFailure_->text().isEmpty()) {
    dockFailure_->show(Notice::Kind::error, qtText(DockVisibilityManager::failureText()));
  }
}

void GeneralPage::refresh() {
  showInterval();
  showLoginItem();
  dock_->setChecked(DockVisibilityManager::isDockIconVisible(services().preferences));
}

// A period that the page does not offer was set elsewhere; it stays a choice as long as the page is shown.
void GeneralPage::showInterval() {
  const double shortest = offeredSeconds.front();  // a shorter one samples no faster
  const double stored = std::max(services().preferences.value(SettingsKeys::refreshInterval), shortest);
  std::vector<double> choices(offeredSeconds.begin(), offeredSeconds.end());
  if (std::ranges::find(choices, stored) == choices.end()) otherSeconds_ = stored;
  if (otherSeconds_) choices.insert(std::ranges::upper_bound(choices, *otherSeconds_), *otherSeconds_);
  std::vector<SegmentedControl::Segment> segments;
  for (const double seconds : choices) segments.push_back({numberText(seconds), qtText(secondsText(seconds))});
  interval_->setSegments(std::move(segments));
  interval_->setChosen(numberText(stored));
}

std::string GeneralPage::secondsText(double seconds) const {
  std::string number = numberText(seconds);
  if (const auto point = number.find('.'); point != std::string::npos) {
    number.replace(point, 1, services().conventions().decimalSeparator);
  }
  return L10n::format(QM_TR("%@ 秒"), {number});
}

void GeneralPage::showLoginItem() {
  const LaunchAtLoginState state = LaunchAtLoginManager::state(services().loginItems);
  loginItem_->setChecked(LaunchAtLoginManager::isChosen(state));
  loginItem_->setEnabled(state != LaunchAtLoginState::unsupported);
  loginItemRow_->setSubtitle(qtText(LaunchAtLoginManager::hint(state).value_or("")));
}

void GeneralPage::setLaunchAtLogin(bool on) {
  const auto done = LaunchAtLoginManager::setEnabled(on, services().loginItems, services().preferences);
  if (done) {
    loginItemFailure_->clear();
  } else {
    loginItemFailure_->show(Notice::Kind::error, qtText(done.error().errorDescription()));
  }
  showLoginItem();
}

void GeneralPage::setDockIcon(bool visible) {
  if (DockVisibilityManager::setDockIconVisible(visible, services().activation, services().preferences)) {
    dockFailure_->clear();
  } else {
    dockFailure_->show(Notice::Kind::error, qtText(DockVisibilityManager::failureText()));
  }
  refresh();
}

// What failed on the last visit is no news on the next one.
void GeneralPage::hideEvent(QHideEvent* event) {
  loginItemFailure_->clear();
  dockFailure_->clear();
  otherSeconds_.reset();
  SettingsPage::hideEvent(event);
}

}  // namespace quillmeter
