#include "agents/ClaudeLogParser.h"

#include <algorithm>
#include <cerrno>

#include "agents/JsonCursor.h"
#include "agents/JsonString.h"
#include "agents/KeySet.h"
#include "agents/LogFields.h"

namespace quillmeter {

namespace {

// The value of a text field, escapes as written; absent when it is no text.
std::optional<std::string_view> readRawString(JsonCursor& cursor) {
  const bool isString = cursor.kind() == JsonKind::string;
  const std::string_view raw = cursor.scalar();
  return isString ? std::optional(raw) : std::nullopt;
}

bool readUsage(JsonCursor& cursor, ClaudeReply& reply) {
  reply.inputTokens = reply.creationTokens = reply.readTokens = reply.outputTokens = 0;
  if (!cursor.enterObject()) {
    cursor.skip();
    return false;
  }
  std::string buffer;
  for (std::string_view key; cursor.nextKey(key);) {
    key = unescapeJson(key, buffer);
    if (key == "input_tokens") {
      reply.inputTokens = readInteger(cursor).value_or(0);
    } else if (key == "cache_creation_input_tokens") {
      reply.creationTokens = readInteger(cursor).value_or(0);
    } else if (key == "cache_read_input_tokens") {
      reply.readTokens = readInteger(cursor).value_or(0);
    } else if (key == "output_tokens") {
      reply.outputTokens = readInteger(cursor).value_or(0);
    } else {
      cursor.skip();
    }
  }
  return !cursor.failed();
}

bool readMessage(JsonCursor& cursor, ClaudeReply& reply) {
  if (!cursor.enterObject()) {
    cursor.skip();
    return false;
  }
  bool hasUsage = false;
  std::string buffer;
  for (std::string_view key; cursor.nextKey(key);) {
    if (unescapeJson(key, buffer) == "usage") {
      hasUsage = readUsage(cursor, reply);
    } else {
      cursor.skip();
    }
  }
  return hasUsage && !cursor.failed();
}

// The last members of a line, read from its end.
struct TrailingFields {
  std::optional<std::string_view> type;
  std::optional<std::string_view> requestId;
};

// Cuts the last JSON scalar off `text` and gives its text, strings without quotes; absent when there is none or it
// holds an escape.
std::optional<std::string_view> takeLastScalar(std::string_view& text) {
  if (text.empty()) return std::nullopt;
  if (text.back() == '"') {
    const std::size_t open = text.size() < 2 ? std::string_view::npos : text.rfind('"', text.size() - 2);
    if (open == std::string_view::npos || (open > 0 && text[open - 1] == '\\')) return std::nullopt;
    const std::string_view value = text.substr(open + 1, text.size() - open - 2);
    text = text.substr(0, open);
    return value.find('\\') == std::string_view::npos ? std::optional(value) : std::nullopt;
  }
  const std::size_t before = text.find_last_of(":,{}[]\" \t");
  if (before == std::string_view::npos || before + 1 == text.size()) return std::nullopt;
  const std::string_view value = text.substr(before + 1);
  text = text.substr(0, before + 1);
  return value;
}

bool takeLast(std::string_view& text, char byte) {
  if (!text.ends_with(byte)) return false;
  text.remove_suffix(1);
  return true;
}

// The scalar members between the last container of the line and its end, which is where the id of a reply stands. If
// the line is JSON, its last brace closes the whole, and what is read backwards from there is what a reading from the
// front would find; if it is none, it does not count anyway.
TrailingFields trailingFields(std::string_view line) {
  constexpr int mostMembers = 16;
  TrailingFields fields;
  takeLast(line, '\r');
  if (!takeLast(line, '}')) return fields;
  for (int member = 0; member < mostMembers; ++member) {
    const bool isString = line.ends_with('"');
    const std::optional<std::string_view> value = takeLastScalar(line);
    if (!value || !takeLast(line, ':') || !line.ends_with('"')) break;
    const std::optional<std::string_view> key = takeLastScalar(line);
    if (!key) break;
    if (key == "type" && !fields.type) fields.type = value;
    if (key == "requestId" && !fields.requestId) {
      if (!isString) break;
      fields.requestId = value;
    }
    if (!takeLast(line, ',')) break;
  }
  return fields;
}

bool countersInBounds(const ClaudeReply& reply) {
  return isCounterInBounds(reply.inputTokens) && isCounterInBounds(reply.creationTokens) &&
         isCounterInBounds(reply.readTokens) && isCounterInBounds(reply.outputTokens);
}

}  // namespace

// The state of one pass over a transcript.
class ClaudeLogParser::Pass {
 public:
  void begin() {
    parsed_ = {};
    keys_.clear();
  }

  void consume(std::string_view line) {
    // Most lines repeat a reply that was counted before. Their ends tell, and the long rest is not looked at.
    const TrailingFields trailing = trailingFields(line);
    if (trailing.type && *trailing.type != "assistant") return;
    if (trailing.requestId && keys_.contains(*trailing.requestId)) return;
    const std::optional<ClaudeReply> reply = claudeReply(line, keyBuffer_);
    if (!reply || !keys_.insert(keyOf(*reply))) return;
    const std::int64_t input = reply->inputTokens + reply->creationTokens;
    const std::int64_t total = input + reply->readTokens + reply->outputTokens;
    if (total >= 1) record({reply->date, {total, input, reply->outputTokens, reply->readTokens, 0}});
  }

  CachedClaudeFile take(const FileSignature& signature) {
    parsed_.signature = signature;
    if (!parsed_.magnitude.isSummable()) parsed_.events = {};
    parsed_.events.shrink();
    keys_.clear();
    return std::move(parsed_);
  }

 private:
  // Lines without any id are kept apart by their time and by how many events came before.
  std::string_view keyOf(const ClaudeReply& reply) {
    if (reply.hasKey) return reply.key;
    keyBuffer_ = std::to_string(reply.date.microseconds);
    keyBuffer_ += '-';
    keyBuffer_ += std::to_string(parsed_.events.size());
    return keyBuffer_;
  }

  void record(const ClaudeTokenEvent& event) {
    parsed_.magnitude.add(event.metrics);
    if (!parsed_.magnitude.isSummable()) return;
    parsed_.events.append(event);
    parsed_.sessionMetrics += event.metrics;
    parsed_.firstActivity = std::min(parsed_.firstActivity.value_or(event.date), event.date);
    parsed_.lastActivity = std::max(parsed_.lastActivity.value_or(event.date), event.date);
  }

  CachedClaudeFile parsed_;
  KeySet keys_;
  std::string keyBuffer_;
};

ClaudeLogParser::ClaudeLogParser(FileOpener& opener)
    : opener_(opener), scanner_("\"assistant\""), pass_(std::make_unique<Pass>()) {}

ClaudeLogParser::~ClaudeLogParser() = default;

std::optional<ClaudeReply> ClaudeLogParser::claudeReply(std::string_view line, std::string& keyBuffer) {
  JsonCursor cursor(line);
  if (!cursor.enterObject()) return std::nullopt;
  ClaudeReply reply;
  bool isAssistant = false;
  bool hasUsage = false;
  std::optional<Date> date;
  std::optional<std::string_view> requestId;
  std::optional<std::string_view> uuid;
  for (std::string_view key; cursor.nextKey(key);) {
    key = unescapeJson(key, keyBuffer);
    if (key == "type") {
      isAssistant = readString(cursor, keyBuffer) == "assistant";
      if (!isAssistant)
        return std::nullopt;  // most often a user's line that mentions the word; the rest is not looked at
    } else if (key == "timestamp") {
      date = readDate(cursor);
    } else if (key == "message") {
      hasUsage = readMessage(cursor, reply);
    } else if (key == "requestId") {
      requestId = readRawString(cursor);
    } else if (key == "uuid") {
      uuid = readRawString(cursor);
    } else {
      cursor.skip();
    }
  }
  if (!isAssistant || !date || !hasUsage || !cursor.atEnd() || !countersInBounds(reply) || !isUtf8(line))
    return std::nullopt;
  reply.date = *date;
  reply.hasKey = requestId || uuid;
  if (reply.hasKey) reply.key = unescapeJson(requestId ? *requestId : *uuid, keyBuffer);
  return reply;
}

tl::expected<CachedClaudeFile, int> ClaudeLogParser::parse(const LogFile& file) {
  const tl::expected<FileDescriptor, int> descriptor = opener_.open(file.path);
  if (!descriptor) return tl::unexpected(descriptor.error());
  pass_->begin();
  const ScanEnd end = scanner_.scan(descriptor->get(), [this](const ScannedLine& line) {
    pass_->consume(line.text);
    return true;
  });
  if (end == ScanEnd::readError) return tl::unexpected(EIO);
  return pass_->take(file.signature());
}

}  // namespace quillmeter
