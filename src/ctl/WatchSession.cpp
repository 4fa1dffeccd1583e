#include "ctl/WatchSession.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

#include "access/AgentSwitch.h"
#include "base/L10n.h"
#include "ctl/AgentOverview.h"
#include "platform/linux/StartupPages.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter::ctl {
namespace {

constexpr int inputDescriptor = 0;
constexpr int outputDescriptor = 1;
constexpr double scanPatienceSeconds = 1;
constexpr char redrawKey = 'L' - '@';  // Ctrl-L
constexpr char escapeKey = '\x1b';

bool understandsSequences() {
  const char* term = std::getenv("TERM");
  return term != nullptr && *term != '\0' && std::string_view(term) != "dumb";
}

// Of a key that sends more than one character (an arrow, a function key, one with Alt), none of which is ours.
std::size_t escapeSequenceLength(std::string_view keys) {
  std::size_t length = 2;
  if (keys.substr(1).starts_with('[')) {
    while (length < keys.size() && (keys[length] < '@' || keys[length] > '~')) ++length;
    ++length;
  } else if (keys.substr(1).starts_with('O')) {
    length = 3;
  }
  return std::min(length, keys.size());
}

MonitorStoreServices services(ToolContext& context, const MonotonicClock& uptime, Platform& platform,
                              SerialQueue& queue, SharedSnapshotStore& shared) {
  return {context.clock,       uptime,         *platform.timers, *platform.mainExecutor, queue,
          context.preferences, context.access, shared,           *platform.widgetReload, context.locale};
}

}  // namespace

WatchSession::WatchSession(ToolContext& context, WatchCommand::Parts& parts)
    : context_(context),
      signals_({SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGWINCH, SIGTSTP}),
      calendar_(Calendar::current(context.locale.firstWeekday)),
      platform_(parts.makePlatform()),
      metrics_(platform_, context.clock, context.locale),
      shared_(parts.suite, context.clock),
      collector_(std::make_shared<AgentUsageCollector>(opener_, calendar_, parts.makeAdapters(opener_))),
      agentQueue_("com.kesto.Quillmeter.agent-usage", QueuePriority::utility),
      store_(services(context, uptime_, platform_, agentQueue_, shared_), metrics_.sources(), collector_) {}

WatchSession::~WatchSession() = default;

ExitCode WatchSession::run() {
  signalWatch_ = whenReadable(signals_.descriptor(), &WatchSession::takeSignals);
  if (context_.console.outputIsTerminal() && understandsSequences()) {
    startScreen();
  } else {
    startLines();
  }
  subscriptions_.push_back(store_.onSystemChange([this] { systemChanged(); }));
  subscriptions_.push_back(store_.onAgentsChange([this] { agentsChanged(); }));
  subscriptions_.push_back(store_.onActivityChange([this] { draw(); }));
  subscriptions_.push_back(
      context_.preferences.onChange([this](const std::vector<std::string>& keys, PreferenceChangeOrigin origin) {
        if (origin == PreferenceChangeOrigin::anotherProgram) settingsChanged(keys);
      }));
  store_.start();
  isStarting_ = false;
  loop_.run();
  subscriptions_.clear();
  store_.stop();
  if (screen_) screen_->leave();
  awaitScan();
  return code_;
}

std::unique_ptr<DescriptorWatch> WatchSession::whenReadable(int descriptor, void (WatchSession::*ready)()) {
  return platform_.descriptors->watch(descriptor, DescriptorEvent::readable, [this, ready] { (this->*ready)(); });
}

void WatchSession::startScreen() {
  screen_.emplace(inputDescriptor, outputDescriptor);
  screen_->enter();
  if (::isatty(inputDescriptor) == 1) keyWatch_ = whenReadable(inputDescriptor, &WatchSession::takeKeys);
}

void WatchSession::startLines() {
  lines_.emplace(outputDescriptor);
  // A pipe's writing end becomes "readable" when its reader leaves, and only then.
  pollfd pipe{lines_->descriptor(), POLLIN, 0};
  if (::poll(&pipe, 1, 0) == 0) readerWatch_ = whenReadable(lines_->descriptor(), &WatchSession::checkReader);
  if ((pipe.revents & POLLERR) != 0) quit(ExitCode::readerGone);
}

void WatchSession::takeSignals() {
  while (const auto signal = signals_.take()) {
    if (*signal == SIGTSTP) {
      suspend();
    } else if (*signal == SIGWINCH) {
      if (screen_) screen_->invalidate();
      draw();
    } else {
      quit(ExitCode::done);
    }
  }
}

// As any program in the foreground does on Ctrl-Z, with the terminal as it was before.
void WatchSession::suspend() {
  if (screen_) screen_->leave();
  ::raise(SIGSTOP);
  if (screen_) screen_->enter();
  draw();
}

void WatchSession::takeKeys() {
  std::array<char, 64> keys{};
  const ssize_t count = ::read(inputDescriptor, keys.data(), keys.size());
  if (count <= 0 && (count == 0 || (errno != EINTR && errno != EAGAIN))) {
    quit(ExitCode::done);  // the terminal is gone
    return;
  }
  if (count > 0) handleKeys({keys.data(), static_cast<std::size_t>(count)});
}

void WatchSession::handleKeys(std::string_view keys) {
  while (!keys.empty() && !isQuitting_) {
    if (keys.front() == escapeKey) {
      keys.remove_prefix(escapeSequenceLength(keys));
      continue;
    }
    const char key = keys.front();
    keys.remove_prefix(1);
    if (key == 'q' || key == 'Q') quit(ExitCode::done);
    if (key == 'r' || key == 'R') store_.refreshAll();
    if (key == 'm' || key == 'M') store_.cleanMemory();
    if (key == redrawKey) screen_->invalidate(), draw();
  }
}

void WatchSession::systemChanged() {
  if (screen_) {
    draw();
  } else if (!isStarting_) {  // the first sample only primes rates and shares
    printLine();
  }
  const bool isAnotherDay = store_.agents().isOfAnotherDay(calendar_, context_.clock.now());
  if (isAnotherDay && !store_.isRefreshingAgents() && !store_.isCleaningMemory()) store_.refreshAgents();
}

void WatchSession::agentsChanged() {
  findHints();
  draw();
  // The start is over when the first scan is: what it alone needed goes back to the system, on the queue, since that
  // takes its time.
  if (hasReleasedStart_ || store_.agents().lastUpdated == Date::distantPast()) return;
  hasReleasedStart_ = true;
  agentQueue_.post([&allocator = *platform_.allocatorRelief] {
    allocator.releaseUnusedMemory();
    releaseStartupPages();
  });
}

// Agents that could be counted at once: found here, not connected, and not switched off by the user.
void WatchSession::findHints() {
  hints_.clear();
  for (const AgentLogProvider provider : store_.detectedAgentProviders()) {
    if (context_.preferences.domain().contains(bookmarkKey(provider))) continue;
    if (wasSwitchedOff(context_.preferences, provider)) continue;
    hints_.push_back(connectCommand(context_, provider));
  }
}

void WatchSession::settingsChanged(const std::vector<std::string>& keys) {
  if (std::ranges::find(keys, SettingsKeys::refreshInterval.key) == keys.end()) return;
  // Told from within the store's own timer: restarted when that call is over.
  platform_.mainExecutor->post([this] {
    if (isQuitting_) return;
    store_.stop();
    store_.start();
  });
}

WatchFrame WatchSession::frame() {
  std::optional<std::string> activity = store_.memoryCleanupMessage();
  if (store_.isCleaningMemory()) activity = QM_TR("正在清理内存…");
  return {store_.system(),
          store_.cpuHistory(),
          store_.memoryHistory(),
          store_.networkHistory(),
          store_.agents(),
          std::move(activity),
          hints_,
          calendar_,
          context_.locale,
          context_.clock.now()};
}

// While the terminal does not take what it was given, nothing is drawn: the newest frame comes when it does again.
void WatchSession::draw() {
  if (!screen_ || isQuitting_) return;
  NonblockingOutput& output = screen_->output();
  output.sendRest();
  const bool taken = !output.isBlocked() && screen_->show(watchLines(context_.console, frame(), screen_->size()));
  if ((!taken || output.isBlocked()) && !writableWatch_) {
    writableWatch_ =
        platform_.descriptors->watch(output.descriptor(), DescriptorEvent::writable, [this] { outputWritable(); });
  }
  checkOutput(output);
}

void WatchSession::outputWritable() {
  screen_->output().sendRest();
  if (screen_->output().isBlocked()) return;
  writableWatch_.reset();
  draw();
}

void WatchSession::printLine() {
  if (isQuitting_) return;
  lines_->offer(watchPlainLine(frame()) + "\n");
  checkOutput(*lines_);
}

void WatchSession::checkReader() {
  pollfd pipe{lines_->descriptor(), POLLIN, 0};
  if (::poll(&pipe, 1, 0) <= 0) return;
  readerWatch_.reset();
  if ((pipe.revents & (POLLERR | POLLHUP)) != 0) quit(ExitCode::readerGone);
}

void WatchSession::checkOutput(const NonblockingOutput& output) {
  if (output.error() == 0 || isQuitting_) return;
  if (output.error() == EPIPE || output.error() == EIO) {  // EIO: a terminal that was closed
    quit(ExitCode::readerGone);
    return;
  }
  quit(context_.console.failure(L10n::format(QM_TR("无法写入标准输出：%@。"), {std::strerror(output.error())})));
}

void WatchSession::quit(ExitCode code) {
  if (isQuitting_) return;
  isQuitting_ = true;
  code_ = code;
  loop_.quit();
}

// The queue's end would wait for a scan of any length. Nothing of ours is lost with it: it only reads.
void WatchSession::awaitScan() {
  if (!store_.isRefreshingAgents() && !store_.isCleaningMemory()) return;
  bool isOver = false;
  QtEventLoop& loop = loop_;
  const auto deadline = platform_.timers->once(scanPatienceSeconds, [&] { loop.quit(); });
  agentQueue_.post([&isOver, &loop, &main = *platform_.mainExecutor] {
    main.post([&isOver, &loop] {
      isOver = true;
      loop.quit();
    });
  });
  loop_.run();
  if (!isOver) ::_exit(static_cast<int>(context_.console.finish(code_)));
}

}  // namespace quillmeter::ctl
