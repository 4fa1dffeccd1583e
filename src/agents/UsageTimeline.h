#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "agents/model/AgentTokenMetrics.h"
#include "base/Date.h"

namespace quillmeter {

// Usage that happened at one moment.
struct AgentUsageEvent {
  Date date;
  AgentTokenMetrics metrics;  // sessionCount is 0
  friend bool operator==(const AgentUsageEvent&, const AgentUsageEvent&) = default;
};

// A list of dated counters in file order, held as differences in variable-length integers: 10 to 15 bytes an event
// instead of 48. The per-file caches keep one for every file of the month, so that the memory of months of logs stays a
// few megabytes. Counters must lie within +-2^61; sessionCount is not kept.
class UsageTimeline {
 public:
  void append(const AgentUsageEvent& event);
  // Gives back what the growing list held in reserve.
  void shrink() { bytes_.shrink_to_fit(); }

  std::size_t size() const { return count_; }
  bool empty() const { return count_ == 0; }
  std::size_t storedBytes() const { return bytes_.capacity(); }

  // Reads the list from its front.
  class Reader {
   public:
    explicit Reader(const UsageTimeline& timeline);
    // False at the end.
    bool next(AgentUsageEvent& event);

   private:
    const std::uint8_t* position_;
    const std::uint8_t* end_;
    AgentUsageEvent previous_;
  };

  std::vector<AgentUsageEvent> events() const;

  friend bool operator==(const UsageTimeline&, const UsageTimeline&) = default;

 private:
  std::vector<std::uint8_t> bytes_;
  std::size_t count_ = 0;
  AgentUsageEvent last_;
};

}  // namespace quillmeter
