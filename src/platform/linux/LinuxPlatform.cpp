#include "platform/linux/LinuxPlatform.h"

#include "platform/linux/LinuxPowerSources.h"
#include "platform/linux/MallocTrimRelief.h"
#include "platform/linux/Nl80211WifiClient.h"
#include "platform/linux/ProcMeminfo.h"
#include "platform/linux/ProcStat.h"
#include "platform/linux/RtnetlinkInterfaces.h"
#include "platform/linux/RtnetlinkPathMonitor.h"
#include "platform/linux/StatvfsVolume.h"
#include "platform/linux/SysfsThermal.h"
#include "platform/linux/WidgetReloadSignal.h"

namespace quillmeter {

void addLinuxPlatform(Platform& platform, const MonotonicClock& clock) {
  DescriptorWatcher* const watcher = platform.descriptors.get();
  platform.processorTicks = std::make_unique<ProcStatTicks>();
  platform.memoryPages = std::make_unique<ProcMeminfoPages>();
  platform.allocatorRelief = std::make_unique<MallocTrimRelief>();
  platform.volumeCapacity = std::make_unique<StatvfsVolume>();
  platform.networkInterfaces = std::make_unique<RtnetlinkInterfaces>(watcher);
  platform.powerSources = std::make_unique<LinuxPowerSources>("/", watcher, clock);
  platform.thermalState = std::make_unique<SysfsThermal>();
  platform.widgetReload = std::make_unique<WidgetReloadSignal>(watcher);
  if (watcher != nullptr && platform.mainExecutor) {
    platform.networkPaths = std::make_unique<RtnetlinkPathMonitorFactory>(*watcher, *platform.mainExecutor);
  }
  platform.wifi = std::make_unique<Nl80211WifiClient>();
}

}  // namespace quillmeter
