#include "agents/adapters/PiSessionUsageAdapter.h"

#include <string>
#include <utility>

#include "agents/adapters/AssistantUsage.h"

namespace quillmeter {

namespace {

void appendEvent(const JsonObject& line, std::uint64_t index, std::vector<AdapterUsageEvent>& events) {
  const auto usage = AssistantUsage::from(line);
  if (!usage) return;
  const auto id = line.string("id");
  const bool hasID = id && !id->empty();
  events.push_back({hasID ? std::string(*id) : secondsText(usage->date) + "-" + std::to_string(index), usage->date,
                    usage->metrics()});
}

}  // namespace

std::vector<AdapterUsageSession> PiSessionUsageAdapter::sessions(const std::filesystem::path& root, Date /*since*/) {
  std::vector<AdapterUsageSession> sessions;
  cache_.beginScan();
  for (const UsageFile& file : LocalUsageReader::files(root, "jsonl")) {
    const CachedFile& cached = cache_.entry(file, [&](CachedFile& entry) {
      return reader_.lines(
          file.path, [&](const JsonObject& line, std::uint64_t index) { appendEvent(line, index, entry.events); });
    });
    if (!cached.events.empty()) sessions.push_back({file.path.stem().native(), cached.events, std::nullopt});
  }
  cache_.endScan();
  return sessions;
}

}  // namespace quillmeter
