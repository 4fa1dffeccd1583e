#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "agents/JsonCursor.h"
#include "base/Date.h"

namespace quillmeter {

// The field values that the logs of Codex and Claude Code share. Each reads the value at the cursor and consumes it,
// whatever it is.

// A number cut to its integer part, or a string that is a decimal integer; anything else is absent. What no signed
// 64-bit integer holds gives the nearest one.
std::optional<std::int64_t> readInteger(JsonCursor& cursor);
// A number, or a string that is one; absent otherwise. May be infinite or no number when a string says so.
std::optional<double> readDouble(JsonCursor& cursor);
// A string that is an ISO 8601 date-time.
std::optional<Date> readDate(JsonCursor& cursor);
// A string; the view lies in the text or in `buffer`.
std::optional<std::string_view> readString(JsonCursor& cursor, std::string& buffer);

}  // namespace quillmeter
