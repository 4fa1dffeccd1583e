#include "metrics/NetworkInfo.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/L10n.h"

namespace quillmeter {
namespace {

constexpr double minimumIntervalSeconds = 0.2;
constexpr std::string_view fallbackInterface = "en0";

// A counter below its previous value (wrap, another interface) gives 0, never a negative rate.
double rate(std::uint64_t bytes, std::uint64_t previousBytes, double elapsedSeconds) {
  return bytes < previousBytes ? 0 : static_cast<double>(bytes - previousBytes) / elapsedSeconds;
}

std::int64_t wholeBytes(double bytesPerSecond) {
  constexpr double most = 0x1p63;
  if (bytesPerSecond >= most) return std::numeric_limits<std::int64_t>::max();
  return static_cast<std::int64_t>(std::max(bytesPerSecond, 0.0));
}

}  // namespace

NetworkInfo::NetworkInfo(NetworkInterfaces& interfaces, const Clock& clock, LocaleConventions locale)
    : interfaces_(interfaces), clock_(clock), formatter_(ByteCountFormatter::transferRate(std::move(locale))) {}

NetworkSample NetworkInfo::sample() {
  // Copied: the answer is valid only until the next question. Interface names fit the small-string buffer (15 bytes).
  std::string interface(interfaces_.primaryInterface());
  if (interface.empty()) interface = fallbackInterface;
  updateRates(interfaces_.counters(interface).value_or(InterfaceCounters{}));
  return {lastUploadSpeed_, lastDownloadSpeed_, describe(lastUploadSpeed_), describe(lastDownloadSpeed_),
          interfaces_.ipv4Address(interface)};
}

void NetworkInfo::updateRates(const InterfaceCounters& counters) {
  const Date now = clock_.now();
  if (previousTimestamp_) {
    const double elapsed = now.secondsSince(*previousTimestamp_);
    if (elapsed >= minimumIntervalSeconds) {
      lastUploadSpeed_ = rate(counters.sentBytes, previousUploadBytes_, elapsed);
      lastDownloadSpeed_ = rate(counters.receivedBytes, previousDownloadBytes_, elapsed);
      awaitingFirstSample_ = false;
    }
  }
  // Replaced even without a new rate: the bytes of a very short interval are not counted in the next one.
  previousUploadBytes_ = counters.sentBytes;
  previousDownloadBytes_ = counters.receivedBytes;
  previousTimestamp_ = now;
}

std::string NetworkInfo::describe(double bytesPerSecond) const {
  if (awaitingFirstSample_) return QM_TR("正在采样");
  return formatter_.string(wholeBytes(bytesPerSecond)) + "/s";
}

}  // namespace quillmeter
