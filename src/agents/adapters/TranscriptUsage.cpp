#include "agents/adapters/TranscriptUsage.h"

#include <functional>
#include <string_view>
#include <utility>

#include "agents/adapters/AssistantUsage.h"
#include "agents/adapters/LocalUsageReader.h"

namespace quillmeter {

namespace {

std::string fingerprintOf(const AssistantUsage& usage) {
  std::string text = secondsText(usage.date);
  for (const std::int64_t figure : {usage.input, usage.output, usage.cacheRead, usage.cacheWrite, usage.total}) {
    text += ':';
    text += std::to_string(figure);
  }
  return text;
}

}  // namespace

void TranscriptUsage::append(const JsonObject& line, const UsageValue& fallbackTimestamp) {
  const auto usage = AssistantUsage::from(line, fallbackTimestamp);
  if (!usage) return;
  std::string id;
  const auto responseID = line.object("message")->string("responseId");
  if (responseID && !responseID->empty()) {
    constexpr std::string_view prefix = "response:";
    id.reserve(prefix.size() + responseID->size());  // kept for long: not a byte more
    id.append(prefix).append(*responseID);
  } else {
    const std::string fingerprint = fingerprintOf(*usage);
    const std::string count = std::to_string(++anonymousCounts_[std::hash<std::string>()(fingerprint)]);
    constexpr std::string_view prefix = "anonymous:";
    id.reserve(prefix.size() + fingerprint.size() + 1 + count.size());
    id.append(prefix).append(fingerprint).append(":").append(count);
  }
  events_.push_back({std::move(id), usage->date, usage->metrics()});
}

std::vector<AdapterUsageEvent> TranscriptUsage::takeEvents() {
  anonymousCounts_ = {};
  events_.shrink_to_fit();
  return std::exchange(events_, {});
}

}  // namespace quillmeter
