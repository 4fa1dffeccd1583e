#include "screentime/ScreenTimeMonitor.h"

#include <cmath>
#include <limits>
#include <utility>

#include <fmt/format.h>

#include "base/L10n.h"

namespace quillmeter {
namespace {

ActivityApp identityOf(const RunningApplication& application) {
  std::string id = application.identifier.value_or("");
  if (id.empty()) id = fmt::format("pid:{}:{:#}", application.processId, application.launchTime.value_or(0.0));
  std::string name = application.name.value_or("");
  if (name.empty()) name = id;
  return {std::move(id), std::move(name)};
}

bool isKnownIdle(double seconds) {
  return std::isfinite(seconds) && seconds >= 0;
}

}  // namespace

ScreenTimeMonitor::ScreenTimeMonitor(ScreenTimeDependencies dependencies) : dependencies_(std::move(dependencies)) {
  stopCounting();
  if (load() && enabled_) report(acquire());
}

ScreenTimeMonitor::~ScreenTimeMonitor() {
  if (!isListening_) return;
  sources_->foreground.setActivationHandler({});
  sources_->events.setEventHandler({});
  sources_->locks.setLockHandler({});
}

// The desktop is not looked at for those who never record.
const ActivitySources& ScreenTimeMonitor::sources() {
  if (!sources_) sources_.emplace(dependencies_.sources());
  return *sources_;
}

// Whoever looks may switch it on next: the desktop's services take a moment to tell what they know.
Subscription ScreenTimeMonitor::observe(std::function<void()> changed) {
  (void)sources();
  return observers_.add(std::move(changed));
}

std::string ScreenTimeMonitor::state() const {
  return L10n::string(state_);
}

std::optional<std::string> ScreenTimeMonitor::storageError() const {
  if (!storageError_) return std::nullopt;
  return L10n::string(*storageError_);
}

void ScreenTimeMonitor::start() {
  if (started_) return;
  started_ = true;
  followSwitch();
}

void ScreenTimeMonitor::listen() {
  if (isListening_) return;
  isListening_ = true;
  sources().foreground.setActivationHandler([this](const RunningApplication& application) { tick(application); });
  sources().events.setEventHandler([this](SessionEvent event) { handle(event); });
  sources().locks.setLockHandler([this](bool locked) { handleLock(locked); });
}

// Without a record to keep, a tick would do nothing: then the machine is not woken for it.
void ScreenTimeMonitor::followSwitch() {
  const bool ticks = started_ && enabled_;
  if (ticks == (timer_ != nullptr)) return;
  timer_.reset();
  if (!ticks) return;
  listen();
  timer_ = dependencies_.timers.repeating(tickSeconds, tickToleranceSeconds, [this] { tickNow(); });
}

void ScreenTimeMonitor::tickNow() {
  if (!enabled_ || storageError_) return;
  tick(sources().foreground.frontmost());
}

void ScreenTimeMonitor::handle(SessionEvent event) {
  switch (event) {
    case SessionEvent::willSleep:
      return pauseFor(systemAsleep_);
    case SessionEvent::didWake:
      return resumeFrom(systemAsleep_);
    case SessionEvent::displaysDidSleep:
      return pauseFor(displaysAsleep_);
    case SessionEvent::displaysDidWake:
      return resumeFrom(displaysAsleep_);
    case SessionEvent::sessionDidResignActive:
      return pauseFor(sessionInactive_);
    case SessionEvent::sessionDidBecomeActive:
      return resumeFrom(sessionInactive_);
  }
}

void ScreenTimeMonitor::pauseFor(bool& flag) {
  flag = true;
  tickNow();
  recorder_.resetBoundary();
  saveUnlessFailed();
}

void ScreenTimeMonitor::resumeFrom(bool& flag) {
  flag = false;
  recorder_.resetBoundary();
  tickNow();
}

void ScreenTimeMonitor::handleLock(bool locked) {
  lockTracker_.notify(locked);
  if (!locked) recorder_.resetBoundary();
  tickNow();
  if (!locked) return;
  recorder_.resetBoundary();
  saveUnlessFailed();
}

ActivityRecorder::Sample ScreenTimeMonitor::readSample(const std::optional<RunningApplication>& foreground,
                                                       std::optional<bool> locked) {
  ActivityRecorder::Sample sample;
  sample.date = dependencies_.clock.now();
  sample.uptimeSeconds = dependencies_.monotonicClock.uptime();
  // Where nothing tells which application is in front, no activity can be told either.
  const double unknown = std::numeric_limits<double>::quiet_NaN();
  sample.idleSeconds = sources().foreground.isSupported() ? sources().idle.idleSeconds().value_or(unknown) : unknown;
  if (foreground) sample.app = identityOf(*foreground);
  sample.available = !systemAsleep_ && !displaysAsleep_ && !sessionInactive_ && locked == false;
  return sample;
}

std::string_view ScreenTimeMonitor::stateFor(const ActivityRecorder::Sample& sample, std::optional<bool> locked) const {
  if (locked == true) return QM_TR_NOOP("已锁屏");
  if (!locked) return QM_TR_NOOP("锁屏状态不可用");
  if (!sample.available) return QM_TR_NOOP("当前不计时");
  if (!isKnownIdle(sample.idleSeconds)) return QM_TR_NOOP("活动状态不可用");
  return sample.idleSeconds >= ActivityRecorder::idleLimitSeconds ? QM_TR_NOOP("空闲中") : QM_TR_NOOP("活跃中");
}

void ScreenTimeMonitor::tick(const std::optional<RunningApplication>& foreground) {
  if (!enabled_ || storageError_) return;
  const auto locked = lockTracker_.resolve(sources().locks.registryLocked(), sources().locks.sessionLocked());
  const ActivityRecorder::Sample sample = readSample(foreground, locked);
  const std::uint64_t revision = recorder_.revision();
  recorder_.sample(sample);

  const bool counting =
      sample.available && isKnownIdle(sample.idleSeconds) && sample.idleSeconds < ActivityRecorder::idleLimitSeconds;
  std::optional<ActivityApp> app = counting ? sample.app : std::nullopt;
  const std::string_view state = stateFor(sample, locked);
  const bool stateChanged = app != currentApp_ || state != state_;
  currentApp_ = std::move(app);
  state_ = state;

  const double sinceSave = sample.uptimeSeconds - lastSaveUptime_.value_or(0);
  if (!lastSaveUptime_ || sinceSave >= saveIntervalSeconds || sinceSave < 0) {
    prune(sample.date);
    save();
  }
  if (stateChanged || revision != recorder_.revision()) publish();
}

void ScreenTimeMonitor::setEnabled(bool on) {
  if (loadFailed_) return;
  if (on) {
    switchOn();
  } else {
    switchOff();
  }
  publish();
}

void ScreenTimeMonitor::switchOn() {
  enabled_ = true;
  const ArchiveOutcome acquired = acquire();
  if (acquired != ArchiveOutcome::done) return report(acquired);
  if (!startedAt_) startedAt_ = dependencies_.clock.now();
  clearError();
  followSwitch();
  recorder_.resetBoundary();
  tickNow();
  save();
}

void ScreenTimeMonitor::switchOff() {
  tickNow();
  const bool stored = enabled_ || dependencies_.store.isClaimed();
  enabled_ = false;
  stopCounting();
  if (!stored) return;
  const ArchiveOutcome acquired = acquire();
  if (acquired == ArchiveOutcome::done) {
    save();
  } else if (acquired == ArchiveOutcome::heldByOther) {
    clearError();  // the record is the other's, and nothing of ours is left to switch off
  } else {
    report(acquired);
  }
}

// Takes the right to write. Where it was not held before, another process may have recorded since this one read the
// file: its record comes first.
ArchiveOutcome ScreenTimeMonitor::acquire() {
  if (dependencies_.store.isClaimed()) return ArchiveOutcome::done;
  if (const ArchiveOutcome claimed = dependencies_.store.claim(); claimed != ArchiveOutcome::done) return claimed;
  if (dependencies_.store.isAsLeft()) return ArchiveOutcome::done;
  const bool wanted = enabled_;
  if (!load()) return ArchiveOutcome::failed;
  enabled_ = wanted;
  return ArchiveOutcome::done;
}

void ScreenTimeMonitor::report(ArchiveOutcome outcome) {
  if (loadFailed_ || outcome == ArchiveOutcome::done) return;  // a failed reading has its own message
  fail(outcome == ArchiveOutcome::heldByOther ? QM_TR_NOOP("另一个正在运行的程序已在记录屏幕使用时间，此处不计时。")
                                              : QM_TR_NOOP("活动记录保存失败，计时已停止。请重试或清除记录。"),
       true);
}

void ScreenTimeMonitor::retrySave() {
  if (!canRetrySave_) return;
  if (const ArchiveOutcome acquired = acquire(); acquired != ArchiveOutcome::done) return report(acquired);
  if (enabled_ && !startedAt_) startedAt_ = dependencies_.clock.now();
  if (save()) {
    recorder_.resetBoundary();
    tickNow();
  }
  publish();
}

void ScreenTimeMonitor::clear() {
  if (dependencies_.store.remove() != ArchiveOutcome::done) {
    // A record that goes on has to have a way to do so.
    fail(QM_TR_NOOP("清除失败，请检查本地存储后重试。"), enabled_ && !loadFailed_);
    return;
  }
  recorder_.clear();
  loadFailed_ = false;
  startedAt_.reset();
  saved_ = {recorder_.revision(), std::nullopt, false};
  clearError();
  if (enabled_) {
    startedAt_ = dependencies_.clock.now();
    report(acquire());
  }
  publish();
}

void ScreenTimeMonitor::willTerminate() {
  tickNow();
  save();
}

// False when something is stored that cannot be read. Where nothing is stored, the record here stays as it is.
bool ScreenTimeMonitor::load() {
  auto stored = dependencies_.store.load();
  if (!stored) {
    loadFailed_ = true;
    enabled_ = false;
    fail(QM_TR_NOOP("活动记录读取失败，原文件已保留。可清除记录后重新开启。"), false);
    return false;
  }
  if (!*stored) return true;
  startedAt_ = (*stored)->startedAt;
  enabled_ = (*stored)->enabled;
  recorder_.restore(std::move((*stored)->spans));
  recorder_.resetBoundary();
  saved_ = fingerprint();
  return true;
}

void ScreenTimeMonitor::prune(Date now) {
  const Calendar calendar = dependencies_.currentCalendar();
  if (const auto cutoff = calendar.adding(-(keptDays - 1), CalendarUnit::day, calendar.startOfDay(now)))
    recorder_.prune(*cutoff);
}

bool ScreenTimeMonitor::save() {
  if (loadFailed_ || !dependencies_.store.isClaimed()) return false;
  ArchiveOutcome outcome = ArchiveOutcome::done;
  if (fingerprint() != saved_ || !dependencies_.store.isAsLeft()) {
    outcome = dependencies_.store.save({startedAt_, enabled_, recorder_.spans()});
  }
  if (outcome != ArchiveOutcome::done) {
    report(outcome);
    return false;
  }
  saved_ = fingerprint();
  lastSaveUptime_ = dependencies_.monotonicClock.uptime();
  if (storageError_) clearError();
  return true;
}

// After a failure only the user's action writes again.
void ScreenTimeMonitor::saveUnlessFailed() {
  if (!storageError_) save();
}

void ScreenTimeMonitor::fail(std::string_view message, bool canRetry) {
  storageError_ = message;
  canRetrySave_ = canRetry;
  stopCounting();
  publish();
}

void ScreenTimeMonitor::clearError() {
  storageError_.reset();
  canRetrySave_ = false;
}

void ScreenTimeMonitor::stopCounting() {
  recorder_.resetBoundary();
  currentApp_.reset();
  state_ = QM_TR_NOOP("当前不计时");
}

void ScreenTimeMonitor::publish() {
  followSwitch();
  observers_.notify();
}

}  // namespace quillmeter
