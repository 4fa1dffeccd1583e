#include "platform/linux/RtnetlinkInterfaces.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/fake/PollWatcher.h"
#include "support/PrivateNetwork.h"

namespace quillmeter {
namespace {

using test::inPrivateNetwork;
using test::ip;
using test::plugIn;

void sendDatagrams(int count, std::size_t bytes) {
  const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(9);
  ::inet_pton(AF_INET, "10.77.0.1", &address.sin_addr);
  const std::string payload(bytes, 'x');
  for (int i = 0; i < count; ++i) {
    ::sendto(socket, payload.data(), payload.size(), 0, reinterpret_cast<const sockaddr*>(&address), sizeof address);
  }
  ::close(socket);
}

TEST(RtnetlinkInterfaces, withoutADefaultRouteThereIsNoPrimaryInterface) {
  inPrivateNetwork([] {
    RtnetlinkInterfaces interfaces(nullptr);
    EXPECT_EQ(interfaces.primaryInterface(), "");
    EXPECT_EQ(interfaces.counters("en0"), std::nullopt);
    EXPECT_EQ(interfaces.ipv4Address("en0"), std::nullopt);
    EXPECT_TRUE(interfaces.counters("lo"));
    EXPECT_EQ(interfaces.counters(""), std::nullopt);
    EXPECT_EQ(interfaces.counters(std::string(300, 'x')), std::nullopt);
    ip({"link add en0 type veth peer name peer0"});
    EXPECT_EQ(interfaces.primaryInterface(), "");
    EXPECT_TRUE(interfaces.counters("en0"));
  });
}

TEST(RtnetlinkInterfaces, countsTheBytesOfTheInterfaceThatCarriesTheDefaultRoute) {
  inPrivateNetwork([] {
    plugIn();
    RtnetlinkInterfaces interfaces(nullptr);
    ASSERT_EQ(interfaces.primaryInterface(), "wan0");
    EXPECT_EQ(interfaces.ipv4Address("wan0"), "10.77.0.2");
    const auto before = interfaces.counters("wan0");
    const auto peerBefore = interfaces.counters("peer0");
    ASSERT_TRUE(before && peerBefore);
    constexpr std::uint64_t frameBytes = 1'000 + 8 + 20 + 14;  // with UDP, IP and Ethernet headers
    sendDatagrams(50, 1'000);
    EXPECT_EQ(interfaces.counters("wan0")->sentBytes - before->sentBytes, 50 * frameBytes);
    EXPECT_EQ(interfaces.counters("peer0")->receivedBytes - peerBefore->receivedBytes, 50 * frameBytes);
  });
}

TEST(RtnetlinkInterfaces, theLowestMetricWinsAndAVpnThatGoesDownLeavesTheRoute) {
  inPrivateNetwork([] {
    plugIn();
    RtnetlinkInterfaces interfaces(nullptr);
    EXPECT_EQ(interfaces.primaryInterface(), "wan0");
    ip({"tuntap add tun0 mode tun", "addr add 10.8.0.2 peer 10.8.0.1 dev tun0", "link set tun0 up",
        "route add default dev tun0 metric 50"});
    EXPECT_EQ(interfaces.primaryInterface(), "tun0");
    EXPECT_EQ(interfaces.ipv4Address("tun0"), "10.8.0.2");  // its own end, not the peer's
    ip({"link set tun0 down"});                             // takes its route away without saying so
    EXPECT_EQ(interfaces.primaryInterface(), "wan0");
    ip({"link set peer0 down"});  // a lost carrier keeps the route
    EXPECT_EQ(interfaces.primaryInterface(), "wan0");
  });
}

TEST(RtnetlinkInterfaces, onlyUsableRoutesOfTheMainTableCount) {
  inPrivateNetwork([] {
    plugIn("default via 10.77.0.1 dev wan0 table 100");
    ip({"route add blackhole default metric 1", "route add 10.0.0.0/8 via 10.77.0.1"});
    RtnetlinkInterfaces interfaces(nullptr);
    EXPECT_EQ(interfaces.primaryInterface(), "");
    ip({"link add wan1 type veth peer name peer1", "link set peer1 up", "link set wan1 up",
        "addr add 10.78.0.2/24 dev wan1",
        "route add default metric 7 nexthop via 10.78.0.1 dev wan1 nexthop via 10.77.0.1 dev wan0"});
    EXPECT_EQ(interfaces.primaryInterface(), "wan1");
  });
}

TEST(RtnetlinkInterfaces, anIpv6RouteCountsWhereThereIsNoneOfIpv4) {
  inPrivateNetwork([] {
    plugIn();
    RtnetlinkInterfaces interfaces(nullptr);
    ip({"link add six0 type veth peer name peer6", "link set peer6 up", "link set six0 up",
        "-6 addr add fd00::2/64 dev six0 nodad", "-6 route add default via fd00::1 dev six0 metric 1"});
    EXPECT_EQ(interfaces.primaryInterface(), "wan0");
    ip({"route del default"});
    EXPECT_EQ(interfaces.primaryInterface(), "six0");
    EXPECT_EQ(interfaces.ipv4Address("six0"), std::nullopt);
    EXPECT_TRUE(interfaces.counters("six0"));
  });
}

TEST(RtnetlinkInterfaces, followsAddressesAndInterfacesThatComeAndGo) {
  inPrivateNetwork([] {
    plugIn();
    RtnetlinkInterfaces interfaces(nullptr);
    EXPECT_EQ(interfaces.ipv4Address(interfaces.primaryInterface()), "10.77.0.2");
    ip({"addr add 10.77.0.9/24 dev wan0"});
    interfaces.primaryInterface();
    EXPECT_EQ(interfaces.ipv4Address("wan0"), "10.77.0.2");  // the first one
    ip({"addr flush dev wan0", "addr add 10.77.0.7/24 dev wan0"});
    EXPECT_EQ(interfaces.primaryInterface(), "");
    EXPECT_EQ(interfaces.ipv4Address("wan0"), "10.77.0.7");

    ip({"link del wan0"});
    EXPECT_EQ(interfaces.counters("wan0"), std::nullopt);  // also when the announcement was not read yet
    EXPECT_EQ(interfaces.primaryInterface(), "");
    EXPECT_EQ(interfaces.counters("wan0"), std::nullopt);
    EXPECT_EQ(interfaces.ipv4Address("wan0"), std::nullopt);
    plugIn();
    EXPECT_EQ(interfaces.primaryInterface(), "wan0");
    EXPECT_TRUE(interfaces.counters("wan0"));
    ip({"link set wan0 down", "link set wan0 name lan0", "link set lan0 up",
        "route add default via 10.77.0.1 dev lan0"});
    EXPECT_EQ(interfaces.primaryInterface(), "lan0");
  });
}

TEST(RtnetlinkInterfaces, tellsOfChangesWhileSomebodyListens) {
  inPrivateNetwork([] {
    PollWatcher watcher;
    RtnetlinkInterfaces interfaces(&watcher);
    int changes = 0;
    interfaces.onChange([&changes] { ++changes; });
    EXPECT_FALSE(watcher.pollOnce(0));
    plugIn();
    while (watcher.pollOnce(0)) {
    }
    EXPECT_GT(changes, 0);
    EXPECT_EQ(interfaces.primaryInterface(), "wan0");

    changes = 0;
    ip({"route add 10.99.0.0/16 via 10.77.0.1"});  // no default route: nothing that anybody asks for
    while (watcher.pollOnce(0)) {
    }
    EXPECT_EQ(changes, 0);

    interfaces.onChange({});
    EXPECT_EQ(watcher.watches(), 0u);
  });
}

TEST(RtnetlinkInterfaces, aFloodOfAnnouncementsLosesNothingThatMatters) {
  inPrivateNetwork([] {
    RtnetlinkInterfaces interfaces(nullptr);
    EXPECT_EQ(interfaces.primaryInterface(), "");
    std::string batch;  // more than the socket can hold
    for (int i = 0; i < 2'000; ++i)
      batch += "addr add 10.1." + std::to_string(i / 250) + "." + std::to_string(i % 250 + 1) + "/32 dev lo\n";
    FILE* pipe = ::popen("ip -batch -", "w");
    ASSERT_NE(pipe, nullptr);
    std::fwrite(batch.data(), 1, batch.size(), pipe);
    EXPECT_EQ(::pclose(pipe), 0);
    plugIn();
    EXPECT_EQ(interfaces.primaryInterface(), "wan0");
    EXPECT_EQ(interfaces.ipv4Address("lo"), "10.1.0.1");
  });
}

TEST(RtnetlinkMessage, brokenLengthsEndTheReading) {
  nlmsghdr header{};
  header.nlmsg_len = 64;
  header.nlmsg_type = RTM_NEWLINK;
  std::byte bytes[64] = {};
  std::memcpy(bytes, &header, sizeof header);
  int visited = 0;
  const auto count = [&visited](const RtnetlinkMessage&) { ++visited; };
  forEachMessage({bytes, 64}, count);
  EXPECT_EQ(visited, 1);
  forEachMessage({bytes, 63}, count);
  forEachMessage({bytes, 15}, count);
  EXPECT_EQ(visited, 1);

  const RtnetlinkMessage message(bytes);
  EXPECT_EQ(message.attribute(sizeof(ifinfomsg), 0), std::nullopt);  // of length 0: would never end
  const rtattr attribute{200, IFLA_IFNAME};
  std::memcpy(bytes + 32, &attribute, sizeof attribute);
  EXPECT_EQ(message.attributeText(sizeof(ifinfomsg), IFLA_IFNAME), "");
  const rtattr text{8, IFLA_IFNAME};
  std::memcpy(bytes + 32, &text, sizeof text);
  std::memcpy(bytes + 36, "wan0", 4);  // without its NUL
  EXPECT_EQ(message.attributeText(sizeof(ifinfomsg), IFLA_IFNAME), "wan0");
  EXPECT_EQ(message.attributeValue<std::uint64_t>(sizeof(ifinfomsg), IFLA_IFNAME), std::nullopt);
}

}  // namespace
}  // namespace quillmeter
