#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Calendar.h"
#include "base/Clock.h"
#include "base/FileOpener.h"
#include "base/SerialQueue.h"
#include "core/MachineMetrics.h"
#include "core/MonitorStore.h"
#include "core/SharedSnapshotStore.h"
#include "ctl/NonblockingOutput.h"
#include "ctl/TerminalScreen.h"
#include "ctl/ToolContext.h"
#include "ctl/WatchCommand.h"
#include "ctl/WatchView.h"
#include "platform/Platform.h"
#include "platform/linux/SignalDescriptor.h"
#include "platform/qt/QtEventLoop.h"

namespace quillmeter::ctl {

// One run of `watch`: the monitor store on an event loop of its own, with a screen or plain lines as its presentation.
// Nothing polls: the store's timer, keys, signals and the reader of the output wake it. Main thread.
class WatchSession {
 public:
  WatchSession(ToolContext& context, WatchCommand::Parts& parts);
  ~WatchSession();
  WatchSession(const WatchSession&) = delete;
  WatchSession& operator=(const WatchSession&) = delete;

  ExitCode run();

 private:
  std::unique_ptr<DescriptorWatch> whenReadable(int descriptor, void (WatchSession::*ready)());
  void startScreen();
  void startLines();
  void takeSignals();
  void takeKeys();
  void handleKeys(std::string_view keys);
  void suspend();
  void systemChanged();
  void agentsChanged();
  void findHints();
  void settingsChanged(const std::vector<std::string>& keys);
  WatchFrame frame();
  void draw();
  void printLine();
  void outputWritable();
  void checkReader();
  void checkOutput(const NonblockingOutput& output);
  void quit(ExitCode code);
  // Lets a scan that runs come to its end, for a moment.
  void awaitScan();

  ToolContext& context_;
  SignalDescriptor signals_;
  QtEventLoop loop_;
  SystemMonotonicClock uptime_;
  Calendar calendar_;
  Platform platform_;
  MachineMetrics metrics_;
  SharedSnapshotStore shared_;
  SystemFileOpener opener_;
  std::shared_ptr<AgentUsageCollector> collector_;
  ThreadSerialQueue agentQueue_;
  MonitorStore store_;

  std::optional<TerminalScreen> screen_;    // either
  std::optional<NonblockingOutput> lines_;  // or
  std::vector<std::string> hints_;
  bool isStarting_ = true;
  bool hasReleasedStart_ = false;
  bool isQuitting_ = false;
  ExitCode code_ = ExitCode::done;
  std::unique_ptr<DescriptorWatch> signalWatch_, keyWatch_, readerWatch_, writableWatch_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmeter::ctl
