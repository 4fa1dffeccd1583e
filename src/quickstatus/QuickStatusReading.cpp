#include "quickstatus/QuickStatusReading.h"

#include "quickstatus/QuickAudioHardware.h"

namespace quillmeter {

QuickConnection connectionOf(const NetworkPath& path) {
  if (!path.satisfied) return QuickConnection::offline;
  if (path.usesWifi) return QuickConnection::wifi;
  return path.usesWiredEthernet ? QuickConnection::ethernet : QuickConnection::other;
}

QuickStatusSnapshot readQuickStatus(WifiClient& wifi, AudioHardware& audio) {
  QuickStatusSnapshot reading;
  const WifiFacts link = wifi.read();
  reading.wifiPowered = link.powered;
  reading.wifiRSSI = link.rssi;
  reading.wifiRate = link.transmitRate;
  QuickAudioHardware(audio).read(reading);
  return reading;
}

}  // namespace quillmeter
