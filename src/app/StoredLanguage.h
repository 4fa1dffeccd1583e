#pragma once

#include <string>

namespace quillmeter {

class PreferenceStore;

// The chosen interface language ("zh-Hans", "en"); the system's, where the user chose that.
std::string interfaceLanguage(const PreferenceStore& preferences);
// Of the settings as they are stored, for what is said before anything else is there.
std::string storedLanguage();

}  // namespace quillmeter
