#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "platform/ProcessorTicks.h"
#include "platform/linux/KeptFile.h"

namespace quillmeter {

// Reads the text of /proc/stat: its "cpu" line, which sums up all processors (offline ones too, so that it never
// shrinks), or the "cpuN" lines where that is missing. False when there is neither.
bool parseProcStat(std::string_view text, std::vector<ProcessorTickCounts>& processors);

// Processor ticks from /proc/stat below `root`.
class ProcStatTicks final : public ProcessorTicks {
 public:
  explicit ProcStatTicks(const std::filesystem::path& root = "/") : file_(root / "proc/stat") {}
  bool read(std::vector<ProcessorTickCounts>& processors) override;

 private:
  bool readAllLines(std::vector<ProcessorTickCounts>& processors);

  KeptFile file_;
  std::vector<char> lines_;  // used only where the summing line is missing
};

}  // namespace quillmeter
