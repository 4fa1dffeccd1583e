#include "agents/adapters/WorkBuddyUsageAdapter.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace quillmeter {

namespace {

// Every line that counts has this role; it is far rarer in a transcript than the keys around it.
constexpr std::string_view roleMarker = "\"assistant\"";

bool mentionsUsage(std::string_view line) {
  return line.find("\"usage\"") != std::string_view::npos || line.find("\"rawUsage\"") != std::string_view::npos;
}

std::optional<JsonObject> usageObject(const JsonObject& line) {
  if (const auto message = line.object("message")) {
    if (const auto usage = message->object("usage")) return usage;
  }
  const auto provider = line.object("providerData");
  if (!provider) return std::nullopt;
  if (const auto usage = provider->object("usage")) return usage;
  return provider->object("rawUsage");
}

// The figure of the first key that is there at all, even if its value is of no use.
std::int64_t firstInteger(const JsonObject& usage, std::initializer_list<std::string_view> keys) {
  for (const std::string_view key : keys) {
    if (usage.contains(key)) return LocalUsageReader::integer(usage.value(key));
  }
  return 0;
}

AgentTokenMetrics metricsFrom(const JsonObject& usage) {
  AgentTokenMetrics metrics;
  metrics.inputTokens =
      firstInteger(usage, {"input_tokens", "inputTokens", "prompt_tokens"}) +
      firstInteger(usage, {"cache_creation_input_tokens", "cacheCreationInputTokens", "prompt_cache_write_tokens"});
  metrics.outputTokens = firstInteger(usage, {"output_tokens", "outputTokens", "completion_tokens"});
  metrics.cachedTokens =
      firstInteger(usage, {"cache_read_input_tokens", "cacheReadTokens", "cached_tokens", "prompt_cache_hit_tokens"});
  metrics.totalTokens = metrics.inputTokens + metrics.outputTokens + metrics.cachedTokens;
  if (metrics.totalTokens < 1) metrics.totalTokens = firstInteger(usage, {"total_tokens", "totalTokens"});
  return metrics;
}

std::string identifierOf(const JsonObject& line, Date date, std::uint64_t index) {
  auto id = line.string("id");
  if (!id || id->empty()) {
    if (const auto provider = line.object("providerData")) id = provider->string("messageId");
  }
  if (id && !id->empty()) return std::string(*id);
  return secondsText(date) + "-" + std::to_string(index);
}

std::optional<AdapterUsageEvent> eventFrom(const JsonObject& line, std::uint64_t index) {
  if (line.string("type") != "message" || line.string("role") != "assistant") return std::nullopt;
  const auto date = LocalUsageReader::date(line.value("timestamp"));
  const auto usage = usageObject(line);
  if (!date || !usage) return std::nullopt;
  const AgentTokenMetrics metrics = metricsFrom(*usage);
  if (metrics.totalTokens < 1) return std::nullopt;
  return AdapterUsageEvent{identifierOf(line, *date, index), *date, metrics};
}

}  // namespace

std::vector<AdapterUsageSession> WorkBuddyUsageAdapter::sessions(const std::filesystem::path& root, Date since) {
  std::vector<AdapterUsageSession> sessions;
  cache_.beginScan();
  for (const UsageFile& file : LocalUsageReader::files(root, "jsonl", LocalUsageReader::HiddenNames::include)) {
    if (file.signature.modifiedAt < since) continue;
    const auto& session =
        cache_.entry(file, [&](CachedSessionFile& entry) { return parse(file.path, entry.session); }).session;
    if (session) sessions.push_back(*session);
  }
  cache_.endScan();
  return sessions;
}

bool WorkBuddyUsageAdapter::parse(const std::filesystem::path& file, std::optional<AdapterUsageSession>& session) {
  AdapterUsageSession parsed{file.stem().native(), {}, std::nullopt};
  std::unordered_set<std::string> seen;
  const bool complete = reader_.lines(
      file,
      [&](const JsonObject& line, std::uint64_t index) {
        auto event = eventFrom(line, index);
        if (event && seen.insert(event->id).second) parsed.events.push_back(std::move(*event));
      },
      roleMarker, mentionsUsage);
  if (!parsed.events.empty()) session = std::move(parsed);
  return complete;
}

}  // namespace quillmeter
