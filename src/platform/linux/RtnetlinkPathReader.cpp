#include "platform/linux/RtnetlinkPathReader.h"

#include <linux/if.h>
#include <linux/if_arp.h>

#include <algorithm>
#include <system_error>

#include "platform/linux/RtnetlinkRoutes.h"

namespace quillmeter {

NetworkPath RtnetlinkPathReader::read() {
  for (const int family : {AF_INET, AF_INET6}) {
    for (const Route& route : defaultRoutes(family)) {
      const Link way = link(route.interface);
      if (!way.works) continue;
      const bool wireless = isWireless(way.name);
      return {.satisfied = true, .usesWifi = wireless, .usesWiredEthernet = way.isEthernet && !wireless};
    }
  }
  return {};
}

// The best one first.
std::vector<RtnetlinkPathReader::Route> RtnetlinkPathReader::defaultRoutes(int family) {
  rtmsg body{};
  body.rtm_family = static_cast<unsigned char>(family);
  body.rtm_table = RT_TABLE_MAIN;
  std::vector<Route> routes;
  questions_.ask({RTM_GETROUTE, NLM_F_DUMP, body}, [&routes](const RtnetlinkMessage& message) {
    if (message.type() != RTM_NEWROUTE || !isDefaultRoute(message)) return;
    const Route route{message.attributeValue<std::uint32_t>(sizeof(rtmsg), RTA_PRIORITY).value_or(0),
                      interfaceOf(message)};
    if (route.interface != 0) routes.push_back(route);
  });
  std::ranges::stable_sort(routes, {}, &Route::metric);
  return routes;
}

// A tunnel has no operational state of its own ("unknown"); an interface that waits for its authentication is not up.
RtnetlinkPathReader::Link RtnetlinkPathReader::link(int interface) {
  ifinfomsg body{};
  body.ifi_family = AF_UNSPEC;
  body.ifi_index = interface;
  Link result;
  questions_.ask({RTM_GETLINK, 0, body}, [&result](const RtnetlinkMessage& message) {
    const ifinfomsg answer = message.body<ifinfomsg>().value_or(ifinfomsg{});
    const auto state =
        message.attributeValue<std::uint8_t>(sizeof(ifinfomsg), IFLA_OPERSTATE).value_or(IF_OPER_UNKNOWN);
    constexpr unsigned needed = IFF_UP | IFF_LOWER_UP;
    result.name = message.attributeText(sizeof(ifinfomsg), IFLA_IFNAME);
    result.works = (answer.ifi_flags & needed) == needed && (state == IF_OPER_UP || state == IF_OPER_UNKNOWN);
    result.isEthernet = answer.ifi_type == ARPHRD_ETHER;
  });
  return result;
}

bool RtnetlinkPathReader::isWireless(const std::string& name) const {
  if (name.empty() || name.find('/') != std::string::npos) return false;
  const std::filesystem::path folder = systemFolder_ / "class/net" / name;
  std::error_code ignored;
  return std::filesystem::exists(folder / "phy80211", ignored) || std::filesystem::exists(folder / "wireless", ignored);
}

}  // namespace quillmeter
