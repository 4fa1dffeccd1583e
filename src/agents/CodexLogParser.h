#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include <tl/expected.hpp>

#include "agents/CounterBounds.h"
#include "agents/LogFile.h"
#include "agents/UsageTimeline.h"
#include "base/FileOpener.h"
#include "base/LineScanner.h"

namespace quillmeter {

class CodexTail;

// The cumulative usage of a session at one moment.
using CodexPoint = AgentUsageEvent;

// The account's rate-limit windows as one record reported them. Fractions 0 ... 1.
struct CodexLimits {
  std::optional<double> primaryUsed;  // of the window of 300 minutes
  std::optional<double> weeklyUsed;   // of the window of 10,080 minutes
  std::optional<Date> primaryResetAt;
  std::optional<Date> weeklyResetAt;
  Date observedAt = Date::distantPast();
  friend bool operator==(const CodexLimits&, const CodexLimits&) = default;
};

// One accepted record of a session log.
struct CodexRecord {
  CodexPoint point;
  CodexLimits limits;
  friend bool operator==(const CodexRecord&, const CodexRecord&) = default;
};

// What is kept of one session file.
struct CachedCodexFile {
  FileSignature signature;
  std::optional<CodexPoint> latest;     // the last point in file order
  std::optional<UsageTimeline> points;  // every point in file order; absent when parsed without a timeline
  CodexLimits limits;                   // with a timeline the newest observation, else that of the latest point
  CounterMagnitude magnitude;           // bound of every sum that this file can contribute to
};

// Reads the session logs of Codex: JSON Lines whose "token_count" records carry running totals. Not shared between
// threads: each worker of a scan has its own, with its own buffers.
class CodexLogParser {
 public:
  explicit CodexLogParser(FileOpener& opener);
  ~CodexLogParser();

  // The record of one line, absent when the line is none. LineScanner::paddingBytes bytes behind it must be readable.
  static std::optional<CodexRecord> codexEvent(std::string_view line);

  // With a timeline the whole file is read, without one only its tail. The errno when the file cannot be opened or
  // read.
  tl::expected<CachedCodexFile, int> parse(const LogFile& file, bool needsTimeline);

 private:
  tl::expected<CachedCodexFile, int> parseTimeline(int fd);
  tl::expected<CachedCodexFile, int> parseTail(int fd);

  FileOpener& opener_;
  LineScanner scanner_;
  std::unique_ptr<CodexTail> tail_;
};

// The usage after `start`: last point - last point before `start`, each field at least 0; zero when the last point is
// earlier.
AgentTokenMetrics codexDelta(const UsageTimeline& points, Date start);
// The usage between consecutive points (each field at least 0), dated by the later one, from `start` on.
std::vector<AgentUsageEvent> codexEvents(const UsageTimeline& points, Date start);

}  // namespace quillmeter
