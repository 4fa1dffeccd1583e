#pragma once

#include <string>

#include "core/model/SystemSnapshot.h"

namespace quillmeter {

// The record as a JSON object: the key is the field's name, the date is ISO 8601 in UTC, what is absent or not finite
// is left out. `indent` is the number of blanks a level, negative for one line.
std::string encodeSystemSnapshot(const SystemSnapshot& snapshot, int indent = -1);

}  // namespace quillmeter
