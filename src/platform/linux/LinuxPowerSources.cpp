#include "platform/linux/LinuxPowerSources.h"

namespace quillmeter {
namespace {

constexpr double secondsBetweenAttempts = 60;

}  // namespace

LinuxPowerSources::LinuxPowerSources(const std::filesystem::path& root, DescriptorWatcher* watcher,
                                     const MonotonicClock& clock)
    : clock_(clock), isWatched_(watcher != nullptr), kernel_(root, clock), bus_(BusConnection::Bus::system, watcher) {
  bus_.onClosed([this] { upower_.reset(); });
}

std::optional<std::span<const PowerSourceDescription>> LinuxPowerSources::list() {
  if (!bus_.isOpen()) {
    openBus();
  } else if (!isWatched_) {
    bus_.process();
  }
  return upower_ && upower_->isReady() ? upower_->list() : kernel_.list();
}

void LinuxPowerSources::openBus() {
  const double now = clock_.uptime();
  if (triedAt_ && now - *triedAt_ < secondsBetweenAttempts) return;
  triedAt_ = now;
  if (!bus_.open()) return;
  upower_.emplace(bus_);
  bus_.process();
}

}  // namespace quillmeter
