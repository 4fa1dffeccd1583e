#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "agents/model/AgentTokenMetrics.h"
#include "base/Date.h"

namespace quillmeter::bench {

// What to write. Days are those of UTC, weeks begin on Monday.
struct LogHomeOptions {
  std::filesystem::path root;
  std::int64_t codexBytes = 0;
  std::int64_t claudeBytes = 0;
  int files = 400;           // half of them Codex sessions, half Claude transcripts, where both have bytes
  double markedShare = 0.2;  // of the Claude bytes in lines that carry usage
  std::uint64_t seed = 1;
  Date now = Date::fromWholeSeconds(1'795'262'400);  // 2026-11-21T12:00:00Z, a Saturday
};

struct LogHomeRanges {
  AgentTokenMetrics today;
  AgentTokenMetrics week;
  AgentTokenMetrics month;
  friend bool operator==(const LogHomeRanges&, const LogHomeRanges&) = default;
};

// What a scan at `now` has to find, known from how the logs were made.
struct LogHomeTruth {
  Date now;
  LogHomeRanges codex;
  LogHomeRanges claude;
  std::int64_t bytes = 0;
  int files = 0;
};

inline std::filesystem::path codexRoot(const std::filesystem::path& root) {
  return root / ".codex/sessions";
}
inline std::filesystem::path claudeRoot(const std::filesystem::path& root) {
  return root / ".claude/projects";
}
inline std::filesystem::path truthPath(const std::filesystem::path& root) {
  return root / "truth.json";
}

// Writes the logs of a month below `root`, with the dates of their last lines as modification dates, and the truth
// beside them. Most bytes are in lines without usage, some of which have hundreds of kilobytes; replies are written on
// several lines with one id, counters are repeated and start over. Throws std::runtime_error when something cannot be
// written.
LogHomeTruth generateLogHome(const LogHomeOptions& options);

// The truth that an earlier run left below `root`.
LogHomeTruth readTruth(const std::filesystem::path& root);

}  // namespace quillmeter::bench
