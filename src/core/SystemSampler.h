#pragma once

#include "base/Date.h"
#include "core/model/SystemSnapshot.h"

namespace quillmeter {

class BatteryInfo;
class CpuInfo;
class DiskInfo;
class FanInfo;
class MemoryInfo;
class NetworkInfo;
class ThermalState;

// The metric sources of one machine.
struct MetricSources {
  CpuInfo& cpu;
  MemoryInfo& memory;
  DiskInfo& disk;
  NetworkInfo& network;
  BatteryInfo& battery;
  FanInfo& fan;
  ThermalState& thermal;
};

// What one sample reads: processor, memory, network and thermal state always.
enum class SampleDepth {
  fast,             // nothing more
  fastWithBattery,  // the battery's quick fields as well
  slow              // disk, the whole battery record and fans as well
};

// Makes one snapshot of the machine out of the metric sources. Owned by the monitor store; main thread.
class SystemSampler {
 public:
  explicit SystemSampler(const MetricSources& sources) : sources_(sources) {}

  // A copy of `previous` with what was read anew. As long as the volume of "/" could not be read, every sample is slow.
  SystemSnapshot sample(const SystemSnapshot& previous, SampleDepth depth, Date now);

 private:
  void sampleFast(SystemSnapshot& snapshot);
  void sampleDisk(SystemSnapshot& snapshot);
  void sampleBattery(SystemSnapshot& snapshot);

  MetricSources sources_;
};

}  // namespace quillmeter
