// Any line may stand in a transcript. A reply that is read keeps its promises, and only JSON gives one.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>

#include "agents/ClaudeLogParser.h"
#include "agents/JsonCursor.h"

using namespace quillmeter;

namespace {

void require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "claude line: %s\n", what);
  std::abort();
}

// Whether the other reader may see a line otherwise than the grammar: it refuses lone surrogates and numbers beyond a
// double, takes a byte order mark and a zero byte as the end, and knows no bound of nesting.
bool mayDiffer(const std::string& line) {
  static const std::regex number("[0-9][eE][+-]?[0-9]{3}|[0-9]{300}");
  return line.find("\\u") != std::string::npos || line.starts_with("\xEF\xBB\xBF") ||
         line.find('\0') != std::string::npos || line.size() > JsonCursor::maximumDepth ||
         std::regex_search(line, number);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string line(reinterpret_cast<const char*>(data), size);
  const std::string padded = line + std::string(LineScanner::paddingBytes, '"');
  const std::string_view view = std::string_view(padded).substr(0, size);

  JsonCursor cursor(view);
  cursor.skip();
  const bool accepted = cursor.atEnd() && isUtf8(view);
  require(accepted == nlohmann::json::accept(line) || mayDiffer(line), "another reader disagrees");

  std::string buffer;
  const auto reply = ClaudeLogParser::claudeReply(view, buffer);
  if (!reply) return 0;
  require(accepted, "read from something that is no JSON");
  for (const std::int64_t counter :
       {reply->inputTokens, reply->creationTokens, reply->readTokens, reply->outputTokens}) {
    require(isCounterInBounds(counter), "counter out of bounds");
  }
  require(reply->hasKey || reply->key.empty(), "a key from nowhere");
  return 0;
}
