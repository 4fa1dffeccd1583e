#pragma once

#include <memory>
#include <string>

#include "platform/DescriptorWatcher.h"
#include "platform/NetworkInterfaces.h"
#include "platform/linux/Rtnetlink.h"

namespace quillmeter {

// Network interfaces by the kernel's routing socket. The primary interface is that of the main table's default route
// with the lowest metric, of IPv4 or else of IPv6. Names and addresses are kept until the kernel announces a change, so
// that a sample costs one look for announcements and one question, for the counters.
class RtnetlinkInterfaces final : public NetworkInterfaces {
 public:
  // `watcher` is needed for onChange only and may be null.
  explicit RtnetlinkInterfaces(DescriptorWatcher* watcher);

  std::string_view primaryInterface() override;
  std::optional<InterfaceCounters> counters(std::string_view interface) override;
  std::optional<std::string> ipv4Address(std::string_view interface) override;
  void onChange(std::function<void()> changed) override;

 private:
  // What is known of the interface that was asked for last.
  struct Known {
    std::string name;
    int index = 0;            // 0: there is none of this name
    bool hasAddress = false;  // `address` is up to date
    std::optional<std::string> address;
  };
  // What an announcement made stale.
  struct Changes {
    bool links = false;
    bool addresses = false;
    bool routes = false;
    bool any() const { return links || addresses || routes; }
  };

  bool takeChanges();
  Changes receiveChanges();
  void findPrimary();
  int indexOfDefaultRoute(unsigned char family);
  std::string nameOf(int index);
  const Known& lookUp(std::string_view interface);
  std::optional<InterfaceCounters> statistics(int index);
  std::optional<InterfaceCounters> linkStatistics(int index);

  DescriptorWatcher* watcher_;
  RtnetlinkSocket questions_;
  FileDescriptor announcements_;
  std::unique_ptr<DescriptorWatch> watch_;
  std::function<void()> changed_;
  std::string primary_;
  bool knowsPrimary_ = false;
  bool hasStatisticsQuestion_ = true;  // the kernel answers RTM_GETSTATS (since 4.7)
  Known known_;
};

}  // namespace quillmeter
