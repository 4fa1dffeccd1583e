#pragma once

#include <cstdint>
#include <vector>

namespace quillmeter {

// Cumulative time of one processor since the system started, in ticks of the kernel (their length does not matter: only
// shares of differences are taken). Counters may stand still, wrap or go back.
struct ProcessorTickCounts {
  std::uint64_t user = 0;  // time of guests included
  std::uint64_t system = 0;
  std::uint64_t idle = 0;  // waiting for input or output included
  std::uint64_t nice = 0;
  friend bool operator==(const ProcessorTickCounts&, const ProcessorTickCounts&) = default;
};

// The kernel's processor accounting. Main thread; never blocks.
class ProcessorTicks {
 public:
  virtual ~ProcessorTicks() = default;
  // Replaces `processors` by one entry for each processor, or by one for all of them together where the system sums
  // them up. False, with an unspecified list, when the system does not answer.
  virtual bool read(std::vector<ProcessorTickCounts>& processors) = 0;
};

}  // namespace quillmeter
