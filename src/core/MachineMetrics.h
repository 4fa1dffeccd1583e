#pragma once

#include "base/Clock.h"
#include "base/LocaleConventions.h"
#include "core/SystemSampler.h"
#include "metrics/BatteryInfo.h"
#include "metrics/CpuInfo.h"
#include "metrics/DiskInfo.h"
#include "metrics/FanInfo.h"
#include "metrics/MemoryInfo.h"
#include "metrics/NetworkInfo.h"
#include "platform/Platform.h"

namespace quillmeter {

// The metric sources over the facts of one platform, which outlives them. Made once by the executable; main thread.
struct MachineMetrics {
  MachineMetrics(Platform& platform, const Clock& clock, const LocaleConventions& locale)
      : cpu(*platform.processorTicks, locale),
        memory(*platform.memoryPages, *platform.allocatorRelief),
        disk(*platform.volumeCapacity, locale),
        network(*platform.networkInterfaces, clock, locale),
        battery(*platform.powerSources),
        thermal(*platform.thermalState) {}

  MetricSources sources() { return {cpu, memory, disk, network, battery, fan, thermal}; }

  CpuInfo cpu;
  MemoryInfo memory;
  DiskInfo disk;
  NetworkInfo network;
  BatteryInfo battery;
  FanInfo fan;
  ThermalState& thermal;
};

}  // namespace quillmeter
