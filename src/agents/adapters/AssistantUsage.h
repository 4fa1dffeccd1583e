#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "agents/adapters/JsonAccess.h"
#include "agents/model/AgentTokenMetrics.h"
#include "base/Date.h"

namespace quillmeter {

// The usage of one answer in the message form that Pi and OpenClaw share (the second is built upon the first):
// {"type": "message", "timestamp", "message": {"role": "assistant", "timestamp", "usage": {"input", "output",
// "cacheRead", "cacheWrite", "totalTokens"}}}.
struct AssistantUsage {
  Date date;
  std::int64_t input = 0;
  std::int64_t output = 0;
  std::int64_t cacheRead = 0;
  std::int64_t cacheWrite = 0;
  std::int64_t total = 0;  // sum of the four, or the agent's own total when it has nothing else; at least 1

  AgentTokenMetrics metrics() const;

  // Absent for every line that is no assistant message with usage and a date. `fallbackTimestamp` is used when neither
  // the message nor the line has a date.
  static std::optional<AssistantUsage> from(const JsonObject& line, const UsageValue& fallbackTimestamp = {});
};

}  // namespace quillmeter
