#include "platform/linux/RtnetlinkRoutes.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>

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

bool takeAnnouncements(const FileDescriptor& announcements, int mostDatagrams,
                       const std::function<void(const RtnetlinkMessage&)>& visit) {
  bool isComplete = true;
  alignas(nlmsghdr) std::array<std::byte, 8192> buffer;
  for (int i = 0; i < mostDatagrams; ++i) {
    const ssize_t count = ::recv(announcements.get(), buffer.data(), buffer.size(), MSG_TRUNC);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && errno != ENOBUFS) break;
    // The socket was full, or this one does not fit.
    if (count < 0 || static_cast<std::size_t>(count) > buffer.size()) {
      isComplete = false;
      continue;
    }
    forEachMessage({buffer.data(), static_cast<std::size_t>(count)}, visit);
  }
  return isComplete;
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
