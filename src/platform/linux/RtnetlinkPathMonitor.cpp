#include "platform/linux/RtnetlinkPathMonitor.h"

#include <optional>
#include <utility>

#include "platform/linux/RtnetlinkPathReader.h"
#include "platform/linux/RtnetlinkRoutes.h"

namespace quillmeter {
namespace {

constexpr unsigned announcedGroups = RTMGRP_LINK | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE;
constexpr int mostDatagrams = 256;  // taken in one go; the watch calls again for the rest

bool concernsThePath(const RtnetlinkMessage& message) {
  const int type = message.type();
  if (type == RTM_NEWLINK || type == RTM_DELLINK) return true;
  return (type == RTM_NEWROUTE || type == RTM_DELROUTE) && isDefaultRoute(message);
}

class RtnetlinkPathMonitor final : public NetworkPathMonitor {
 public:
  RtnetlinkPathMonitor(DescriptorWatcher& watcher, MainExecutor& mainExecutor, std::filesystem::path systemFolder,
                       std::function<void(const NetworkPath&)> updated)
      : reader_(std::move(systemFolder)),
        updated_(std::move(updated)),
        announcements_(openAnnouncements(announcedGroups)),
        self_(std::make_shared<RtnetlinkPathMonitor*>(this)) {
    if (announcements_) {
      watch_ = watcher.watch(announcements_.get(), DescriptorEvent::readable, [this] {
        if (takeChanges()) update();
      });
    }
    mainExecutor.post([self = std::weak_ptr(self_)] {
      if (const auto monitor = self.lock()) (*monitor)->update();
    });
  }
  RtnetlinkPathMonitor(const RtnetlinkPathMonitor&) = delete;
  RtnetlinkPathMonitor& operator=(const RtnetlinkPathMonitor&) = delete;

 private:
  // The call may end this monitor.
  void update() {
    const NetworkPath path = reader_.read();
    if (path == told_) return;
    told_ = path;
    const auto updated = updated_;
    updated(path);
  }

  bool takeChanges() {
    bool concerned = false;
    const bool isComplete = takeAnnouncements(
        announcements_, mostDatagrams,
        [&concerned](const RtnetlinkMessage& message) { concerned = concerned || concernsThePath(message); });
    return concerned || !isComplete;
  }

  RtnetlinkPathReader reader_;
  std::function<void(const NetworkPath&)> updated_;
  std::optional<NetworkPath> told_;
  FileDescriptor announcements_;
  std::unique_ptr<DescriptorWatch> watch_;
  std::shared_ptr<RtnetlinkPathMonitor*> self_;  // by which the first call finds this, or nothing once it is gone
};

}  // namespace

std::unique_ptr<NetworkPathMonitor> RtnetlinkPathMonitorFactory::start(
    std::function<void(const NetworkPath&)> updated) {
  return std::make_unique<RtnetlinkPathMonitor>(watcher_, mainExecutor_, systemFolder_, std::move(updated));
}

}  // namespace quillmeter
