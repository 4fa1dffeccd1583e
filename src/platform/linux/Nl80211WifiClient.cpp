#include "platform/linux/Nl80211WifiClient.h"

#include <linux/genetlink.h>
#include <linux/if.h>
#include <linux/nl80211.h>

#include <algorithm>
#include <fstream>
#include <system_error>

namespace quillmeter {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostInterfaces = 16;  // looked at; a machine has one or two

RtnetlinkRequest genericRequest(int family, int flags, std::uint8_t command) {
  genlmsghdr body{};
  body.cmd = command;
  body.version = 1;
  return {family, flags, body};
}

bool saysYes(const fs::path& file) {
  char value = '0';
  return std::ifstream(file).get(value) && value != '0';
}

}  // namespace

WifiFacts Nl80211WifiClient::read() {
  if (!wireless_) wireless_.emplace(NETLINK_GENERIC);
  const auto known = family();
  if (!known) return {};
  const std::vector<WirelessInterface> interfaces = stationInterfaces(*known);
  if (interfaces.empty()) return {};
  for (const WirelessInterface& interface : interfaces) {
    if (const auto found = link(*known, interface.index)) {
      return {.powered = isPowered(interface), .rssi = found->signal, .transmitRate = found->transmitRate};
    }
  }
  return {.powered = isPowered(interfaces.front())};
}

// Asked for as long as there is none: the wireless modules may be loaded later.
std::optional<std::uint16_t> Nl80211WifiClient::family() {
  if (!family_) {
    RtnetlinkRequest request = genericRequest(GENL_ID_CTRL, 0, CTRL_CMD_GETFAMILY);
    wireless_->ask(request.addText(CTRL_ATTR_FAMILY_NAME, NL80211_GENL_NAME),
                   [this](const RtnetlinkMessage& message) { family_ = genericFamilyId(message); });
  }
  return family_;
}

std::vector<WirelessInterface> Nl80211WifiClient::stationInterfaces(std::uint16_t family) {
  std::vector<WirelessInterface> interfaces;
  const auto visit = [&interfaces](const RtnetlinkMessage& message) {
    auto interface = stationInterface(message);
    if (interface && interfaces.size() < mostInterfaces) interfaces.push_back(std::move(*interface));
  };
  // The number is another one after the modules were loaded again.
  if (wireless_->ask(genericRequest(family, NLM_F_DUMP, NL80211_CMD_GET_INTERFACE), visit) != 0) family_.reset();
  std::ranges::sort(interfaces, {}, &WirelessInterface::index);
  return interfaces;
}

std::optional<StationLink> Nl80211WifiClient::link(std::uint16_t family, int interface) {
  RtnetlinkRequest request = genericRequest(family, NLM_F_DUMP, NL80211_CMD_GET_STATION);
  std::optional<StationLink> found;
  wireless_->ask(request.addNumber(NL80211_ATTR_IFINDEX, static_cast<std::uint32_t>(interface)),
                 [&found](const RtnetlinkMessage& message) {
                   if (!found) found = stationLink(message);
                 });
  return found;
}

bool Nl80211WifiClient::isPowered(const WirelessInterface& interface) {
  if (!links_) links_.emplace();
  ifinfomsg body{};
  body.ifi_family = AF_UNSPEC;
  body.ifi_index = interface.index;
  bool isUp = false;
  links_->ask({RTM_GETLINK, 0, body}, [&isUp](const RtnetlinkMessage& message) {
    isUp = (message.body<ifinfomsg>().value_or(ifinfomsg{}).ifi_flags & IFF_UP) != 0;
  });
  return isUp && !isRadioBlocked(interface.name);
}

bool Nl80211WifiClient::isRadioBlocked(const std::string& interfaceName) const {
  if (interfaceName.find('/') != std::string::npos) return false;
  std::error_code error;
  fs::directory_iterator entries(systemFolder_ / "class/net" / interfaceName / "phy80211", error);
  for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
    if (!entries->path().filename().string().starts_with("rfkill")) continue;
    if (saysYes(entries->path() / "soft") || saysYes(entries->path() / "hard")) return true;
  }
  return false;
}

}  // namespace quillmeter
