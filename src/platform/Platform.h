#pragma once

#include <memory>

#include "platform/AllocatorRelief.h"
#include "platform/DescriptorWatcher.h"
#include "platform/MainExecutor.h"
#include "platform/MemoryPages.h"
#include "platform/NetworkInterfaces.h"
#include "platform/NetworkPathMonitor.h"
#include "platform/PowerSources.h"
#include "platform/ProcessorTicks.h"
#include "platform/ThermalState.h"
#include "platform/TimerFactory.h"
#include "platform/VolumeCapacity.h"
#include "platform/WidgetReload.h"
#include "platform/WifiClient.h"

namespace quillmeter {

// Everything this program asks of the operating system, one small interface per fact. Made once by the executable,
// which hands the single interfaces to who needs them; nobody else sees the bundle. Members are destroyed in reverse
// order: what others use comes first.
struct Platform {
  std::unique_ptr<MainExecutor> mainExecutor;
  std::unique_ptr<TimerFactory> timers;
  std::unique_ptr<DescriptorWatcher> descriptors;

  std::unique_ptr<ProcessorTicks> processorTicks;
  std::unique_ptr<MemoryPages> memoryPages;
  std::unique_ptr<AllocatorRelief> allocatorRelief;
  std::unique_ptr<VolumeCapacity> volumeCapacity;
  std::unique_ptr<NetworkInterfaces> networkInterfaces;
  std::unique_ptr<PowerSources> powerSources;
  std::unique_ptr<ThermalState> thermalState;
  std::unique_ptr<WidgetReload> widgetReload;
  std::unique_ptr<NetworkPathMonitorFactory> networkPaths;  // null without an event loop
  std::unique_ptr<WifiClient> wifi;
};

}  // namespace quillmeter
