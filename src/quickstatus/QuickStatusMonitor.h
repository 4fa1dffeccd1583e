#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/Observers.h"
#include "base/SerialQueue.h"
#include "platform/AudioHardware.h"
#include "platform/MainExecutor.h"
#include "platform/NetworkPathMonitor.h"
#include "platform/TimerFactory.h"
#include "platform/WifiClient.h"
#include "quickstatus/QuickAudioHardware.h"
#include "quickstatus/model/QuickStatusSnapshot.h"

namespace quillmeter {

class PreferenceStore;

// What the monitor works with. All of it outlives the monitor; the queue ends first.
struct QuickStatusServices {
  TimerFactory& timers;
  MainExecutor& mainExecutor;
  SerialQueue& queue;
  PreferenceStore& preferences;
  NetworkPathMonitorFactory& paths;
  WifiClient& wifi;
  AudioHardware& audio;
};

// Samples the network link and the sound output every two seconds, and at once when the sound server says that
// something changed, but only while something shows them; puts the user's changes to the device. One for the program,
// main thread; readings and changes run on the queue, at most one reading at a time.
class QuickStatusMonitor {
 public:
  static constexpr double periodSeconds = 2.0;

  explicit QuickStatusMonitor(const QuickStatusServices& services);
  ~QuickStatusMonitor();
  QuickStatusMonitor(const QuickStatusMonitor&) = delete;
  QuickStatusMonitor& operator=(const QuickStatusMonitor&) = delete;

  // Starts or stops, by the menu-bar style and the layouts; to be called at start and after each change of these.
  void configure();
  void refresh();
  bool isRunning() const { return timer_ != nullptr; }

  void setVolume(double volume);
  void setBalance(double balance, std::uint32_t deviceID);
  void toggleMute();
  void selectOutput(std::uint32_t deviceID);

  const QuickStatusSnapshot& snapshot() const { return snapshot_; }
  // Why the last change did not happen, for the user.
  std::optional<std::string> error() const;
  bool isChanging() const { return changesInFlight_ > 0; }
  // Told on the main thread when one of the three above has changed.
  [[nodiscard]] Subscription onChange(std::function<void()> changed) { return observers_.add(std::move(changed)); }

 private:
  void start();
  void stop();
  bool isShown() const;
  void audioChanged();
  void updateConnection(const NetworkPath& path);
  void publish(QuickStatusSnapshot reading, std::uint64_t generation);
  void perform(std::function<bool(QuickAudioHardware&)> change);
  void finishChange(bool taken);

  const QuickStatusServices services_;
  QuickStatusSnapshot snapshot_;
  bool changeRefused_ = false;
  int changesInFlight_ = 0;
  bool reading_ = false;
  bool readAgain_ = false;        // something changed meanwhile
  std::uint64_t generation_ = 0;  // readings of an older one publish nothing
  std::unique_ptr<Timer> timer_;
  std::unique_ptr<NetworkPathMonitor> path_;
  Observers<> observers_;
  // What comes back from the queue finds the monitor by this, and nothing once it is gone.
  std::shared_ptr<QuickStatusMonitor*> self_;
};

}  // namespace quillmeter
