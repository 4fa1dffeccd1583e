#pragma once

#include <filesystem>
#include <optional>

#include "base/Clock.h"
#include "platform/PowerSources.h"
#include "platform/linux/BusConnection.h"
#include "platform/linux/SysfsPowerSupply.h"
#include "platform/linux/UPowerClient.h"

namespace quillmeter {

// The machine's batteries: as UPower tells them, and from the kernel itself while UPower is not there or has not
// answered. The bus is opened with the first question.
class LinuxPowerSources final : public PowerSources {
 public:
  // `watcher` may be null: then what arrived on the bus is looked at with each question.
  LinuxPowerSources(const std::filesystem::path& root, DescriptorWatcher* watcher, const MonotonicClock& clock);

  std::optional<std::span<const PowerSourceDescription>> list() override;

 private:
  void openBus();

  const MonotonicClock& clock_;
  bool isWatched_;
  SysfsPowerSupply kernel_;
  BusConnection bus_;
  std::optional<UPowerClient> upower_;
  std::optional<double> triedAt_;  // uptime in seconds of the last attempt to open the bus
};

}  // namespace quillmeter
