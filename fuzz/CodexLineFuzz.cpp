// Any line may stand in a session log. A record that is read keeps its promises, and only JSON gives one.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>

#include "agents/CodexLogParser.h"

using namespace quillmeter;

namespace {

void require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "codex line: %s\n", what);
  std::abort();
}

bool isFraction(const std::optional<double>& value) {
  return !value || (std::isfinite(*value) && *value >= 0 && *value <= 1);
}

// JSON as another reader takes it, which refuses lone surrogates and numbers beyond a double.
bool isJson(const std::string& text) {
  static const std::regex number("[0-9][eE][+-]?[0-9]{3}|[0-9]{300}");
  return nlohmann::json::accept(text) || text.find("\\u") != std::string::npos || std::regex_search(text, number);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string line(reinterpret_cast<const char*>(data), size);
  const std::string padded = line + std::string(LineScanner::paddingBytes, '"');
  const auto record = CodexLogParser::codexEvent(std::string_view(padded).substr(0, size));
  if (!record) return 0;
  require(isJson(line), "read from something that is no JSON");
  require(record->point.metrics.inputTokens >= 0, "input below zero");
  require(isCounterInBounds(record->point.metrics.totalTokens), "total out of bounds");
  require(isFraction(record->limits.primaryUsed) && isFraction(record->limits.weeklyUsed), "limit that is no fraction");
  UsageTimeline timeline;
  timeline.append(record->point);
  require(timeline.events() == std::vector<CodexPoint>{record->point}, "point changed when stored");
  return 0;
}
