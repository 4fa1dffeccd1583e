// Prints what the wireless readers say, once; with "wait" it first waits up to a minute for a link, with "messages" it
// prints the kernel's wireless messages as they came, in hexadecimal. Run by tools/vm_wifi_test.sh in a machine with
// simulated radios.
#include <linux/genetlink.h>
#include <linux/nl80211.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>
#include <string_view>

#include "platform/linux/Nl80211Messages.h"
#include "platform/linux/Nl80211WifiClient.h"
#include "platform/linux/RtnetlinkPathReader.h"

using namespace quillmeter;

namespace {

void print(const char* name, const RtnetlinkMessage& message) {
  std::printf("%s ", name);
  for (std::size_t i = 0; const auto byte = message.valueAt<std::uint8_t>(i); ++i) std::printf("%02x", *byte);
  std::printf("\n");
}

RtnetlinkRequest request(int family, int flags, std::uint8_t command) {
  genlmsghdr body{};
  body.cmd = command;
  body.version = 1;
  return {family, flags, body};
}

void printMessages() {
  RtnetlinkSocket socket(NETLINK_GENERIC);
  int family = 0;
  RtnetlinkRequest familyRequest = request(GENL_ID_CTRL, 0, CTRL_CMD_GETFAMILY);
  socket.ask(familyRequest.addText(CTRL_ATTR_FAMILY_NAME, NL80211_GENL_NAME),
             [&family](const RtnetlinkMessage& message) {
               print("family", message);
               family = genericFamilyId(message).value_or(0);
             });
  int interface = 0;
  socket.ask(request(family, NLM_F_DUMP, NL80211_CMD_GET_INTERFACE), [&interface](const RtnetlinkMessage& message) {
    print("interface", message);
    if (const auto station = stationInterface(message)) interface = station->index;
  });
  RtnetlinkRequest stations = request(family, NLM_F_DUMP, NL80211_CMD_GET_STATION);
  socket.ask(stations.addNumber(NL80211_ATTR_IFINDEX, static_cast<std::uint32_t>(interface)),
             [](const RtnetlinkMessage& message) { print("station", message); });
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view mode = argc > 1 ? argv[1] : "";
  if (mode == "messages") {
    printMessages();
    return 0;
  }
  Nl80211WifiClient wifi;
  WifiFacts facts = wifi.read();
  const std::time_t start = std::time(nullptr);
  while (mode == "wait" && !(facts.rssi && facts.transmitRate) && std::time(nullptr) - start < 60) {
    ::usleep(100'000);
    facts = wifi.read();
  }
  const NetworkPath path = RtnetlinkPathReader().read();
  std::printf("powered=%s rssi=%s rate=%s path=%s\n",
              !facts.powered   ? "?"
              : *facts.powered ? "1"
                               : "0",
              facts.rssi ? std::to_string(*facts.rssi).c_str() : "?",
              facts.transmitRate ? std::to_string(*facts.transmitRate).c_str() : "?",
              !path.satisfied          ? "offline"
              : path.usesWifi          ? "wifi"
              : path.usesWiredEthernet ? "ethernet"
                                       : "other");
  return 0;
}
