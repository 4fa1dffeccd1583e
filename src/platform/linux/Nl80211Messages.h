#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/linux/Rtnetlink.h"

namespace quillmeter {

// What the kernel's wireless messages (linux/nl80211.h) say. Pure readers of one message each; what is not there or too
// short is absent.

// The number under which the kernel has a generic netlink family, from the answer to the question for it.
std::optional<std::uint16_t> genericFamilyId(const RtnetlinkMessage& message);

struct WirelessInterface {
  int index = 0;
  std::string name;
  friend bool operator==(const WirelessInterface&, const WirelessInterface&) = default;
};
// One that joins networks; absent for access points, monitors and the like.
std::optional<WirelessInterface> stationInterface(const RtnetlinkMessage& message);

struct StationLink {
  std::optional<int> signal;           // dBm
  std::optional<double> transmitRate;  // Mbit/s
  friend bool operator==(const StationLink&, const StationLink&) = default;
};
// The link to one peer, for an interface that joined a network its access point.
std::optional<StationLink> stationLink(const RtnetlinkMessage& message);

}  // namespace quillmeter
