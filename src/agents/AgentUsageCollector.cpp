#include "agents/AgentUsageCollector.h"

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <thread>
#include <unordered_map>
#include <utility>

#include "agents/CodexSessionDay.h"
#include "agents/LogParseJob.h"
#include "agents/UsageSums.h"

namespace quillmeter {

namespace {

constexpr int threadsAtMost = 4;  // each has buffers of its own

// Parsed files by path. An entry belongs to the scan that listed its file last.
template <typename Parsed>
class ParseCache {
 public:
  const Parsed* find(const LogFile& file, std::uint64_t scan) {
    const auto found = entries_.find(file.path);
    if (found == entries_.end() || !(found->second.parsed.signature == file.signature())) return nullptr;
    found->second.scan = scan;
    return &found->second.parsed;
  }
  void store(const LogFile& file, Parsed parsed, std::uint64_t scan) {
    entries_.insert_or_assign(file.path, Entry{std::move(parsed), scan});
  }
  Parsed* edit(const LogFile& file) {
    const auto found = entries_.find(file.path);
    return found == entries_.end() ? nullptr : &found->second.parsed;
  }
  void keepOnly(std::uint64_t scan) {
    std::erase_if(entries_, [scan](const auto& entry) { return entry.second.scan != scan; });
  }
  void clear() { entries_ = {}; }

 private:
  struct Entry {
    Parsed parsed;
    std::uint64_t scan = 0;
  };
  std::unordered_map<std::string, Entry> entries_;
};

// "/a/b/name.jsonl" gives "name".
std::string nameWithoutExtension(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  const std::string_view name = slash == std::string_view::npos ? path : path.substr(slash + 1);
  return std::string(name.substr(0, name.rfind('.')));
}

// What one scan gathers of one provider.
class ProviderTally {
 public:
  explicit ProviderTally(AgentLogProvider provider) : provider_(provider) {
    usage_.id = rawValue(provider);
    usage_.name = title(provider);
    usage_.symbol = symbol(provider);
  }

  void addRanges(const UsageRangeMetrics& ranges) {
    usage_.todayMetrics += ranges.today.countingSessionWhenUsed();
    usage_.weekMetrics += ranges.week.countingSessionWhenUsed();
    usage_.monthMetrics += ranges.month.countingSessionWhenUsed();
  }
  void addSession(const AgentTokenMetrics& metrics, Date lastActivity) {
    if (usage_.lastActivity && lastActivity <= *usage_.lastActivity) return;
    usage_.lastActivity = lastActivity;
    usage_.currentSessionMetrics = metrics.countingSessionWhenUsed();
  }
  void setDetected() { usage_.isDetected = true; }
  void addUnreadable(int count) { usage_.unreadableSourceCount = usage_.unreadableSourceCount.value_or(0) + count; }

  AgentLogProvider provider() const { return provider_; }
  const AgentProviderUsage& usage() const { return usage_; }
  bool isIncomplete() const { return usage_.unreadableSourceCount.value_or(0) != 0; }

 private:
  AgentLogProvider provider_;
  AgentProviderUsage usage_;
};

// One enabled agent during a scan.
struct ScannedSource {
  const AgentLogSource* source = nullptr;
  LogListing listing;  // Codex and Claude only
  ProviderTally tally;
};

}  // namespace

struct AgentUsageCollector::State {
  State(FileOpener& fileOpener, Calendar userCalendar, AgentUsageAdapters agentAdapters)
      : opener(fileOpener), calendar(std::move(userCalendar)), adapters(std::move(agentAdapters)) {}

  // What lives for one scan.
  struct Scan {
    Scan(const Calendar& calendar, Date date)
        : now(date), starts(calendar, date), sums(calendar, starts), sessionDays(calendar) {}

    Date now;
    UsageRangeStarts starts;
    UsageSums sums;
    CodexSessionDay sessionDays;
    CodexLimits limits;
    std::vector<ScannedSource> sources;
    std::vector<LogParseJob> jobs;
    std::vector<AgentActivitySession> activitySessions;  // those active now
  };

  AgentUsageSnapshot collect(const std::vector<AgentLogSource>& sources, Date now);
  void list(Scan& scan, ScannedSource& scanned);
  void planCodex(Scan& scan, const LogFile& file);
  void planClaude(Scan& scan, const LogFile& file);
  void runJobs(Scan& scan);
  void collectCodex(Scan& scan, ScannedSource& scanned);
  void addCodexFile(Scan& scan, ProviderTally& tally, const LogFile& file);
  void collectClaude(Scan& scan, ScannedSource& scanned);
  void collectAdapterSessions(Scan& scan, ScannedSource& scanned);
  void addActivity(Scan& scan, AgentLogProvider provider, std::string_view source, std::string sessionID,
                   Date lastActivity, std::int64_t totalTokens);
  void reportUnreadable(ProviderTally& tally, const std::string& path, int error);
  void reportUnlisted(ProviderTally& tally, const LogListing& listing);
  AgentUsageSnapshot snapshotOf(const Scan& scan) const;

  static bool needsTimeline(const Scan& scan, const CodexSessionDay::Day& day);

  FileOpener& opener;
  Calendar calendar;
  AgentUsageAdapters adapters;
  int maximumThreads = 0;
  ParseCache<CachedCodexFile> codexCache;
  ParseCache<CachedClaudeFile> claudeCache;
  std::uint64_t scanNumber = 0;
  std::unordered_map<std::string, int> failedFiles;  // path and errno, during a scan
  std::vector<UnreadableLog> unreadableLogs;
  LogParseProgress progress;
};

AgentUsageSnapshot AgentUsageCollector::State::collect(const std::vector<AgentLogSource>& sources, Date now) {
  ++scanNumber;
  unreadableLogs.clear();
  Scan scan(calendar, now);
  scan.sources.reserve(sources.size());  // jobs point into it
  for (const AgentLogSource& source : sources) {
    list(scan, scan.sources.emplace_back(ScannedSource{&source, {}, ProviderTally(source.provider)}));
  }
  runJobs(scan);
  for (ScannedSource& scanned : scan.sources) {
    if (!scanned.source->location) continue;
    switch (scanned.source->provider) {
      case AgentLogProvider::codex:
        collectCodex(scan, scanned);
        break;
      case AgentLogProvider::claude:
        collectClaude(scan, scanned);
        break;
      default:
        collectAdapterSessions(scan, scanned);
    }
  }
  codexCache.keepOnly(scanNumber);
  claudeCache.keepOnly(scanNumber);
  failedFiles.clear();
  return snapshotOf(scan);
}

void AgentUsageCollector::State::list(Scan& scan, ScannedSource& scanned) {
  const AgentLogSource& source = *scanned.source;
  if (!source.location) return;
  if (source.provider == AgentLogProvider::codex) {
    // A session that began on the last day of the month before and ran on is in a folder of that day.
    const std::optional<Date> since = calendar.adding(-1, CalendarUnit::day, scan.starts.month);
    if (!since) fatalError("the calendar has no day before the month");
    scanned.listing = recentJSONLFiles(source.location->scanRoot, *since);
    for (const LogFile& file : scanned.listing.files) planCodex(scan, file);
  } else if (source.provider == AgentLogProvider::claude) {
    scanned.listing = recentJSONLFiles(source.location->scanRoot, scan.starts.month);
    for (const LogFile& file : scanned.listing.files) planClaude(scan, file);
  }
}

// A timeline is needed where the whole of a session's last point would not do: for a session of today, whose bars are
// hours, and for one that was written on another day than it began. The second holds for every session that crosses the
// start of a range, as ranges start with a day.
bool AgentUsageCollector::State::needsTimeline(const Scan& scan, const CodexSessionDay::Day& day) {
  return day.start >= scan.starts.today || !day.holdsModification;
}

void AgentUsageCollector::State::planCodex(Scan& scan, const LogFile& file) {
  const bool timeline = needsTimeline(scan, scan.sessionDays.sessionDay(file));
  const CachedCodexFile* cached = codexCache.find(file, scanNumber);
  if (cached != nullptr && (cached->points || !timeline)) return;
  scan.jobs.push_back({timeline ? LogParseJob::Format::codexTimeline : LogParseJob::Format::codexTail, &file});
}

void AgentUsageCollector::State::planClaude(Scan& scan, const LogFile& file) {
  if (claudeCache.find(file, scanNumber) == nullptr) scan.jobs.push_back({LogParseJob::Format::claude, &file});
}

void AgentUsageCollector::State::runJobs(Scan& scan) {
  int threads = maximumThreads;
  if (threads <= 0) threads = std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, threadsAtMost);
  runLogParseJobs(scan.jobs, opener, threads, progress);
  for (LogParseJob& job : scan.jobs) {
    if (auto* codex = std::get_if<CachedCodexFile>(&job.result)) {
      codexCache.store(*job.file, std::move(*codex), scanNumber);
    } else if (auto* claude = std::get_if<CachedClaudeFile>(&job.result)) {
      claudeCache.store(*job.file, std::move(*claude), scanNumber);
    } else {
      failedFiles.insert_or_assign(job.file->path, std::get<int>(job.result));
    }
  }
}

void AgentUsageCollector::State::collectCodex(Scan& scan, ScannedSource& scanned) {
  reportUnlisted(scanned.tally, scanned.listing);
  if (!scanned.listing.files.empty()) scanned.tally.setDetected();
  for (const LogFile& file : scanned.listing.files) addCodexFile(scan, scanned.tally, file);
}

void AgentUsageCollector::State::addCodexFile(Scan& scan, ProviderTally& tally, const LogFile& file) {
  if (const auto failed = failedFiles.find(file.path); failed != failedFiles.end()) {
    return reportUnreadable(tally, file.path, failed->second);
  }
  CachedCodexFile& parsed = *codexCache.edit(file);
  const CodexSessionDay::Day day = scan.sessionDays.sessionDay(file);
  const bool timeline = needsTimeline(scan, day) && parsed.points;
  // What an older scan needed is not used any more, so that a scan gives the same whatever was scanned before it.
  if (!timeline) parsed.points.reset();
  if (!scan.sums.admit(parsed.magnitude)) return reportUnreadable(tally, file.path, EOVERFLOW);
  if (parsed.limits.observedAt > scan.limits.observedAt) scan.limits = parsed.limits;
  if (!parsed.latest) return;

  const AgentTokenMetrics& whole = parsed.latest->metrics;
  const auto since = [&](Date start) {
    if (day.start >= start) return whole;
    return timeline ? codexDelta(*parsed.points, start) : AgentTokenMetrics{};
  };
  tally.addRanges({since(scan.starts.today), since(scan.starts.week), since(scan.starts.month)});
  if (timeline) {
    for (const AgentUsageEvent& event : codexEvents(*parsed.points, scan.starts.month)) {
      scan.sums.addToBuckets(event.date, event.metrics);
    }
  } else {
    scan.sums.addToBuckets(parsed.latest->date, whole);
  }
  tally.addSession(whole, parsed.latest->date);
  addActivity(scan, tally.provider(), file.path, nameWithoutExtension(file.path), parsed.latest->date,
              whole.totalTokens);
}

void AgentUsageCollector::State::collectClaude(Scan& scan, ScannedSource& scanned) {
  ProviderTally& tally = scanned.tally;
  reportUnlisted(tally, scanned.listing);
  if (!scanned.listing.files.empty()) tally.setDetected();
  for (const LogFile& file : scanned.listing.files) {
    if (const auto failed = failedFiles.find(file.path); failed != failedFiles.end()) {
      reportUnreadable(tally, file.path, failed->second);
      continue;
    }
    const CachedClaudeFile& parsed = *claudeCache.edit(file);
    if (!scan.sums.admit(parsed.magnitude)) {
      reportUnreadable(tally, file.path, EOVERFLOW);
      continue;
    }
    if (!parsed.lastActivity) continue;
    tally.addRanges(scan.sums.add(parsed.events, parsed.sessionMetrics, *parsed.firstActivity, *parsed.lastActivity));
    tally.addSession(parsed.sessionMetrics, *parsed.lastActivity);
    addActivity(scan, tally.provider(), file.path, nameWithoutExtension(file.path), *parsed.lastActivity,
                parsed.sessionMetrics.totalTokens);
  }
}

void AgentUsageCollector::State::collectAdapterSessions(Scan& scan, ScannedSource& scanned) {
  const auto adapter = adapters.find(scanned.source->provider);
  if (adapter == adapters.end() || !adapter->second) return;
  ProviderTally& tally = scanned.tally;
  const auto sessions = adapter->second->sessions(scanned.source->location->scanRoot, scan.starts.month);
  tally.addUnreadable(adapter->second->unreadableSourceCount());
  if (!sessions.empty()) tally.setDetected();
  for (const AdapterUsageSession& session : sessions) {
    CounterMagnitude magnitude;
    for (const AdapterUsageEvent& event : session.events) magnitude.add(event.metrics);
    if (!scan.sums.admit(magnitude)) {
      reportUnreadable(tally, session.id, EOVERFLOW);
      continue;
    }
    UsageRangeMetrics ranges;
    for (const AdapterUsageEvent& event : session.events) scan.sums.add(event.date, event.metrics, ranges);
    tally.addRanges(ranges);
    const std::optional<Date> lastActivity = session.lastActivity();
    if (!lastActivity) continue;
    const AgentTokenMetrics metrics = session.metrics();
    tally.addSession(metrics, *lastActivity);
    addActivity(scan, tally.provider(), session.id, session.id, *lastActivity, metrics.totalTokens);
  }
}

void AgentUsageCollector::State::addActivity(Scan& scan, AgentLogProvider provider, std::string_view source,
                                             std::string sessionID, Date lastActivity, std::int64_t totalTokens) {
  AgentActivitySession session{{}, std::string(rawValue(provider)), std::move(sessionID), lastActivity, totalTokens};
  if (!session.isActive(scan.now)) return;
  session.id = session.providerID + ':' + std::string(source);
  scan.activitySessions.push_back(std::move(session));
}

void AgentUsageCollector::State::reportUnreadable(ProviderTally& tally, const std::string& path, int error) {
  tally.addUnreadable(1);
  if (unreadableLogs.size() < maximumNamedLogs) unreadableLogs.push_back({tally.provider(), path, error});
}

void AgentUsageCollector::State::reportUnlisted(ProviderTally& tally, const LogListing& listing) {
  for (const UnlistedFolder& folder : listing.namedFolders) reportUnreadable(tally, folder.path, folder.error);
  tally.addUnreadable(listing.unlistedFolders - static_cast<int>(listing.namedFolders.size()));
}

AgentUsageSnapshot AgentUsageCollector::State::snapshotOf(const Scan& scan) const {
  AgentUsageSnapshot snapshot;
  std::vector<std::string> missing;
  std::vector<std::string> incomplete;
  bool foundAny = false;
  std::optional<Date> newest;
  for (const ScannedSource& scanned : scan.sources) {
    const AgentProviderUsage& usage = snapshot.providers.emplace_back(scanned.tally.usage());
    snapshot.todayMetrics += usage.todayMetrics;
    snapshot.weekMetrics += usage.weekMetrics;
    snapshot.monthMetrics += usage.monthMetrics;
    if (usage.lastActivity && (!newest || *usage.lastActivity > *newest)) {
      newest = usage.lastActivity;
      snapshot.currentSessionMetrics = usage.currentSessionMetrics;
    }
    if (!scanned.source->location) missing.push_back(usage.name);
    if (scanned.tally.isIncomplete()) incomplete.push_back(usage.name);
    foundAny = foundAny || usage.isDetected;
  }
  snapshot.hourlyUsage = scan.sums.hourly();
  snapshot.weeklyUsage = scan.sums.weekly();
  snapshot.monthlyUsage = scan.sums.monthly();
  snapshot.primaryLimitUsed = scan.limits.primaryUsed;
  snapshot.weeklyLimitUsed = scan.limits.weeklyUsed;
  snapshot.primaryResetAt = scan.limits.primaryResetAt;
  snapshot.weeklyResetAt = scan.limits.weeklyResetAt;
  if (scan.limits.observedAt != Date::distantPast()) snapshot.limitsObservedAt = scan.limits.observedAt;
  snapshot.lastUpdated = scan.now;
  snapshot.recentSessions = scan.activitySessions;
  if (!missing.empty()) {
    snapshot.scanStatus = AgentScanStatus::missingAuthorization(std::move(missing));
  } else if (!incomplete.empty()) {
    snapshot.scanStatus = AgentScanStatus::incompleteLogs(std::move(incomplete));
  } else if (!foundAny) {
    snapshot.scanStatus = AgentScanStatus::noLogs();
  }
  return snapshot;
}

AgentUsageCollector::AgentUsageCollector(FileOpener& opener, Calendar calendar, AgentUsageAdapters adapters)
    : state_(std::make_unique<State>(opener, std::move(calendar), std::move(adapters))) {}

AgentUsageCollector::~AgentUsageCollector() = default;

AgentUsageSnapshot AgentUsageCollector::collect(const std::vector<AgentLogSource>& sources, Date now) {
  return state_->collect(sources, now);
}

void AgentUsageCollector::clearCaches() {
  state_->codexCache.clear();
  state_->claudeCache.clear();
  for (auto& [provider, adapter] : state_->adapters) {
    if (adapter) adapter->clearCache();
  }
}

void AgentUsageCollector::setCalendar(Calendar calendar) {
  state_->calendar = std::move(calendar);
}

void AgentUsageCollector::setMaximumThreads(int threads) {
  state_->maximumThreads = threads;
}

const std::vector<UnreadableLog>& AgentUsageCollector::unreadableLogs() const {
  return state_->unreadableLogs;
}

AgentScanProgress AgentUsageCollector::progress() const {
  const LogParseProgress& progress = state_->progress;
  return {progress.filesDone, progress.filesTotal, progress.bytesDone, progress.bytesTotal};
}

}  // namespace quillmeter
