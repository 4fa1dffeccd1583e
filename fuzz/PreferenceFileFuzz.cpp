// A preference file that anybody may have edited: it is read or refused, and what is read is written back with the same
// meaning.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/linux/JsonPreferenceDocument.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillmeter;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto entries = parseJsonPreferences(text);
  if (!entries) return 0;
  const std::string written = serializeJsonPreferences(*entries);
  if (parseJsonPreferences(written) != entries) std::abort();
  for (const auto& [key, entry] : *entries) {
    if (!entry.value) continue;
    const auto again = makeJsonPreferenceEntry(*entry.value);
    if (!again) std::abort();
    const auto read = parseJsonPreferences("{\"k\":" + again->text + "}");
    if (!read || read->at("k").value != entry.value) std::abort();
  }
  return 0;
}
