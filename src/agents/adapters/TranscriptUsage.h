#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "agents/adapters/JsonAccess.h"
#include "agents/model/AgentUsageAdapter.h"

namespace quillmeter {

// Gathers the usage of one session from one source (a transcript file, an archive, a database's event table) line by
// line. Ids are stable over copies: a response keeps its own id, one without id gets a fingerprint of its date and
// figures, numbered by occurrence within the source, so that a copy of the source gives the same ids again.
class TranscriptUsage {
 public:
  // `fallbackTimestamp` is used when neither the message nor the line has a date.
  void append(const JsonObject& line, const UsageValue& fallbackTimestamp = {});

  const std::vector<AdapterUsageEvent>& events() const { return events_; }
  std::vector<AdapterUsageEvent> takeEvents();

 private:
  std::vector<AdapterUsageEvent> events_;
  std::unordered_map<std::size_t, int>
      anonymousCounts_;  // by the fingerprint's hash, of which a long transcript has many
};

}  // namespace quillmeter
