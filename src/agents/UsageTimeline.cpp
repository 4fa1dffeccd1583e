#include "agents/UsageTimeline.h"

namespace quillmeter {

namespace {

// Differences of any two values fit when taken modulo 2^64; small ones of either sign become few bytes.
std::uint64_t zigzag(std::uint64_t difference) {
  return (difference << 1) ^ (std::uint64_t{0} - (difference >> 63));
}

std::uint64_t unzigzag(std::uint64_t code) {
  return (code >> 1) ^ (std::uint64_t{0} - (code & 1));
}

void put(std::vector<std::uint8_t>& bytes, std::int64_t value, std::int64_t previous) {
  std::uint64_t code = zigzag(static_cast<std::uint64_t>(value) - static_cast<std::uint64_t>(previous));
  while (code >= 0x80) {
    bytes.push_back(static_cast<std::uint8_t>(code | 0x80));
    code >>= 7;
  }
  bytes.push_back(static_cast<std::uint8_t>(code));
}

std::int64_t take(const std::uint8_t*& position, std::int64_t previous) {
  std::uint64_t code = 0;
  int shift = 0;
  for (; *position & 0x80; ++position, shift += 7) code |= std::uint64_t{*position & 0x7Fu} << shift;
  code |= std::uint64_t{*position++} << shift;
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(previous) + unzigzag(code));
}

// What the total mostly is; only the rest is stored.
std::int64_t sumOfParts(const AgentTokenMetrics& metrics) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(metrics.inputTokens) +
                                   static_cast<std::uint64_t>(metrics.outputTokens) +
                                   static_cast<std::uint64_t>(metrics.cachedTokens));
}

}  // namespace

void UsageTimeline::append(const AgentUsageEvent& event) {
  put(bytes_, event.date.microseconds, last_.date.microseconds);
  put(bytes_, event.metrics.inputTokens, last_.metrics.inputTokens);
  put(bytes_, event.metrics.outputTokens, last_.metrics.outputTokens);
  put(bytes_, event.metrics.cachedTokens, last_.metrics.cachedTokens);
  put(bytes_, event.metrics.totalTokens, sumOfParts(event.metrics));
  last_ = event;
  ++count_;
}

UsageTimeline::Reader::Reader(const UsageTimeline& timeline)
    : position_(timeline.bytes_.data()), end_(timeline.bytes_.data() + timeline.bytes_.size()) {}

bool UsageTimeline::Reader::next(AgentUsageEvent& event) {
  if (position_ == end_) return false;
  AgentTokenMetrics& metrics = previous_.metrics;
  previous_.date.microseconds = take(position_, previous_.date.microseconds);
  metrics.inputTokens = take(position_, metrics.inputTokens);
  metrics.outputTokens = take(position_, metrics.outputTokens);
  metrics.cachedTokens = take(position_, metrics.cachedTokens);
  metrics.totalTokens = take(position_, sumOfParts(metrics));
  event = previous_;
  return true;
}

std::vector<AgentUsageEvent> UsageTimeline::events() const {
  std::vector<AgentUsageEvent> result;
  result.reserve(count_);
  Reader reader(*this);
  for (AgentUsageEvent event; reader.next(event);) result.push_back(event);
  return result;
}

}  // namespace quillmeter
