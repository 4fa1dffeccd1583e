#include "platform/linux/RtnetlinkInterfaces.h"

#include <arpa/inet.h>
#include <linux/if_link.h>
#include <sys/socket.h>

#include <array>
#include <limits>
#include <utility>

#include "platform/linux/RtnetlinkRoutes.h"

namespace quillmeter {
namespace {

constexpr unsigned announcedGroups =
    RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE;
constexpr int mostDatagrams = 4096;  // read in one go; the rest waits for the next look

ifinfomsg linkBody(int index) {
  ifinfomsg body{};
  body.ifi_family = AF_UNSPEC;
  body.ifi_index = index;
  return body;
}

}  // namespace

RtnetlinkInterfaces::RtnetlinkInterfaces(DescriptorWatcher* watcher)
    : watcher_(watcher), announcements_(openAnnouncements(announcedGroups)) {}

void RtnetlinkInterfaces::onChange(std::function<void()> changed) {
  changed_ = std::move(changed);
  watch_.reset();
  if (!changed_ || watcher_ == nullptr || !announcements_) return;
  watch_ = watcher_->watch(announcements_.get(), DescriptorEvent::readable, [this] {
    const auto notify = changed_;  // the call may replace it
    if (takeChanges() && notify) notify();
  });
}

// Drops what the announcements since the last look made stale; true when that was anything.
bool RtnetlinkInterfaces::takeChanges() {
  const Changes changes = receiveChanges();
  // A link that goes down or loses its last address takes its IPv4 routes away without announcing them.
  if (changes.any()) knowsPrimary_ = false;
  if (changes.links) known_ = {};
  if (changes.addresses) known_.hasAddress = false;
  return changes.any();
}

RtnetlinkInterfaces::Changes RtnetlinkInterfaces::receiveChanges() {
  Changes changes;
  if (!announcements_) return {true, true, true};  // nothing announces: nothing is kept
  const bool isComplete = takeAnnouncements(announcements_, mostDatagrams, [&changes](const RtnetlinkMessage& message) {
    switch (message.type()) {
      case RTM_NEWLINK:
      case RTM_DELLINK:
        changes.links = true;
        break;
      case RTM_NEWADDR:
      case RTM_DELADDR:
        changes.addresses = true;
        break;
      case RTM_NEWROUTE:
      case RTM_DELROUTE:
        changes.routes = changes.routes || isDefaultRoute(message);
        break;
      default:
        break;
    }
  });
  if (!isComplete) return {true, true, true};
  return changes;
}

std::string_view RtnetlinkInterfaces::primaryInterface() {
  takeChanges();
  if (!knowsPrimary_) findPrimary();
  return primary_;
}

void RtnetlinkInterfaces::findPrimary() {
  int index = indexOfDefaultRoute(AF_INET);
  if (index == 0) index = indexOfDefaultRoute(AF_INET6);
  primary_ = index == 0 ? std::string() : nameOf(index);
  knowsPrimary_ = true;
}

int RtnetlinkInterfaces::indexOfDefaultRoute(unsigned char family) {
  rtmsg body{};
  body.rtm_family = family;
  body.rtm_table = RT_TABLE_MAIN;
  int index = 0;
  std::uint64_t lowest = std::numeric_limits<std::uint64_t>::max();
  questions_.ask({RTM_GETROUTE, NLM_F_DUMP, body}, [&](const RtnetlinkMessage& message) {
    if (message.type() != RTM_NEWROUTE || !isDefaultRoute(message)) return;
    const std::uint64_t metric = message.attributeValue<std::uint32_t>(sizeof(rtmsg), RTA_PRIORITY).value_or(0);
    const int interface = interfaceOf(message);
    if (interface == 0 || metric >= lowest) return;
    lowest = metric;
    index = interface;
  });
  return index;
}

std::string RtnetlinkInterfaces::nameOf(int index) {
  std::string name;
  questions_.ask({RTM_GETLINK, 0, linkBody(index)}, [&name](const RtnetlinkMessage& message) {
    name = message.attributeText(sizeof(ifinfomsg), IFLA_IFNAME);
  });
  return name;
}

const RtnetlinkInterfaces::Known& RtnetlinkInterfaces::lookUp(std::string_view interface) {
  if (known_.name == interface && !interface.empty()) return known_;
  known_ = {};
  known_.name = interface;
  RtnetlinkRequest request(RTM_GETLINK, 0, linkBody(0));
  questions_.ask(request.addText(IFLA_IFNAME, interface), [this](const RtnetlinkMessage& message) {
    known_.index = message.body<ifinfomsg>().value_or(ifinfomsg{}).ifi_index;
  });
  return known_;
}

std::optional<InterfaceCounters> RtnetlinkInterfaces::counters(std::string_view interface) {
  if (!announcements_) known_ = {};
  const int index = lookUp(interface).index;
  return index == 0 ? std::nullopt : statistics(index);
}

std::optional<InterfaceCounters> RtnetlinkInterfaces::statistics(int index) {
  if (!hasStatisticsQuestion_) return linkStatistics(index);
  if_stats_msg body{};
  body.ifindex = static_cast<std::uint32_t>(index);
  body.filter_mask = IFLA_STATS_FILTER_BIT(IFLA_STATS_LINK_64);
  std::optional<InterfaceCounters> counters;
  const int error = questions_.ask({RTM_GETSTATS, 0, body}, [&counters](const RtnetlinkMessage& message) {
    const auto link = message.attributeValue<rtnl_link_stats64>(sizeof(if_stats_msg), IFLA_STATS_LINK_64);
    if (link) counters = InterfaceCounters{link->rx_bytes, link->tx_bytes};
  });
  if (error == EOPNOTSUPP || error == EINVAL) hasStatisticsQuestion_ = false;
  return counters || hasStatisticsQuestion_ ? counters : linkStatistics(index);
}

std::optional<InterfaceCounters> RtnetlinkInterfaces::linkStatistics(int index) {
  std::optional<InterfaceCounters> counters;
  questions_.ask({RTM_GETLINK, 0, linkBody(index)}, [&counters](const RtnetlinkMessage& message) {
    const auto link = message.attributeValue<rtnl_link_stats64>(sizeof(ifinfomsg), IFLA_STATS64);
    if (link) counters = InterfaceCounters{link->rx_bytes, link->tx_bytes};
  });
  return counters;
}

std::optional<std::string> RtnetlinkInterfaces::ipv4Address(std::string_view interface) {
  const int index = lookUp(interface).index;
  if (known_.hasAddress || index == 0) return known_.address;
  ifaddrmsg body{};
  body.ifa_family = AF_INET;
  body.ifa_index = static_cast<std::uint32_t>(index);
  std::optional<in_addr> found;
  questions_.ask({RTM_GETADDR, NLM_F_DUMP, body}, [&](const RtnetlinkMessage& message) {
    const auto answer = message.body<ifaddrmsg>();
    if (found || !answer || static_cast<int>(answer->ifa_index) != index) return;
    found = message.attributeValue<in_addr>(sizeof(ifaddrmsg), IFA_LOCAL);  // the near end of a point-to-point link
    if (!found) found = message.attributeValue<in_addr>(sizeof(ifaddrmsg), IFA_ADDRESS);
  });
  std::array<char, INET_ADDRSTRLEN> text{};
  known_.address.reset();
  if (found && ::inet_ntop(AF_INET, &*found, text.data(), text.size()) != nullptr) known_.address = text.data();
  known_.hasAddress = true;
  return known_.address;
}

}  // namespace quillmeter
