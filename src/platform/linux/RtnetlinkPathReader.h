#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/NetworkPathMonitor.h"
#include "platform/linux/Rtnetlink.h"

namespace quillmeter {

// How the machine reaches the network at the moment of the question: by the default route of the main table whose link
// works, IPv4 before IPv6, then the lowest metric. A link that lost its carrier keeps its route, so the link itself is
// asked. Whether it is a wireless one stands below `systemFolder`/class/net.
class RtnetlinkPathReader {
 public:
  explicit RtnetlinkPathReader(std::filesystem::path systemFolder = "/sys") : systemFolder_(std::move(systemFolder)) {}

  NetworkPath read();

 private:
  struct Route {
    std::uint32_t metric = 0;
    int interface = 0;
  };
  struct Link {
    std::string name;
    bool works = false;
    bool isEthernet = false;  // by its frames; wireless links have these, too
  };

  std::vector<Route> defaultRoutes(int family);
  Link link(int interface);
  bool isWireless(const std::string& name) const;

  std::filesystem::path systemFolder_;
  RtnetlinkSocket questions_;
};

}  // namespace quillmeter
