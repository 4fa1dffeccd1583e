#include "agents/adapters/QwenOfficeUsageAdapter.h"

#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace quillmeter {

namespace {

constexpr std::string_view completedMarker = "\"model.response.completed\"";
constexpr std::string_view completedType = "model.response.completed";

AgentTokenMetrics metricsFrom(const JsonObject& data) {
  const auto figure = [&](std::string_view key) { return LocalUsageReader::integer(data.value(key)); };
  AgentTokenMetrics metrics;
  metrics.inputTokens = figure("input_tokens") + figure("cache_creation_input_tokens");
  metrics.outputTokens = figure("output_tokens");
  metrics.cachedTokens = figure("cache_read_input_tokens");
  metrics.totalTokens = metrics.inputTokens + metrics.outputTokens + metrics.cachedTokens;
  if (metrics.totalTokens < 1) metrics.totalTokens = figure("total_tokens");
  return metrics;
}

std::string identifierOf(const JsonObject& line, Date date, std::uint64_t index) {
  for (const std::string_view key : {"turn_id", "request_id"}) {
    const auto id = line.string(key);
    if (id && !id->empty()) return std::string(*id);
  }
  return secondsText(date) + "-" + std::to_string(index);
}

std::optional<AdapterUsageEvent> eventFrom(const JsonObject& line, std::uint64_t index) {
  if (line.string("type") != completedType) return std::nullopt;
  const auto data = line.object("data");
  const auto date = LocalUsageReader::date(line.value("ts"));
  if (!data || !date) return std::nullopt;
  return AdapterUsageEvent{identifierOf(line, *date, index), *date, metricsFrom(*data)};
}

}  // namespace

std::vector<AdapterUsageSession> QwenOfficeUsageAdapter::sessions(const std::filesystem::path& root, Date since) {
  std::vector<SessionEvent> events;
  cache_.beginScan();
  for (const UsageFile& file : LocalUsageReader::files(root, "jsonl", LocalUsageReader::HiddenNames::include)) {
    if (file.signature.modifiedAt < since || file.path.parent_path().filename() != "segments") continue;
    const auto& parsed =
        cache_.entry(file, [&](CachedSegmentFile& entry) { return parse(file.path, entry.parsed); }).parsed;
    for (const AdapterUsageEvent& event : parsed.events) events.push_back({parsed.sessionID, event});
  }
  cache_.endScan();
  return LocalUsageReader::grouped(std::move(events));
}

bool QwenOfficeUsageAdapter::parse(const std::filesystem::path& file, ParsedSegmentFile& parsed) {
  parsed.sessionID = file.parent_path().parent_path().filename().native();
  std::unordered_set<std::string> seen;
  return reader_.lines(
      file,
      [&](const JsonObject& line, std::uint64_t index) {
        auto event = eventFrom(line, index);
        if (event && seen.insert(event->id).second) parsed.events.push_back(std::move(*event));
      },
      completedMarker);
}

}  // namespace quillmeter
