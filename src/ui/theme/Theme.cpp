#include "ui/theme/Theme.h"

#include <algorithm>
#include <memory>

#include <QStyle>
#include <QStyleHints>
#include <QToolTip>

#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "ui/theme/QuillStyle.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter {

void Theme::installStyle() {
  QApplication::setStyle(new QuillStyle);
}

Theme::Theme(QApplication& application, PreferenceStore& preferences, DesktopAppearance& appearance)
    : application_(application), preferences_(preferences), appearance_(appearance) {
  if (dynamic_cast<QuillStyle*>(QApplication::style()) == nullptr) installStyle();
  settingChanges_ = preferences_.onChange([this](const std::vector<std::string>& keys, PreferenceChangeOrigin) {
    if (std::find(keys.begin(), keys.end(), SettingsKeys::appTheme.key) != keys.end()) apply();
  });
  appearance_.setChangeHandler([this] { apply(); });
  apply();
}

Theme::~Theme() {
  appearance_.setChangeHandler({});
}

void Theme::apply() {
  const AppearancePreferences desktop = appearance_.current();
  const std::string choice = preferences_.value(SettingsKeys::appTheme);
  const bool isDark = choice == "dark" || (choice == "system" && desktop.dark);
  font_.follow(desktop.fontName, desktop.textScale);
  if (auto* style = dynamic_cast<QuillStyle*>(QApplication::style())) style->setReducedMotion(desktop.reducedMotion);
  const ThemeColors& colors = ThemeColors::of(isDark, desktop.highContrast);
  // Setting a palette visits every widget; most changes of the desktop's preferences are none to us.
  if (!isApplied_ || &ThemeColors::of(application_.palette()) != &colors) {
    isApplied_ = true;
    QApplication::setPalette(colors.palette());
    QPalette floating = colors.palette();
    floating.setColor(QPalette::Window, colors.floating);
    QApplication::setPalette(floating, "QMenu");
    QToolTip::setPalette(floating);
  }
  observers_.notify();
}

int motionMilliseconds(int usual) {
  return QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) == 0 ? 0 : usual;
}

}  // namespace quillmeter
