#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/PreferenceDomain.h"

namespace quillmeter {

// One stored value: its own text in the file, and what it means; absent for a shape that this program does not write.
struct JsonPreferenceEntry {
  std::optional<PreferenceValue> value;
  std::string text;
  friend bool operator==(const JsonPreferenceEntry&, const JsonPreferenceEntry&) = default;
};

using JsonPreferenceEntries = std::map<std::string, JsonPreferenceEntry, std::less<>>;

// The JSON text of a value; absent when it has none (a number that is not finite, text that is not UTF-8).
std::optional<JsonPreferenceEntry> makeJsonPreferenceEntry(const PreferenceValue& value);
// Whether a text can be a key: it is UTF-8.
bool isJsonPreferenceKey(std::string_view key);

// Reads a preference file: one JSON object, nested at most 512 deep; of a key that occurs twice the last value holds.
// Absent when it is anything else. Values keep their text, so that what is not ours is written back byte for byte.
std::optional<JsonPreferenceEntries> parseJsonPreferences(std::string_view text);
// One line a key, in the order of the keys.
std::string serializeJsonPreferences(const JsonPreferenceEntries& entries);

}  // namespace quillmeter
