#include "core/SystemSampler.h"

#include <string_view>
#include <utility>

#include "core/model/BatteryTexts.h"
#include "core/model/NumberText.h"
#include "core/model/ThermalTexts.h"
#include "core/model/UnitInterval.h"
#include "metrics/BatteryInfo.h"
#include "metrics/CpuInfo.h"
#include "metrics/DiskInfo.h"
#include "metrics/FanInfo.h"
#include "metrics/MemoryInfo.h"
#include "metrics/NetworkInfo.h"
#include "platform/ThermalState.h"

namespace quillmeter {

namespace {

constexpr std::string_view unknown = "—";

void showBatteryQuickly(SystemSnapshot& snapshot, const Battery& battery) {
  const auto charge = battery.charge();
  snapshot.batteryLevel = charge ? std::optional(clampToUnit(*charge / 100)) : std::nullopt;
  snapshot.batteryTime = batteryTimeText(battery.isCharging, battery.timeLeft());
  snapshot.batteryState = batteryStateText(battery.isCharging, battery.isCharged, battery.acPowered);
  snapshot.batteryIsCharging = battery.isCharging.value_or(false);
  snapshot.batteryACPowered = battery.acPowered.value_or(false);
}

void showNoBattery(SystemSnapshot& snapshot) {
  snapshot.batteryLevel.reset();
  snapshot.batteryTime = QM_TR("台式 Mac");
  snapshot.batteryCycles = unknown;
  snapshot.batteryTemperature = unknown;
  snapshot.batteryState = unknown;
  snapshot.batteryIsCharging = false;
  snapshot.batteryACPowered = false;
  snapshot.batteryFullChargeCapacity.reset();
  snapshot.batteryDesignCapacity.reset();
  snapshot.batteryHealth.reset();
}

}  // namespace

SystemSnapshot SystemSampler::sample(const SystemSnapshot& previous, SampleDepth depth, Date now) {
  SystemSnapshot snapshot = previous;
  sampleFast(snapshot);
  if (depth == SampleDepth::slow || snapshot.diskTotal == unknown) {
    sampleDisk(snapshot);
    sampleBattery(snapshot);
    sources_.fan.update();
    snapshot.fanRPM = sources_.fan.rpm();
    snapshot.sensorTemperature = sources_.fan.temperature();
  } else if (depth == SampleDepth::fastWithBattery) {
    if (const auto battery = sources_.battery.getInternalBattery(false)) showBatteryQuickly(snapshot, *battery);
  }
  snapshot.thermalState = thermalStateText(sources_.thermal.level());
  snapshot.updatedAt = now;
  return snapshot;
}

void SystemSampler::sampleFast(SystemSnapshot& snapshot) {
  sources_.cpu.update();
  sources_.memory.update();
  NetworkSample network = sources_.network.sample();
  snapshot.cpuUsage = clampToUnit(sources_.cpu.percentage() / 100);
  snapshot.cpuUser = sources_.cpu.user();
  snapshot.cpuSystem = sources_.cpu.system();
  snapshot.memoryUsage = clampToUnit(sources_.memory.percentage() / 100);
  snapshot.memoryApp = sources_.memory.app();
  snapshot.memoryWired = sources_.memory.wired();
  snapshot.memoryCompressed = sources_.memory.compressed();
  snapshot.uploadSpeed = std::move(network.uploadDescription);
  snapshot.downloadSpeed = std::move(network.downloadDescription);
  snapshot.uploadBytesPerSecond = network.upload;
  snapshot.downloadBytesPerSecond = network.download;
  snapshot.networkIP = network.ipAddress ? std::move(*network.ipAddress) : std::string(unknown);
}

void SystemSampler::sampleDisk(SystemSnapshot& snapshot) {
  sources_.disk.update();
  snapshot.diskUsage = clampToUnit(sources_.disk.percentage() / 100);
  snapshot.diskUsed = sources_.disk.used();
  snapshot.diskFree = sources_.disk.free();
  snapshot.diskTotal = sources_.disk.total();
}

void SystemSampler::sampleBattery(SystemSnapshot& snapshot) {
  const auto battery = sources_.battery.getInternalBattery(true);
  if (!battery) {
    showNoBattery(snapshot);
    return;
  }
  showBatteryQuickly(snapshot, *battery);
  snapshot.batteryCycles = battery->cycleCount ? std::to_string(*battery->cycleCount) : std::string(unknown);
  snapshot.batteryTemperature =
      battery->temperature ? fixedDecimalText(*battery->temperature, 1) + " °C" : std::string(unknown);
  snapshot.batteryFullChargeCapacity = battery->registryFullChargeCapacity;
  snapshot.batteryDesignCapacity = battery->designCapacity;
  snapshot.batteryHealth = battery->health();
}

}  // namespace quillmeter
