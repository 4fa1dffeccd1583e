#include <linux/genetlink.h>
#include <linux/nl80211.h>

#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/linux/Nl80211Messages.h"
#include "platform/linux/Nl80211WifiClient.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

using Bytes = std::vector<std::byte>;

template <typename Value>
Bytes bytesOf(const Value& value) {
  Bytes bytes(sizeof value);
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

Bytes bytesOf(const char* text) {
  Bytes bytes(std::strlen(text) + 1);
  std::memcpy(bytes.data(), text, bytes.size());
  return bytes;
}

Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

Bytes attribute(int type, const Bytes& payload) {
  nlattr head{};
  head.nla_len = static_cast<std::uint16_t>(NLA_HDRLEN + payload.size());
  head.nla_type = static_cast<std::uint16_t>(type);
  Bytes bytes = bytesOf(head) + payload;
  bytes.resize(NLA_ALIGN(bytes.size()));
  return bytes;
}

Bytes nested(int type, const Bytes& attributes) {
  return attribute(type | NLA_F_NESTED, attributes);
}

Bytes message(int type, std::uint8_t command, const Bytes& attributes) {
  nlmsghdr head{};
  head.nlmsg_len = static_cast<std::uint32_t>(NLMSG_HDRLEN + GENL_HDRLEN + attributes.size());
  head.nlmsg_type = static_cast<std::uint16_t>(type);
  genlmsghdr body{};
  body.cmd = command;
  return bytesOf(head) + bytesOf(body) + attributes;
}

Bytes stationMessage(const Bytes& info) {
  return message(30, NL80211_CMD_NEW_STATION,
                 attribute(NL80211_ATTR_IFINDEX, bytesOf(std::uint32_t{3})) + attribute(NL80211_ATTR_MAC, Bytes(6)) +
                     nested(NL80211_ATTR_STA_INFO, info));
}

Bytes rate(int type, const Bytes& value) {
  return nested(NL80211_STA_INFO_TX_BITRATE, attribute(type, value));
}

// A message of Linux 6.1 with simulated radios, as tools/vm_wifi_test.sh prints it.
Bytes captured(const std::string& name) {
  Bytes bytes;
  unsigned high = 16;
  for (const char digit : test::readFile(std::string(QUILLMETER_TEST_DATA "/nl80211/") + name + ".hex")) {
    const std::size_t value = std::string_view("0123456789abcdef").find(digit);
    if (value == std::string_view::npos) continue;
    if (high < 16) bytes.push_back(static_cast<std::byte>(high * 16 + value));
    high = high < 16 ? 16 : static_cast<unsigned>(value);
  }
  return bytes;
}

TEST(Nl80211Messages, theMessagesOfARealKernelAreRead) {
  const Bytes family = captured("family");
  EXPECT_EQ(genericFamilyId(RtnetlinkMessage(family)), 0x20);
  const Bytes station = captured("station-interface");
  EXPECT_EQ(stationInterface(RtnetlinkMessage(station)), (WirelessInterface{3, "wlan1"}));
  const Bytes accessPoint = captured("access-point-interface");
  EXPECT_EQ(stationInterface(RtnetlinkMessage(accessPoint)), std::nullopt);
  const Bytes link = captured("station");
  EXPECT_EQ(stationLink(RtnetlinkMessage(link)), (StationLink{-30, 2.0}));
}

TEST(Nl80211Messages, aStationTellsSignalAndRateOrWhatItHasOfThem) {
  struct Case {
    const char* what;
    Bytes info;
    StationLink link;
  };
  const auto signal = [](int dbm, int type = NL80211_STA_INFO_SIGNAL) {
    return attribute(type, bytesOf(static_cast<std::int8_t>(dbm)));
  };
  const Bytes wide = attribute(NL80211_RATE_INFO_BITRATE32, bytesOf(std::uint32_t{86'670}));
  const Bytes narrow = attribute(NL80211_RATE_INFO_BITRATE, bytesOf(std::uint16_t{20}));
  const Case cases[] = {
      {"both", signal(-30) + rate(NL80211_RATE_INFO_BITRATE32, bytesOf(std::uint32_t{20})), {-30, 2.0}},
      {"the wide rate wins", nested(NL80211_STA_INFO_TX_BITRATE, narrow + wide), {std::nullopt, 8'667.0}},
      {"only the narrow rate", nested(NL80211_STA_INFO_TX_BITRATE, narrow), {std::nullopt, 2.0}},
      {"only the average signal", signal(-71, NL80211_STA_INFO_SIGNAL_AVG), {-71, std::nullopt}},
      {"an empty rate", nested(NL80211_STA_INFO_TX_BITRATE, {}), {}},
      {"a rate that is too short", rate(NL80211_RATE_INFO_BITRATE32, Bytes(2)), {}},
      {"nothing", {}, {}}};
  for (const Case& c : cases) {
    const Bytes bytes = stationMessage(c.info);
    EXPECT_EQ(stationLink(RtnetlinkMessage(bytes)), c.link) << c.what;
  }
  const Bytes other = message(30, NL80211_CMD_NEW_INTERFACE, nested(NL80211_ATTR_STA_INFO, signal(-30)));
  EXPECT_EQ(stationLink(RtnetlinkMessage(other)), std::nullopt);
  const Bytes bare = message(30, NL80211_CMD_NEW_STATION, {});
  EXPECT_EQ(stationLink(RtnetlinkMessage(bare)), std::nullopt);
}

TEST(Nl80211Messages, onlyInterfacesThatJoinNetworksCount) {
  const auto interface = [](std::uint32_t type, const Bytes& more) {
    return message(30, NL80211_CMD_NEW_INTERFACE, attribute(NL80211_ATTR_IFTYPE, bytesOf(type)) + more);
  };
  const Bytes named =
      attribute(NL80211_ATTR_IFINDEX, bytesOf(std::int32_t{4})) + attribute(NL80211_ATTR_IFNAME, bytesOf("wlan1"));
  const Bytes station = interface(NL80211_IFTYPE_STATION, named);
  EXPECT_EQ(stationInterface(RtnetlinkMessage(station)), (WirelessInterface{4, "wlan1"}));
  const Bytes accessPoint = interface(NL80211_IFTYPE_AP, named);
  EXPECT_EQ(stationInterface(RtnetlinkMessage(accessPoint)), std::nullopt);
  const Bytes nameless = interface(NL80211_IFTYPE_STATION, {});  // a peer-to-peer device has no interface
  EXPECT_EQ(stationInterface(RtnetlinkMessage(nameless)), std::nullopt);
}

TEST(Nl80211Messages, aMessageCutAnywhereIsReadWithoutHarm) {
  const Bytes whole = stationMessage(attribute(NL80211_STA_INFO_SIGNAL, bytesOf(std::int8_t{-30})) +
                                     rate(NL80211_RATE_INFO_BITRATE32, bytesOf(std::uint32_t{20})));
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    const auto link = stationLink(RtnetlinkMessage(cut));
    EXPECT_FALSE(link && link->transmitRate) << length;
    EXPECT_EQ(stationInterface(RtnetlinkMessage(cut)), std::nullopt);
    EXPECT_EQ(genericFamilyId(RtnetlinkMessage(cut)), std::nullopt);
  }
}

TEST(Nl80211WifiClient, aMachineWithoutWirelessInterfaceTellsNothing) {
  if (std::filesystem::exists("/sys/class/ieee80211") && !std::filesystem::is_empty("/sys/class/ieee80211")) {
    GTEST_SKIP() << "this machine has a wireless interface";
  }
  Nl80211WifiClient client;
  EXPECT_EQ(client.read(), WifiFacts());
  EXPECT_EQ(client.read(), WifiFacts());
}

}  // namespace
}  // namespace quillmeter
