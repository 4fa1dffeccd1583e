// A transcript as OpenClaw writes it, line by line, read as a row's text, as a plain stream and as a cold archive:
// figures stay within their bounds, and reading the same twice gives the same.
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>

#include "agents/adapters/LocalUsageReader.h"
#include "agents/adapters/TranscriptFileName.h"
#include "agents/adapters/TranscriptReader.h"

namespace {

using namespace quillmeter;

void check(const std::vector<AdapterUsageEvent>& events) {
  std::set<std::string> anonymous;
  for (const AdapterUsageEvent& event : events) {
    const AgentTokenMetrics& metrics = event.metrics;
    const bool bounded = metrics.totalTokens >= 1 && metrics.totalTokens <= 4 * LocalUsageReader::maximumInteger &&
                         metrics.inputTokens >= 0 && metrics.inputTokens <= 2 * LocalUsageReader::maximumInteger &&
                         metrics.outputTokens >= 0 && metrics.outputTokens <= LocalUsageReader::maximumInteger &&
                         metrics.cachedTokens >= 0 && metrics.cachedTokens <= LocalUsageReader::maximumInteger;
    if (!bounded || event.date < Date::distantPast() || event.date > Date::distantFuture()) std::abort();
    if (event.id.starts_with("response:")) continue;
    if (!event.id.starts_with("anonymous:") || !anonymous.insert(event.id).second) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::uint64_t limit = 1'048'576;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  TranscriptReader reader;
  TranscriptUsage row;
  reader.event(text, std::int64_t{1'700'000'000}, row);
  check(row.events());
  const auto plain = reader.transcript(AgentArchiveReader::bytesSource(text), false, limit);
  const auto again = reader.transcript(AgentArchiveReader::bytesSource(text), false, limit);
  const auto cold = reader.coldArchive(AgentArchiveReader::bytesSource(text), false, limit);
  if (plain != again) std::abort();
  if (plain) check(*plain);
  if (cold) check(*cold);
  if (const auto name = TranscriptFileName::from(text); name && name->sessionID.empty()) std::abort();
  return 0;
}
