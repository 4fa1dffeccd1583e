#include "agents/adapters/TranscriptUsage.h"

#include <functional>
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
    id = "response:" + std::string(*responseID);
  } else {
    const std::string fingerprint = fingerprintOf(*usage);
    id = "anonymous:" + fingerprint + ":" + std::to_string(++anonymousCounts_[std::hash<std::string>()(fingerprint)]);
  }
  events_.push_back({std::move(id), usage->date, usage->metrics()});
}

std::vector<AdapterUsageEvent> TranscriptUsage::takeEvents() {
  anonymousCounts_ = {};
  events_.shrink_to_fit();
  return std::exchange(events_, {});
}

}  // namespace quillmeter
