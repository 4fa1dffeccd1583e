// The text of /proc/stat: processors are found or not, and their counters can be summed.
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "platform/linux/ProcStat.h"
#include "platform/linux/SysfsPowerSupply.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillmeter;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::vector<ProcessorTickCounts> processors;
  if (parseProcStat(text, processors) == processors.empty()) std::abort();
  for (const auto& processor : processors) {
    if (processor.user > processor.user + processor.nice || processor.system > std::uint64_t{1} << 62) std::abort();
  }
  describeBattery(parsePowerSupply(text), std::nullopt);
  return 0;
}
