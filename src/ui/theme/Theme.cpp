#include "ui/theme/Theme.h"

#include <algorithm>
#include <memory>

#include <QFont>
#include <QStyle>
#include <QStyleHints>
#include <QToolTip>

#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "ui/theme/QuillStyle.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter {
namespace {

// The desktop's font, followed by those that know Simplified Chinese: without them the toolkit may take hanzi from a
// font made for another language. Where no desktop chose a font, a harmonious pair goes first.
QFont interfaceFont(QFont font) {
  const QStringList chinese{QStringLiteral("Noto Sans CJK SC"), QStringLiteral("Source Han Sans SC"),
                            QStringLiteral("WenQuanYi Micro Hei")};
  static constexpr const char* generic[] = {"", "sans", "sans serif", "sans-serif", "system-ui"};
  const QString family = font.family();
  const bool isGeneric = std::any_of(std::begin(generic), std::end(generic), [&family](const char* name) {
    return family.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
  });
  if (isGeneric) {
    constexpr double usualPoints = 10;
    font.setPointSizeF(std::max(usualPoints, font.pointSizeF()));
    font.setFamilies(chinese + QStringList{QStringLiteral("Noto Sans"), QStringLiteral("sans-serif")});
  } else {
    font.setFamilies(QStringList{family} + chinese);
  }
  return font;
}

}  // namespace

void Theme::installStyle() {
  QApplication::setStyle(new QuillStyle);
}

Theme::Theme(QApplication& application, PreferenceStore& preferences, DesktopAppearance& appearance)
    : application_(application), preferences_(preferences), appearance_(appearance) {
  if (dynamic_cast<QuillStyle*>(QApplication::style()) == nullptr) installStyle();
  QApplication::setFont(interfaceFont(QApplication::font()));
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
