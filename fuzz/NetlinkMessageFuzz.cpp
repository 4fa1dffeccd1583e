#include <linux/if_link.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>

#include "platform/linux/Nl80211Messages.h"
#include "platform/linux/Rtnetlink.h"
#include "platform/linux/RtnetlinkRoutes.h"

using namespace quillmeter;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

bool liesWithin(std::string_view part, std::span<const std::byte> whole) {
  const auto* begin = reinterpret_cast<const char*>(whole.data());
  return part.empty() || (part.data() >= begin && part.data() + part.size() <= begin + whole.size());
}

}  // namespace

// A datagram of the kernel's: each message is read as whatever it might be, and no view leaves the bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span<const std::byte> datagram(reinterpret_cast<const std::byte*>(data), size);
  forEachMessage(datagram, [datagram](const RtnetlinkMessage& message) {
    check(message.header().nlmsg_len >= sizeof(nlmsghdr));
    check(liesWithin(message.attributeText(sizeof(ifinfomsg), IFLA_IFNAME), datagram));
    if (isDefaultRoute(message)) check(message.body<rtmsg>().has_value());
    static_cast<void>(interfaceOf(message));
    static_cast<void>(message.attributeValue<rtnl_link_stats64>(sizeof(ifinfomsg), IFLA_STATS64));
    static_cast<void>(genericFamilyId(message));
    if (const auto interface = stationInterface(message)) check(interface->index > 0 && !interface->name.empty());
    if (const auto link = stationLink(message)) {
      check(!link->signal || (*link->signal >= -128 && *link->signal <= 127));
      check(!link->transmitRate || *link->transmitRate >= 0);
    }
  });
  return 0;
}
