#include "demo/FakeHome.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "access/AgentLogFolders.h"
#include "base/Iso8601.h"

namespace quillmeter {
namespace {

namespace fs = std::filesystem;
using Provider = AgentLogProvider;

// The folder that is scanned, and a file that must be there for the agent to be known.
struct AgentFiles {
  std::string_view scanned;
  std::string_view database;
};

AgentFiles filesOf(Provider provider) {
  switch (provider) {
    case Provider::codex:
    case Provider::pi:
      return {"sessions", ""};
    case Provider::claude:
    case Provider::workBuddy:
      return {"projects", ""};
    case Provider::qwenOffice:
      return {"logs/sessions", ""};
    case Provider::openclaw:
      return {"agents", ""};
    case Provider::opencode:
      return {"", "opencode.db"};
    case Provider::hermes:
      return {"", "state.db"};
  }
  return {};
}

void writeFile(const fs::path& path, std::string_view bytes, std::optional<Date> modifiedAt) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
  if (!modifiedAt) return;
  const timespec time{static_cast<time_t>(modifiedAt->microseconds / Date::microsecondsPerSecond), 0};
  const timespec times[2] = {time, time};
  if (::utimensat(AT_FDCWD, path.c_str(), times, 0) != 0) throw std::runtime_error("utimensat failed");
}

std::string limitsJson(const DescribedLimits& limits) {
  const auto window = [](double used, int minutes, Date resetAt) {
    return fmt::format(R"({{"used_percent":{},"window_minutes":{},"resets_at":{}}})", used * 100, minutes,
                       resetAt.microseconds / Date::microsecondsPerSecond);
  };
  return fmt::format(R"({{"primary":{},"secondary":{}}})", window(limits.primaryUsed, 300, limits.primaryResetAt),
                     window(limits.weeklyUsed, 10'080, limits.weeklyResetAt));
}

// One record; Codex writes running totals.
std::string codexLine(Date date, const AgentTokenMetrics& total, const std::optional<DescribedLimits>& limits) {
  return fmt::format(
      R"({{"timestamp":"{}","type":"event_msg","payload":{{"type":"token_count","info":{{"total_token_usage":)"
      R"({{"input_tokens":{},"cached_input_tokens":{},"output_tokens":{},"total_tokens":{}}}}}{}}}}})"
      "\n",
      formatIso8601(date), total.inputTokens + total.cachedTokens, total.cachedTokens, total.outputTokens,
      total.totalTokens, limits ? ",\"rate_limits\":" + limitsJson(*limits) : "");
}

// The limits come with the last record.
std::string codexLog(const AdapterUsageSession& session, const std::optional<DescribedLimits>& limits) {
  std::string log;
  AgentTokenMetrics total;
  for (const auto& event : session.events) log += codexLine(event.date, total += event.metrics, std::nullopt);
  if (limits) log += codexLine(limits->observedAt, total, limits);
  return log;
}

// That with the latest activity; null without sessions.
const AdapterUsageSession* newestOf(const std::vector<AdapterUsageSession>& sessions) {
  const auto newest = std::ranges::max_element(sessions, {}, &AdapterUsageSession::lastActivity);
  return newest == sessions.end() ? nullptr : &*newest;
}

std::string claudeLog(const AdapterUsageSession& session) {
  std::string log;
  for (const auto& event : session.events) {
    log +=
        fmt::format(R"({{"type":"assistant","timestamp":"{}","requestId":"{}","message":{{"usage":{{"input_tokens":{},)"
                    R"("cache_read_input_tokens":{},"output_tokens":{}}}}}}})"
                    "\n",
                    formatIso8601(event.date), event.id, event.metrics.inputTokens, event.metrics.cachedTokens,
                    event.metrics.outputTokens);
  }
  return log;
}

}  // namespace

// The sessions of one agent as they are described at the time of the scan.
class FakeHome::Adapter final : public AgentUsageAdapter {
 public:
  Adapter(const FakeHome& home, Provider provider) : home_(home), provider_(provider) {}

  std::vector<AdapterUsageSession> sessions(const fs::path&, Date since) override {
    std::vector<AdapterUsageSession> found;
    const auto agent = home_.agents_.find(provider_);
    if (agent == home_.agents_.end()) return found;
    for (const auto& session : agent->second.sessions) {
      if (const auto last = session.lastActivity(); last && *last >= since) found.push_back(session);
    }
    return found;
  }
  int unreadableSourceCount() const override {
    const auto agent = home_.agents_.find(provider_);
    return agent == home_.agents_.end() ? 0 : agent->second.unreadableSources;
  }

 private:
  const FakeHome& home_;
  const Provider provider_;
};

FakeHome::FakeHome() {
  std::string pattern = (fs::temp_directory_path() / "quillmeter-home-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
  path_ = pattern;
}

FakeHome::~FakeHome() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

void FakeHome::install(Provider provider) const {
  const fs::path folder = expectedFolderPath(provider, path_);
  const AgentFiles files = filesOf(provider);
  fs::create_directories(folder / files.scanned);
  if (!files.database.empty()) writeFile(folder / files.database, "", std::nullopt);
}

void FakeHome::remove(Provider provider) const {
  std::error_code ignored;
  fs::remove_all(expectedFolderPath(provider, path_), ignored);
}

void FakeHome::write(const std::map<Provider, DescribedAgent>& agents, const std::optional<DescribedLimits>& limits) {
  agents_ = agents;
  for (const Provider provider : allAgentLogProviders) {
    const auto agent = agents_.find(provider);
    const bool isInstalled = agent != agents_.end() && agent->second.isInstalled;
    remove(provider);
    if (!isInstalled) continue;
    install(provider);
    if (provider == Provider::codex) writeCodexLogs(agent->second.sessions, limits);
    if (provider == Provider::claude) writeClaudeLogs(agent->second.sessions);
  }
}

void FakeHome::writeCodexLogs(const std::vector<AdapterUsageSession>& sessions,
                              const std::optional<DescribedLimits>& limits) const {
  const fs::path root = path_ / ".codex/sessions/2026";
  const AdapterUsageSession* newest = newestOf(sessions);
  for (const auto& session : sessions) {
    const bool carriesLimits = limits && &session == newest;
    const auto end =
        carriesLimits ? std::max(session.lastActivity(), std::optional(limits->observedAt)) : session.lastActivity();
    writeFile(root / (session.id + ".jsonl"), codexLog(session, carriesLimits ? limits : std::nullopt), end);
  }
  if (limits && newest == nullptr) writeFile(root / "limits.jsonl", codexLog({}, limits), limits->observedAt);
}

void FakeHome::writeClaudeLogs(const std::vector<AdapterUsageSession>& sessions) const {
  for (const auto& session : sessions) {
    writeFile(path_ / ".claude/projects/project" / (session.id + ".jsonl"), claudeLog(session), session.lastActivity());
  }
}

AgentUsageAdapters FakeHome::makeAdapters() const {
  AgentUsageAdapters adapters;
  for (const Provider provider : allAgentLogProviders) {
    if (provider == Provider::codex || provider == Provider::claude) continue;
    adapters.emplace(provider, std::make_unique<Adapter>(*this, provider));
  }
  return adapters;
}

}  // namespace quillmeter
