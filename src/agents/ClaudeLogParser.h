#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <tl/expected.hpp>

#include "agents/CounterBounds.h"
#include "agents/LogFile.h"
#include "agents/UsageTimeline.h"
#include "base/FileOpener.h"
#include "base/LineScanner.h"

namespace quillmeter {

// The usage of one reply.
using ClaudeTokenEvent = AgentUsageEvent;

// What is kept of one transcript.
struct CachedClaudeFile {
  FileSignature signature;
  UsageTimeline events;               // in file order
  AgentTokenMetrics sessionMetrics;   // their sum
  std::optional<Date> firstActivity;  // the earliest event date; absent without events, as the next
  std::optional<Date> lastActivity;   // the latest event date
  CounterMagnitude magnitude;         // bound of every sum that this file can contribute to
};

// The fields of one reply line that count. The key tells apart the replies of one file: the lines of one reply share
// it.
struct ClaudeReply {
  Date date;
  bool hasKey = false;
  std::string_view key;  // valid until the next line is read; of no meaning without hasKey
  std::int64_t inputTokens = 0;
  std::int64_t creationTokens = 0;
  std::int64_t readTokens = 0;
  std::int64_t outputTokens = 0;
};

// Reads the transcripts of Claude Code: JSON Lines with one usage a reply, several lines a reply. Not shared between
// threads: each worker of a scan has its own, with its own buffers.
class ClaudeLogParser {
 public:
  explicit ClaudeLogParser(FileOpener& opener);
  ~ClaudeLogParser();

  // The reply that a line carries, absent when it carries none. LineScanner::paddingBytes bytes behind it must be
  // readable; `keyBuffer` holds the key when it had to be decoded.
  static std::optional<ClaudeReply> claudeReply(std::string_view line, std::string& keyBuffer);

  // The errno when the file cannot be opened or read.
  tl::expected<CachedClaudeFile, int> parse(const LogFile& file);

 private:
  class Pass;

  FileOpener& opener_;
  LineScanner scanner_;
  std::unique_ptr<Pass> pass_;
};

}  // namespace quillmeter
