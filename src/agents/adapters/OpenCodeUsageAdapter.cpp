#include "agents/adapters/OpenCodeUsageAdapter.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <unistd.h>

#include "agents/adapters/JsonAccess.h"
#include "agents/adapters/LocalUsageReader.h"
#include "agents/adapters/UsageDatabase.h"

namespace quillmeter {

namespace {

constexpr std::int64_t maximumMessageFileBytes = 16'777'216;
constexpr int maximumDatabaseValueBytes = 33'554'432;

AgentTokenMetrics metricsOf(const JsonObject& tokens) {
  const auto count = [](const JsonObject& object, std::string_view key) {
    return LocalUsageReader::integer(object.value(key));
  };
  AgentTokenMetrics metrics;
  metrics.inputTokens = count(tokens, "input");
  metrics.outputTokens = count(tokens, "output") + count(tokens, "reasoning");
  if (const auto cache = tokens.object("cache")) {
    metrics.inputTokens += count(*cache, "write");
    metrics.cachedTokens = count(*cache, "read");
  }
  metrics.totalTokens = metrics.inputTokens + metrics.outputTokens + metrics.cachedTokens;
  return metrics;
}

// The columns of the first message table that can be used, with its name.
struct MessageTable {
  std::string_view name;
  std::string_view role;  // expression
};

std::optional<MessageTable> messageTable(UsageDatabase& database) {
  for (const std::string_view table : {"message", "session_message"}) {
    const auto columns = database.columns(table);
    const auto has = [&](const char* column) { return columns.count(column) > 0; };
    if (!has("id") || !has("session_id") || !has("data") || !has("time_created") || !has("time_updated")) continue;
    const bool typed = table == "session_message" && has("type");
    return MessageTable{table, typed ? "type" : "json_extract(data, '$.role')"};
  }
  return std::nullopt;
}

// All answers of the sessions touched since the bound, older ones too: what counts in which range is decided later.
std::string messageStatement(const MessageTable& table, Date since) {
  const std::string name(table.name);
  const std::string role(table.role);
  const std::string milliseconds = std::to_string(since.microseconds / 1000);
  return "SELECT id, session_id, json_extract(data, '$.tokens') AS tokens,\n"
         "       COALESCE(json_extract(data, '$.time.completed'), json_extract(data, '$.time.created'), time_created) "
         "AS timestamp\n"
         "FROM " +
         name +
         "\n"
         "WHERE json_valid(data) AND " +
         role +
         " = 'assistant'\n"
         "  AND session_id IN (SELECT session_id FROM " +
         name + " WHERE time_updated >= " + milliseconds + ")";
}

void appendRow(const UsageRow& row, JsonParser& parser, std::vector<SessionEvent>& events) {
  const auto id = row.text("id");
  const auto sessionID = row.text("session_id");
  const auto text = row.text("tokens");
  if (!id || !sessionID || !text) return;
  const auto date = LocalUsageReader::date(row.value("timestamp"));
  const auto tokens = parser.parse(*text);
  if (!date || !tokens) return;
  const auto metrics = metricsOf(*tokens);
  if (metrics.totalTokens < 1) return;
  events.push_back({std::string(*sessionID), {std::string(*id), *date, metrics}});
}

// Gives the number of failures.
int readDatabase(UsageDatabase& database, Date since, std::vector<SessionEvent>& events) {
  if (!database.isOpen() || !database.rows("BEGIN")) return 1;
  int failures = 0;
  JsonParser parser;
  const auto table = messageTable(database);
  if (!table ||
      !database.rows(messageStatement(*table, since), [&](const UsageRow& row) { appendRow(row, parser, events); })) {
    ++failures;
  }
  if (!database.rows("COMMIT")) ++failures;
  return failures;
}

// The whole file with the room behind it that the parser wants; false when it cannot be read or has grown too large.
bool readMessageFile(FileOpener& opener, const std::filesystem::path& path, std::vector<char>& buffer,
                     std::size_t& length) {
  const auto fd = opener.open(path);
  if (!fd) return false;
  length = 0;
  for (;;) {
    if (buffer.size() < length + JsonParser::paddingBytes + 1)
      buffer.resize(std::max<std::size_t>(65'536, buffer.size() * 2));
    const ssize_t count = ::read(fd->get(), buffer.data() + length, buffer.size() - JsonParser::paddingBytes - length);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    if (count == 0) return true;
    length += static_cast<std::size_t>(count);
    if (length > static_cast<std::size_t>(maximumMessageFileBytes)) return false;
  }
}

std::optional<SessionEvent> eventOf(const JsonObject& message, const std::filesystem::path& path) {
  const auto tokens = message.object("tokens");
  const auto time = message.object("time");
  if (message.string("role") != "assistant" || !tokens || !time) return std::nullopt;
  auto instant = time->value("completed");
  if (std::holds_alternative<std::monostate>(instant)) instant = time->value("created");
  const auto date = LocalUsageReader::date(instant);
  const auto metrics = metricsOf(*tokens);
  if (!date || metrics.totalTokens < 1) return std::nullopt;
  const auto id = message.string("id");
  const auto sessionID = message.string("sessionID");
  return SessionEvent{sessionID ? std::string(*sessionID) : path.parent_path().filename().string(),
                      {id ? std::string(*id) : path.filename().string(), *date, metrics}};
}

std::vector<SessionEvent> readMessageFiles(const std::filesystem::path& folder, FileOpener& opener) {
  std::vector<SessionEvent> events;
  JsonParser parser;
  std::vector<char> buffer;
  for (const auto& file : LocalUsageReader::files(folder, "json")) {
    std::size_t length = 0;
    if (file.signature.size > maximumMessageFileBytes || !readMessageFile(opener, file.path, buffer, length)) continue;
    const auto message = parser.parsePadded({buffer.data(), length});
    if (!message) continue;
    if (auto event = eventOf(*message, file.path)) events.push_back(std::move(*event));
  }
  return events;
}

}  // namespace

std::vector<AdapterUsageSession> OpenCodeUsageAdapter::sessions(const std::filesystem::path& root, Date since) {
  unreadableSourceCount_ = 0;
  const auto path = root / "opencode.db";
  std::vector<SessionEvent> events;
  std::error_code error;
  if (std::filesystem::status(path, error).type() == std::filesystem::file_type::not_found) {
    events = readMessageFiles(root / "storage" / "message", opener_);
  } else {
    UsageDatabaseLimits limits;
    limits.maximumValueBytes = maximumDatabaseValueBytes;
    const bool whole = UsageDatabase::readWhole(path, limits, [&](UsageDatabase& database) {
      events.clear();
      unreadableSourceCount_ = readDatabase(database, since, events);
    });
    if (!whole) {
      events.clear();
      unreadableSourceCount_ = 1;
    }
  }
  auto sessions = LocalUsageReader::grouped(std::move(events));
  std::erase_if(sessions, [&](const AdapterUsageSession& session) {
    return session.lastActivity().value_or(Date::distantPast()) < since;
  });
  return sessions;
}

}  // namespace quillmeter
