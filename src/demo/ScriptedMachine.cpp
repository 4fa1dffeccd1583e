#include "demo/ScriptedMachine.h"

#include <algorithm>
#include <cmath>

namespace quillmeter {
namespace {

constexpr double ticksPerSecond = 1'000;
constexpr double systemShareOfLoad = 0.3;
constexpr std::uint64_t pageBytes = 4'096;

double valueAt(const std::vector<double>& series, double secondsBeforeNow) {
  if (series.empty()) return 0;
  const auto size = static_cast<long>(series.size());
  const long index = (size - 1 - std::lround(secondsBeforeNow)) % size;
  return series[static_cast<std::size_t>(index < 0 ? index + size : index)];
}

std::uint64_t wholeTicks(double value) {
  return static_cast<std::uint64_t>(std::llround(std::max(value, 0.0)));
}

}  // namespace

ScriptedMachine::ScriptedMachine(FakeMachine& machine, const MachineDescription& description)
    : machine_(machine), description_(description) {
  step(0, description.warmUpSeconds);
}

void ScriptedMachine::step(double seconds, double secondsBeforeNow) {
  runProcessors(seconds, valueAt(description_.processorLoad, secondsBeforeNow));
  runNetwork(seconds, valueAt(description_.network.receivedPerSecond, secondsBeforeNow),
             valueAt(description_.network.sentPerSecond, secondsBeforeNow));
  setMemory(valueAt(description_.memory.used, secondsBeforeNow));
  setBattery();
  machine_.allocatorRelief.bytes = description_.memory.releasedByCleanup;
  machine_.volumeCapacity.volume = VolumeBytes{description_.diskTotalBytes, description_.diskAvailableBytes};
  machine_.thermalState.value = description_.thermalLevel;
}

void ScriptedMachine::runProcessors(double seconds, double load) {
  auto& processors = machine_.processorTicks.processors;
  processors.resize(static_cast<std::size_t>(std::max(description_.processors, 1)));
  const double ticks = seconds * ticksPerSecond;
  for (auto& processor : processors) {
    processor.user += wholeTicks(ticks * load * (1 - systemShareOfLoad));
    processor.system += wholeTicks(ticks * load * systemShareOfLoad);
    processor.idle += wholeTicks(ticks * (1 - load));
  }
}

void ScriptedMachine::runNetwork(double seconds, double received, double sent) {
  FakeNetworkInterfaces& network = machine_.networkInterfaces;
  const DescribedNetwork& described = description_.network;
  if (network.primary != described.interface) {
    network.primary = described.interface;
    network.interfaces.clear();
    if (!described.interface.empty()) network.interfaces.push_back({described.interface, {}, {}});
    if (network.changed) network.changed();
  }
  for (auto& interface : network.interfaces) {
    interface.ipv4 = described.address.empty() ? std::nullopt : std::optional(described.address);
    interface.counters.receivedBytes += wholeTicks(received * seconds);
    interface.counters.sentBytes += wholeTicks(sent * seconds);
  }
}

void ScriptedMachine::setMemory(double used) {
  const DescribedMemory& memory = description_.memory;
  const double pages = static_cast<double>(memory.totalBytes) / pageBytes;
  const auto share = [pages](double part) { return wholeTicks(part * pages); };
  MemoryPageCounts& counts = machine_.memoryPages.counts;
  counts = {.physicalBytes = static_cast<std::uint64_t>(memory.totalBytes), .pageBytes = pageBytes};
  counts.wired = share(memory.wired);
  counts.compressor = share(memory.compressed);
  counts.external = share(memory.cached);
  counts.active = share(std::max(used - memory.wired - memory.compressed, 0.0) + memory.cached);
}

void ScriptedMachine::setBattery() {
  auto& sources = machine_.powerSources.sources;
  sources.clear();
  if (!description_.battery) return;
  const DescribedBattery& battery = *description_.battery;
  PowerSourceDescription source{{"Name", battery.name},
                                {"Current Capacity", std::int64_t{battery.percent}},
                                {"Max Capacity", std::int64_t{100}},
                                {"Is Charging", battery.isCharging},
                                {"Is Charged", battery.isCharged},
                                {"Power Source State", std::string(battery.isOnMains ? "AC Power" : "Battery Power")}};
  if (battery.minutesToEmpty) source.emplace("Time to Empty", std::int64_t{*battery.minutesToEmpty});
  if (battery.minutesToFull) source.emplace("Time to Full Charge", std::int64_t{*battery.minutesToFull});
  sources.push_back(std::move(source));
}

}  // namespace quillmeter
