#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <tl/expected.hpp>

#include "agents/adapters/AgentArchiveReader.h"
#include "agents/adapters/JsonAccess.h"
#include "agents/adapters/TranscriptUsage.h"
#include "base/LineScanner.h"

namespace quillmeter {

// Reads OpenClaw's transcripts in each of their forms; holds the buffers for it, to be used by one adapter on one
// queue. A stream that fails gives nothing: what was read before the fault is dropped with it.
class TranscriptReader {
 public:
  using Events = std::vector<AdapterUsageEvent>;
  using Result = tl::expected<Events, ArchiveReadError>;

  TranscriptReader();

  // A plain transcript from the descriptor's current offset: a message per line. `invalid` when it cannot be read to
  // its end.
  Result plainFile(int fd);
  // A transcript in a stream: a message per line.
  Result transcript(const AgentArchiveReader::Source& source, bool compressed, std::uint64_t limit);
  // A cold archive: a header line, then lines of "kind" "event" that hold a message as text ("event_json", nested under
  // "row" or flat), then other kinds.
  Result coldArchive(const AgentArchiveReader::Source& source, bool compressed, std::uint64_t limit);

  // One message, as a database row holds it.
  void event(std::string_view text, const UsageValue& fallbackTimestamp, TranscriptUsage& usage);
  // The same compressed.
  tl::expected<void, ArchiveReadError> compressedEvent(std::string_view bytes, std::uint64_t limit,
                                                       const UsageValue& fallbackTimestamp, TranscriptUsage& usage);

 private:
  void coldLine(std::string_view line, TranscriptUsage& usage);

  LineScanner messageLines_;
  LineScanner coldLines_;
  JsonParser lineParser_;
  JsonParser eventParser_;
  std::string eventText_;
};

}  // namespace quillmeter
