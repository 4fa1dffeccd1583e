#pragma once

#include <functional>
#include <memory>

namespace quillmeter {

// How this machine reaches the network.
struct NetworkPath {
  bool satisfied = false;  // a default route whose link is up
  bool usesWifi = false;
  bool usesWiredEthernet = false;
  friend bool operator==(const NetworkPath&, const NetworkPath&) = default;
};

// A running monitor; destroying it ends the calls.
class NetworkPathMonitor {
 public:
  virtual ~NetworkPathMonitor() = default;
};

class NetworkPathMonitorFactory {
 public:
  virtual ~NetworkPathMonitorFactory() = default;
  // Calls `updated` on the main thread with the path of now, soon after the start, and after each change.
  [[nodiscard]] virtual std::unique_ptr<NetworkPathMonitor> start(std::function<void(const NetworkPath&)> updated) = 0;
};

}  // namespace quillmeter
