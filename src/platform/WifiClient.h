#pragma once

#include <optional>

namespace quillmeter {

// What the default wireless interface reports; absent where it does not say, all absent without one.
struct WifiFacts {
  std::optional<bool> powered;
  std::optional<int> rssi;             // dBm
  std::optional<double> transmitRate;  // Mbit/s
  friend bool operator==(const WifiFacts&, const WifiFacts&) = default;
};

// The wireless subsystem. Used on the quick-status queue only; each call is bounded in time.
class WifiClient {
 public:
  virtual ~WifiClient() = default;
  virtual WifiFacts read() = 0;
};

}  // namespace quillmeter
