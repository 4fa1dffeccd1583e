#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <tl/expected.hpp>

#include "platform/PreferenceDomain.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {

// Settings as a user types and reads them. Booleans are "true" and "false" ("on", "off", "yes", "no", "1", "0" are
// understood), numbers are decimal with a point, layouts are their JSON.

// The value that `text` stands for, or one sentence that says what the setting takes.
tl::expected<PreferenceValue, std::string> parseSettingText(const SettingsKeys::AnySetting& setting,
                                                            std::string_view text);
std::string settingText(const PreferenceValue& value);

// "string", "bool", "integer", "double", "data", "any"
std::string_view settingTypeName(const SettingsKeys::AnySetting& setting);
// The default of the row; absent for those that have none.
std::optional<PreferenceValue> settingDefault(const SettingsKeys::AnySetting& setting);

// One sentence for the user on what went wrong with the settings.
std::string localizedDescription(const PreferenceProblem& problem);

}  // namespace quillmeter
