#include "platform/linux/ProcStat.h"

#include <array>
#include <optional>

#include "platform/linux/TextFields.h"

namespace quillmeter {
namespace {

constexpr std::size_t summingLineBytes = 512;                // the first line: ten numbers of up to 20 digits
constexpr std::size_t allLinesBytes = 1024 * 1024;           // 4096 processors
constexpr std::uint64_t mostTicks = std::uint64_t{1} << 60;  // sums of four stay within 64 bits

// The counters after the name: user nice system idle iowait irq softirq steal guest guest_nice. Guests are inside user
// and nice. Old kernels end after the fourth. Absent when one of these is no sensible number.
std::optional<ProcessorTickCounts> parseCounters(std::string_view line) {
  std::array<std::uint64_t, 8> counters{};
  for (std::size_t i = 0; i < counters.size(); ++i) {
    const std::string_view word = takeWord(line);
    if (word.empty() && i >= 4) break;
    const auto value = numberFrom<std::uint64_t>(word);
    if (!value || *value > mostTicks) return std::nullopt;
    counters[i] = *value;
  }
  const auto [user, nice, system, idle, ioWait, interrupts, softInterrupts, stolen] = counters;
  return ProcessorTickCounts{user, system + interrupts + softInterrupts + stolen, idle + ioWait, nice};
}

}  // namespace

bool parseProcStat(std::string_view text, std::vector<ProcessorTickCounts>& processors) {
  processors.clear();
  while (!text.empty()) {
    std::string_view line = takeLine(text);
    const std::string_view name = takeWord(line);
    if (!name.starts_with("cpu")) continue;
    const auto counters = parseCounters(line);
    if (!counters) continue;
    if (name == "cpu") {
      processors.assign(1, *counters);
      return true;
    }
    if (numberFrom<unsigned>(name.substr(3))) processors.push_back(*counters);
  }
  return !processors.empty();
}

bool ProcStatTicks::read(std::vector<ProcessorTickCounts>& processors) {
  std::array<char, summingLineBytes> buffer;
  const std::string_view start = file_.read(buffer);
  // A cut line would give a cut number: only a complete one counts.
  const std::size_t end = start.find('\n');
  const bool complete = end != std::string_view::npos || start.size() < buffer.size();
  if (complete && start.starts_with("cpu ") && parseProcStat(start.substr(0, end), processors)) return true;
  return readAllLines(processors);
}

bool ProcStatTicks::readAllLines(std::vector<ProcessorTickCounts>& processors) {
  lines_.resize(allLinesBytes);
  return parseProcStat(file_.read(lines_), processors);
}

}  // namespace quillmeter
