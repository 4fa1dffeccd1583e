#pragma once

#include <vector>

#include "platform/AllocatorRelief.h"
#include "platform/MemoryPages.h"
#include "platform/PowerSources.h"
#include "platform/ProcessorTicks.h"
#include "platform/ThermalState.h"
#include "platform/VolumeCapacity.h"
#include "platform/WidgetReload.h"
#include "platform/fake/FakeNetworkInterfaces.h"

namespace quillmeter {

// The facts of a machine as a test sets them; each also counts how often it was asked.

class FakeProcessorTicks final : public ProcessorTicks {
 public:
  bool read(std::vector<ProcessorTickCounts>& into) override {
    ++reads;
    into = processors;
    return answers;
  }
  std::vector<ProcessorTickCounts> processors;
  bool answers = true;
  int reads = 0;
};

class FakeMemoryPages final : public MemoryPages {
 public:
  MemoryPageCounts read() override {
    ++reads;
    return counts;
  }
  MemoryPageCounts counts;
  int reads = 0;
};

class FakeAllocatorRelief final : public AllocatorRelief {
 public:
  std::int64_t releaseUnusedMemory() override {
    ++calls;
    return bytes;
  }
  std::int64_t bytes = 0;
  int calls = 0;
};

class FakeVolumeCapacity final : public VolumeCapacity {
 public:
  std::optional<VolumeBytes> read() override {
    ++reads;
    return volume;
  }
  std::optional<VolumeBytes> volume;
  int reads = 0;
};

class FakePowerSources final : public PowerSources {
 public:
  std::optional<std::span<const PowerSourceDescription>> list() override {
    ++reads;
    if (!answers) return std::nullopt;
    return sources;
  }
  std::vector<PowerSourceDescription> sources;
  bool answers = true;
  int reads = 0;
};

class FakeThermalState final : public ThermalState {
 public:
  int level() override { return value; }
  int value = 0;
};

class FakeWidgetReload final : public WidgetReload {
 public:
  void reloadAllTimelines() override { ++reloads; }
  int reloads = 0;
};

struct FakeMachine {
  FakeProcessorTicks processorTicks;
  FakeMemoryPages memoryPages;
  FakeAllocatorRelief allocatorRelief;
  FakeVolumeCapacity volumeCapacity;
  FakeNetworkInterfaces networkInterfaces;
  FakePowerSources powerSources;
  FakeThermalState thermalState;
  FakeWidgetReload widgetReload;
};

}  // namespace quillmeter
