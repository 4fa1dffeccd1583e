#include "quickstatus/QuickStatusMonitor.h"

#include <utility>

#include "base/L10n.h"
#include "preferences/DashboardLayoutStorage.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "quickstatus/QuickStatusReading.h"

namespace quillmeter {

QuickStatusMonitor::QuickStatusMonitor(const QuickStatusServices& services)
    : services_(services), self_(std::make_shared<QuickStatusMonitor*>(this)) {
  services_.audio.onChange([self = std::weak_ptr(self_), &main = services_.mainExecutor] {
    main.post([self] {
      if (const auto monitor = self.lock(); monitor && *monitor) (*monitor)->audioChanged();
    });
  });
}

QuickStatusMonitor::~QuickStatusMonitor() {
  services_.audio.onChange({});
  *self_ = nullptr;
}

bool QuickStatusMonitor::isShown() const {
  return SettingsKeys::chosenMenuBarStyle(services_.preferences) == SettingsKeys::defaultMenuBarStyle ||
         DashboardLayoutStorage::hasConnectionOrAudioCards(services_.preferences);
}

void QuickStatusMonitor::configure() {
  if (!isShown()) {
    stop();
  } else if (!isRunning()) {
    start();
  }
}

void QuickStatusMonitor::start() {
  ++generation_;
  path_ = services_.paths.start([this](const NetworkPath& path) { updateConnection(path); });
  // Tolerant enough to share its wake-ups with the sampling of the machine.
  timer_ = services_.timers.repeating(periodSeconds, periodSeconds / 4, [this] { refresh(); });
  refresh();
}

void QuickStatusMonitor::stop() {
  ++generation_;
  timer_.reset();
  path_.reset();
}

void QuickStatusMonitor::updateConnection(const NetworkPath& path) {
  const QuickConnection connection = connectionOf(path);
  if (connection == snapshot_.connection) return;
  snapshot_.connection = connection;
  observers_.notify();
}

// A reading that is under way may have looked before the change.
void QuickStatusMonitor::audioChanged() {
  readAgain_ = reading_;
  refresh();
}

void QuickStatusMonitor::refresh() {
  if (!isRunning() || isChanging() || reading_) return;
  reading_ = true;
  services_.queue.post([generation = generation_, self = std::weak_ptr(self_), &main = services_.mainExecutor,
                        &wifi = services_.wifi, &audio = services_.audio] {
    main.post([generation, self, reading = readQuickStatus(wifi, audio)]() mutable {
      if (const auto monitor = self.lock(); monitor && *monitor) (*monitor)->publish(std::move(reading), generation);
    });
  });
}

void QuickStatusMonitor::publish(QuickStatusSnapshot reading, std::uint64_t generation) {
  reading_ = false;
  if (std::exchange(readAgain_, false)) refresh();
  if (generation != generation_) return;
  reading.connection = snapshot_.connection;
  if (reading == snapshot_) return;
  snapshot_ = std::move(reading);
  observers_.notify();
}

void QuickStatusMonitor::perform(std::function<bool(QuickAudioHardware&)> change) {
  ++changesInFlight_;
  observers_.notify();
  services_.queue.post([change = std::move(change), self = std::weak_ptr(self_), &main = services_.mainExecutor,
                        &audio = services_.audio] {
    QuickAudioHardware hardware(audio);
    main.post([self, taken = change(hardware)] {
      if (const auto monitor = self.lock(); monitor && *monitor) (*monitor)->finishChange(taken);
    });
  });
}

void QuickStatusMonitor::finishChange(bool taken) {
  --changesInFlight_;
  changeRefused_ = !taken;
  observers_.notify();
  refresh();
}

void QuickStatusMonitor::setVolume(double volume) {
  perform([volume](QuickAudioHardware& hardware) { return hardware.setVolume(volume); });
}

void QuickStatusMonitor::setBalance(double balance, std::uint32_t deviceID) {
  perform([balance, deviceID](QuickAudioHardware& hardware) { return hardware.setBalance(balance, deviceID); });
}

void QuickStatusMonitor::toggleMute() {
  perform([](QuickAudioHardware& hardware) { return hardware.toggleMute(); });
}

void QuickStatusMonitor::selectOutput(std::uint32_t deviceID) {
  perform([deviceID](QuickAudioHardware& hardware) { return hardware.selectOutput(deviceID); });
}

std::optional<std::string> QuickStatusMonitor::error() const {
  if (!changeRefused_) return std::nullopt;
  return QM_TR("设备未接受更改，请在系统声音设置中重试。");
}

}  // namespace quillmeter
