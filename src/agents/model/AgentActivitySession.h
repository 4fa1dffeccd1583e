#pragma once

#include <cstdint>
#include <string>

#include "base/Date.h"

namespace quillmeter {

// One session of an agent, with the time of its newest usage.
struct AgentActivitySession {
  static constexpr std::int64_t activeSeconds = 300;

  std::string id;          // unique over all providers: "codex:/home/.../rollout.jsonl"
  std::string providerID;  // "codex"
  std::string sessionID;   // unique within the provider
  Date lastActivity;
  std::int64_t totalTokens = 0;

  // Used within the five minutes before `now`; a time after `now` (a clock that is ahead) is no activity.
  bool isActive(Date now) const;

  friend bool operator==(const AgentActivitySession&, const AgentActivitySession&) = default;
};

}  // namespace quillmeter
