#pragma once

#include <filesystem>

#include "platform/DescriptorWatcher.h"
#include "platform/MainExecutor.h"
#include "platform/NetworkPathMonitor.h"

namespace quillmeter {

// Follows the path to the network by the kernel's announcements of links and default routes; asks nothing as long as
// none comes. What the constructor takes outlives the monitors.
class RtnetlinkPathMonitorFactory final : public NetworkPathMonitorFactory {
 public:
  RtnetlinkPathMonitorFactory(DescriptorWatcher& watcher, MainExecutor& mainExecutor,
                              std::filesystem::path systemFolder = "/sys")
      : watcher_(watcher), mainExecutor_(mainExecutor), systemFolder_(std::move(systemFolder)) {}

  std::unique_ptr<NetworkPathMonitor> start(std::function<void(const NetworkPath&)> updated) override;

 private:
  DescriptorWatcher& watcher_;
  MainExecutor& mainExecutor_;
  std::filesystem::path systemFolder_;
};

}  // namespace quillmeter
