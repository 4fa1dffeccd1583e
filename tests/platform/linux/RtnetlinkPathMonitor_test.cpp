#include "platform/linux/RtnetlinkPathMonitor.h"

#include <unistd.h>

#include <ctime>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "platform/fake/ManualQueue.h"
#include "platform/fake/PollWatcher.h"
#include "platform/linux/RtnetlinkPathReader.h"
#include "support/PrivateNetwork.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

using test::inPrivateNetwork;
using test::ip;
using test::plugIn;

constexpr std::time_t patienceSeconds = 20;
constexpr NetworkPath offline{};
constexpr NetworkPath wired{.satisfied = true, .usesWiredEthernet = true};
constexpr NetworkPath wireless{.satisfied = true, .usesWifi = true};

// The path once the kernel has settled on it: it works off changes of a link's state in the background.
NetworkPath settledPath(RtnetlinkPathReader& reader, const NetworkPath& expected) {
  const std::time_t start = std::time(nullptr);
  while (reader.read() != expected && std::time(nullptr) - start < patienceSeconds) ::usleep(2'000);
  return reader.read();
}

TEST(RtnetlinkPathReader, aDefaultRouteCountsAsLongAsItsLinkCarries) {
  inPrivateNetwork([] {
    const test::TemporaryDirectory noDevices;
    RtnetlinkPathReader reader(noDevices.path());
    EXPECT_EQ(settledPath(reader, offline), offline);
    plugIn();
    EXPECT_EQ(settledPath(reader, wired), wired);
    ip({"link set peer0 down"});
    EXPECT_EQ(settledPath(reader, offline), offline) << "the carrier is lost, the route is still there";
    ip({"link set peer0 up"});
    EXPECT_EQ(settledPath(reader, wired), wired);
    ip({"route del default"});
    EXPECT_EQ(settledPath(reader, offline), offline) << "an address alone is no way out";
  });
}

TEST(RtnetlinkPathReader, theBestRouteThatWorksDecidesTheKind) {
  inPrivateNetwork([] {
    const test::TemporaryDirectory devices;
    devices.write("class/net/wlan0/phy80211/index", "0\n");
    RtnetlinkPathReader reader(devices.path());
    plugIn();  // with metric 100
    ip({"link add wlan0 type veth peer name peer1", "link set peer1 up", "link set wlan0 up",
        "addr add 10.78.0.2/24 dev wlan0", "route add default via 10.78.0.1 dev wlan0 metric 600"});
    EXPECT_EQ(settledPath(reader, wired), wired);
    ip({"link set peer0 down"});
    EXPECT_EQ(settledPath(reader, wireless), wireless) << "the second route takes over";
    ip({"link set peer0 up", "route add default via 10.78.0.1 dev wlan0 metric 50"});
    EXPECT_EQ(settledPath(reader, wireless), wireless);
  });
}

TEST(RtnetlinkPathReader, aTunnelIsNeitherWiredNorWirelessAndIpv6AloneIsAPath) {
  inPrivateNetwork([] {
    const test::TemporaryDirectory noDevices;
    RtnetlinkPathReader reader(noDevices.path());
    ip({"link add six0 type veth peer name peer6", "link set peer6 up", "link set six0 up",
        "-6 addr add fd00::2/64 dev six0 nodad", "-6 route add default via fd00::1 dev six0 metric 1"});
    EXPECT_EQ(settledPath(reader, wired), wired);
    ip({"tuntap add tun0 mode tun", "addr add 10.8.0.2 peer 10.8.0.1 dev tun0", "link set tun0 up",
        "route add default dev tun0 metric 50"});
    EXPECT_EQ(settledPath(reader, wired), wired) << "nobody serves the tunnel: it carries nothing";
    ip({"link set lo up", "route add default dev lo metric 1"});
    EXPECT_EQ(settledPath(reader, (NetworkPath{.satisfied = true})), (NetworkPath{.satisfied = true}))
        << "a working link that is no Ethernet";
  });
}

TEST(RtnetlinkPathMonitor, tellsThePathOnceAtTheStartAndAtEachChange) {
  inPrivateNetwork([] {
    const test::TemporaryDirectory noDevices;
    PollWatcher watcher;
    ManualExecutor mainThread;
    RtnetlinkPathMonitorFactory paths(watcher, mainThread, noDevices.path());
    std::vector<NetworkPath> told;
    auto monitor = paths.start([&told](const NetworkPath& path) { told.push_back(path); });
    EXPECT_TRUE(told.empty()) << "never before start() returns";
    mainThread.runAll();
    EXPECT_EQ(told, std::vector{offline});
    const auto waitFor = [&](const NetworkPath& path) {
      const std::time_t start = std::time(nullptr);
      while (told.back() != path && std::time(nullptr) - start < patienceSeconds) watcher.pollOnce(1'000);
    };
    plugIn();
    waitFor(wired);
    EXPECT_EQ(told, (std::vector{offline, wired}));
    ip({"addr add 10.99.0.1/24 dev wan0", "route add 10.98.0.0/16 via 10.77.0.1", "link set peer0 down"});
    waitFor(offline);
    EXPECT_EQ(told, (std::vector{offline, wired, offline})) << "an address and another route change no path";
    monitor.reset();
    EXPECT_EQ(watcher.watches(), 0u);
  });
}

TEST(RtnetlinkPathMonitor, mayBeEndedByItsOwnCallAndBeforeItsFirst) {
  inPrivateNetwork([] {
    PollWatcher watcher;
    ManualExecutor mainThread;
    RtnetlinkPathMonitorFactory paths(watcher, mainThread);
    int calls = 0;
    paths.start([&calls](const NetworkPath&) { ++calls; }).reset();
    std::unique_ptr<NetworkPathMonitor> monitor = paths.start([&](const NetworkPath&) {
      ++calls;
      monitor.reset();
    });
    mainThread.runAll();
    EXPECT_EQ(calls, 1);
  });
}

}  // namespace
}  // namespace quillmeter
