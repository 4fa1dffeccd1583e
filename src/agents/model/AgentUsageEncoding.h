#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "agents/model/AgentScanStatus.h"
#include "agents/model/AgentUsageSnapshot.h"

namespace quillmeter {

// The records as JSON: the key is the field's name, dates are ISO 8601 in UTC ("Z", fractional seconds only when not
// zero), absent values are left out. `indent` is the number of blanks a level, negative for one line.
std::string encodeAgentUsageSnapshot(const AgentUsageSnapshot& snapshot, int indent = -1);
std::string encodeAgentScanStatus(const AgentScanStatus& status);

// Absent for text that is no such record: a missing or wrongly typed field, a date that is none, a status that does not
// have exactly one key. Keys that are not known are passed over.
std::optional<AgentUsageSnapshot> decodeAgentUsageSnapshot(std::string_view json);
std::optional<AgentScanStatus> decodeAgentScanStatus(std::string_view json);

}  // namespace quillmeter
