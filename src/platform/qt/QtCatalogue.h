#pragma once

#include <string_view>

namespace quillmeter {

// The interface languages that have texts.
inline constexpr std::string_view simplifiedChineseLanguage = "zh-Hans";
inline constexpr std::string_view englishLanguage = "en";

// Makes L10n answer in a language: "zh-Hans" are the message ids as they stand, "en" the catalogue compiled into this
// library (data/i18n/quillmeter_en.ts). False, and nothing changed, for any other. Main thread; may be called again
// when the user picks another language.
bool installCatalogue(std::string_view language);

// The interface language that fits the user's locale (LC_ALL, LC_MESSAGES, LANG): "zh-Hans" for any Chinese, else "en".
std::string_view systemLanguage();

}  // namespace quillmeter
