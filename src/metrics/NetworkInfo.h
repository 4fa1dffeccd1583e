#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/Clock.h"
#include "base/LocaleConventions.h"
#include "core/model/ByteCountFormatter.h"
#include "platform/NetworkInterfaces.h"

namespace quillmeter {

struct NetworkSample {
  double upload = 0;              // bytes per second
  double download = 0;            // bytes per second
  std::string uploadDescription;  // "12 KB/s", or "正在采样" before the first rate
  std::string downloadDescription;
  std::optional<std::string> ipAddress;  // IPv4, numeric
  friend bool operator==(const NetworkSample&, const NetworkSample&) = default;
};

// Rates of the interface that carries the default route, from its cumulative counters. Owned by the executable, main
// thread.
class NetworkInfo {
 public:
  NetworkInfo(NetworkInterfaces& interfaces, const Clock& clock, LocaleConventions locale);

  NetworkSample sample();

 private:
  void updateRates(const InterfaceCounters& counters);
  std::string describe(double bytesPerSecond) const;

  NetworkInterfaces& interfaces_;
  const Clock& clock_;
  ByteCountFormatter formatter_;
  std::uint64_t previousUploadBytes_ = 0;
  std::uint64_t previousDownloadBytes_ = 0;
  std::optional<Date> previousTimestamp_;
  double lastUploadSpeed_ = 0;
  double lastDownloadSpeed_ = 0;
  bool awaitingFirstSample_ = true;
};

}  // namespace quillmeter
