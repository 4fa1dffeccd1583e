#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/PreferenceDomain.h"

namespace quillmeter {

class PreferenceStore;

// The language of the interface.
enum class AppLanguage { system, simplifiedChinese, english };

inline constexpr std::array<AppLanguage, 3> allAppLanguages = {AppLanguage::system, AppLanguage::simplifiedChinese,
                                                               AppLanguage::english};

// "system", "zh-Hans", "en": what is stored, and the language's id.
std::string_view rawValue(AppLanguage language);
std::optional<AppLanguage> appLanguageFromRawValue(std::string_view rawValue);
// Identifier of the locale that the interface takes: the user's own for `system`.
std::string localeIdentifier(AppLanguage language, std::string_view systemLocale);

// The stored choice; Simplified Chinese when there is none or it is no language.
AppLanguage selectedAppLanguage(const PreferenceStore& store);

// To be called when the user picked a language: mirrors it into the shared suite, where the widget reads it, then asks
// for the widget's reload. `sharedSuite` is null when the suite cannot be opened.
void didSelectAppLanguage(std::string_view rawValue, PreferenceDomain* sharedSuite,
                          const std::function<void()>& reloadWidgets);

}  // namespace quillmeter
