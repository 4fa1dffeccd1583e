#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/WifiClient.h"
#include "platform/linux/Nl80211Messages.h"
#include "platform/linux/Rtnetlink.h"

namespace quillmeter {

// The wireless interface that joins networks, by nl80211: the one that is in a network, else the first. It has power
// when it is switched on and neither the user nor a hardware switch blocks its radio (rfkill, below `systemFolder`). On
// a machine without wireless subsystem everything is absent. The sockets are made at the first reading.
class Nl80211WifiClient final : public WifiClient {
 public:
  explicit Nl80211WifiClient(std::filesystem::path systemFolder = "/sys") : systemFolder_(std::move(systemFolder)) {}

  WifiFacts read() override;

 private:
  std::optional<std::uint16_t> family();
  std::vector<WirelessInterface> stationInterfaces(std::uint16_t family);
  std::optional<StationLink> link(std::uint16_t family, int interface);
  bool isPowered(const WirelessInterface& interface);
  bool isRadioBlocked(const std::string& interfaceName) const;

  std::filesystem::path systemFolder_;
  std::optional<RtnetlinkSocket> wireless_;
  std::optional<RtnetlinkSocket> links_;
  std::optional<std::uint16_t> family_;
};

}  // namespace quillmeter
