#include "ctl/ScanProgressLine.h"

#include <chrono>
#include <string>

#include "base/L10n.h"

namespace quillmeter::ctl {
namespace {

constexpr std::chrono::milliseconds patience{500};
constexpr std::chrono::milliseconds redrawInterval{100};

}  // namespace

ScanProgressLine::ScanProgressLine(Console& console, const AgentUsageCollector& collector)
    : console_(console), collector_(collector) {
  if (console.showsProgress()) thread_ = std::jthread([this](std::stop_token stop) { draw(std::move(stop)); });
}

ScanProgressLine::~ScanProgressLine() {
  if (!thread_.joinable()) return;
  thread_.request_stop();
  thread_.join();
  console_.showProgress({});
}

void ScanProgressLine::draw(std::stop_token stop) {
  std::unique_lock lock(mutex_);
  auto wait = patience;
  while (!stopped_.wait_for(lock, stop, wait, [&stop] { return stop.stop_requested(); })) {
    if (stop.stop_requested()) return;
    const AgentScanProgress progress = collector_.progress();
    std::string line = QM_TR("正在读取本地 Agent 日志");
    if (progress.filesTotal > 0)
      line += "  " + std::to_string(progress.filesDone) + "/" + std::to_string(progress.filesTotal);
    console_.showProgress(line);
    wait = redrawInterval;
  }
}

}  // namespace quillmeter::ctl
