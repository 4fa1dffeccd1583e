#include "platform/linux/RtnetlinkRoutes.h"

#include <sys/socket.h>

namespace quillmeter {
namespace {

std::uint32_t tableOf(const RtnetlinkMessage& message, const rtmsg& route) {
  return message.attributeValue<std::uint32_t>(sizeof route, RTA_TABLE).value_or(route.rtm_table);
}

}  // namespace

FileDescriptor openAnnouncements(unsigned groups) {
  FileDescriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE));
  sockaddr_nl address{};
  address.nl_family = AF_NETLINK;
  address.nl_groups = groups;
  if (::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) socket.reset();
  return socket;
}

bool isDefaultRoute(const RtnetlinkMessage& message) {
  const auto route = message.body<rtmsg>();
  return route && route->rtm_dst_len == 0 && route->rtm_type == RTN_UNICAST &&
         (route->rtm_flags & (RTM_F_CLONED | RTNH_F_DEAD)) == 0 && tableOf(message, *route) == RT_TABLE_MAIN;
}

int interfaceOf(const RtnetlinkMessage& route) {
  if (const auto index = route.attributeValue<int>(sizeof(rtmsg), RTA_OIF)) return *index;
  const auto hop = route.attributeValue<rtnexthop>(sizeof(rtmsg), RTA_MULTIPATH);
  return hop ? hop->rtnh_ifindex : 0;
}

}  // namespace quillmeter
