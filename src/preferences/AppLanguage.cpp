#include "preferences/AppLanguage.h"

#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {

std::string_view rawValue(AppLanguage language) {
  return SettingsKeys::appLanguages[static_cast<std::size_t>(language)];
}

std::optional<AppLanguage> appLanguageFromRawValue(std::string_view text) {
  for (const AppLanguage language : allAppLanguages) {
    if (rawValue(language) == text) return language;
  }
  return std::nullopt;
}

std::string localeIdentifier(AppLanguage language, std::string_view systemLocale) {
  return std::string(language == AppLanguage::system ? systemLocale : rawValue(language));
}

AppLanguage selectedAppLanguage(const PreferenceStore& store) {
  return appLanguageFromRawValue(store.value(SettingsKeys::appLanguage)).value_or(AppLanguage::simplifiedChinese);
}

void didSelectAppLanguage(std::string_view rawValue, PreferenceDomain* sharedSuite,
                          const std::function<void()>& reloadWidgets) {
  // A widget that cannot be told keeps its language; nothing else depends on it.
  if (sharedSuite != nullptr) (void)sharedSuite->set(SettingsKeys::sharedLanguageKey, std::string(rawValue));
  if (reloadWidgets) reloadWidgets();
}

}  // namespace quillmeter
