#include "agents/adapters/HermesUsageAdapter.h"

#include <map>
#include <set>
#include <string>
#include <utility>

#include "agents/adapters/LocalUsageReader.h"
#include "agents/adapters/UsageDatabase.h"

namespace quillmeter {

namespace {

std::string sessionStatement(const std::set<std::string>& columns, Date since) {
  const auto cachePiece = [&](const std::string& name) {
    return columns.count(name) > 0 ? "COALESCE(" + name + ", 0) AS " + name : "0 AS " + name;
  };
  const std::string activity = columns.count("last_activity_at") > 0
                                   ? "COALESCE(last_activity_at, ended_at, started_at)"
                                   : "COALESCE(ended_at, started_at)";
  return "SELECT id, started_at, " + activity + " AS activity, input_tokens, output_tokens, " +
         cachePiece("cache_read_tokens") + ", " + cachePiece("cache_write_tokens") + "\nFROM sessions WHERE " +
         activity + " >= " + secondsText(since);
}

AgentTokenMetrics metricsOf(const UsageRow& row) {
  const auto count = [&](std::string_view column) { return LocalUsageReader::integer(row.value(column)); };
  AgentTokenMetrics metrics;
  metrics.inputTokens = count("input_tokens") + count("cache_write_tokens");
  metrics.outputTokens = count("output_tokens");
  metrics.cachedTokens = count("cache_read_tokens");
  metrics.totalTokens = metrics.inputTokens + metrics.outputTokens + metrics.cachedTokens;
  return metrics;
}

// What one reading found.
struct Reading {
  std::vector<SessionEvent> events;
  std::map<std::string, Date, std::less<>> activity;  // by session

  void append(const UsageRow& row) {
    const auto id = row.text("id");
    const auto start = LocalUsageReader::date(row.value("started_at"));
    if (!id || !start) return;
    const std::string session(*id);
    if (const auto last = LocalUsageReader::date(row.value("activity"))) activity[session] = *last;
    const auto metrics = metricsOf(row);
    if (metrics.totalTokens >= 1) events.push_back({session, {session, *start, metrics}});
  }
};

}  // namespace

std::vector<AdapterUsageSession> HermesUsageAdapter::sessions(const std::filesystem::path& root, Date since) {
  Reading reading;
  bool complete = false;
  const bool whole = UsageDatabase::readWhole(root / "state.db", {}, [&](UsageDatabase& database) {
    reading = {};
    complete = database.isOpen() && database.rows(sessionStatement(database.columns("sessions"), since),
                                                  [&](const UsageRow& row) { reading.append(row); });
  });
  if (!whole || !complete) return {};

  auto sessions = LocalUsageReader::grouped(std::move(reading.events));
  for (auto& session : sessions) {
    const auto last = reading.activity.find(session.id);
    if (last != reading.activity.end()) session.activityDate = last->second;
  }
  return sessions;
}

}  // namespace quillmeter
