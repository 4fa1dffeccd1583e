#include "agents/adapters/UsageDatabase.h"

#include <algorithm>
#include <deque>
#include <utility>
#include <vector>

#include <simdjson.h>
#include <sqlite3.h>

#include "agents/adapters/DatabaseConnection.h"

namespace quillmeter {

namespace {

struct StatementFinalizer {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

constexpr std::string_view replacement = "\xEF\xBF\xBD";  // U+FFFD

// The length of the well-formed sequence at the beginning of `bytes`, or minus the length of what one replacement
// stands for.
int sequenceLength(std::string_view bytes) {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned lead = at(0);
  if (lead < 0x80) return 1;
  const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4) return -1;
  // Overlong forms, surrogates and what lies above U+10FFFF show in the second byte.
  const unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  for (int i = 1; i < length; ++i) {
    const auto index = static_cast<std::size_t>(i);
    if (index >= bytes.size() || at(index) < (i == 1 ? low : 0x80U) || at(index) > (i == 1 ? high : 0xBFU)) return -i;
  }
  return length;
}

std::string repairedUtf8(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const int length = sequenceLength(bytes);
    const auto count = static_cast<std::size_t>(length > 0 ? length : -length);
    text.append(length > 0 ? bytes.substr(0, count) : replacement);
    bytes.remove_prefix(count);
  }
  return text;
}

}  // namespace

struct UsageRow::Statement {
  sqlite3_stmt* handle = nullptr;
  std::vector<std::string_view> names;
  std::deque<std::string> repaired;  // of the current row; a deque, so that views stay valid

  int index(std::string_view column) const {
    const auto found = std::find(names.begin(), names.end(), column);
    return found == names.end() ? -1 : static_cast<int>(found - names.begin());
  }
  int type(int index) const { return index < 0 ? SQLITE_NULL : sqlite3_column_type(handle, index); }
};

struct UsageDatabase::Connection {
  UsageDatabaseLimits limits;
  std::unique_ptr<DatabaseConnection> opened;
};

UsageValue UsageRow::value(std::string_view column) const {
  const int index = statement_.index(column);
  switch (statement_.type(index)) {
    case SQLITE_INTEGER:
      return std::int64_t{sqlite3_column_int64(statement_.handle, index)};
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement_.handle, index);
    case SQLITE_TEXT:
      break;
    default:
      return {};
  }
  if (const auto found = text(column)) return *found;
  return {};
}

std::optional<std::string_view> UsageRow::text(std::string_view column) const {
  const int index = statement_.index(column);
  if (statement_.type(index) != SQLITE_TEXT) return std::nullopt;
  const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_.handle, index));
  if (bytes == nullptr) return std::nullopt;
  std::string_view view(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_.handle, index)));
  view = view.substr(0, view.find('\0'));
  if (simdjson::validate_utf8(view.data(), view.size())) return view;
  return statement_.repaired.emplace_back(repairedUtf8(view));
}

std::optional<std::span<const std::byte>> UsageRow::blob(std::string_view column) const {
  const int index = statement_.index(column);
  if (statement_.type(index) != SQLITE_BLOB) return std::nullopt;
  const auto* bytes = static_cast<const std::byte*>(sqlite3_column_blob(statement_.handle, index));
  const int count = bytes != nullptr ? sqlite3_column_bytes(statement_.handle, index) : 0;
  return std::span<const std::byte>(bytes, static_cast<std::size_t>(count));
}

UsageDatabase::UsageDatabase(const std::filesystem::path& path, const UsageDatabaseLimits& limits)
    : connection_(std::make_unique<Connection>(Connection{limits, nullptr})) {
  connection_->opened = DatabaseConnection::open(path, connection_->limits);
}

UsageDatabase::~UsageDatabase() = default;

bool UsageDatabase::isOpen() const {
  return connection_->opened != nullptr;
}

bool UsageDatabase::rows(std::string_view sql, const std::function<void(const UsageRow&)>& body) {
  if (!isOpen()) return false;
  auto& connection = *connection_->opened;
  sqlite3_stmt* prepared = nullptr;
  if (!connection.beginStatementTime()) return false;
  const int prepareCode =
      sqlite3_prepare_v2(connection.handle(), sql.data(), static_cast<int>(sql.size()), &prepared, nullptr);
  connection.endStatementTime();
  const std::unique_ptr<sqlite3_stmt, StatementFinalizer> owner(prepared);
  if (prepareCode != SQLITE_OK || prepared == nullptr) return false;

  UsageRow::Statement statement;
  statement.handle = prepared;
  const UsageRow row(statement);
  while (connection.beginStatementTime()) {
    const int code = sqlite3_step(prepared);
    connection.endStatementTime();
    if (code != SQLITE_ROW) return code == SQLITE_DONE && !connection.wasDisturbed();
    if (!body) continue;
    // Only now: the first step may have compiled the statement anew.
    if (statement.names.empty()) {
      for (int i = 0; i < sqlite3_column_count(prepared); ++i)
        statement.names.emplace_back(sqlite3_column_name(prepared, i));
    }
    statement.repaired.clear();
    body(row);
  }
  return false;
}

std::set<std::string> UsageDatabase::columns(std::string_view table) {
  std::set<std::string> names;
  std::string sql = "PRAGMA table_info(";
  sql.append(table).append(")");
  rows(sql, [&](const UsageRow& row) {
    if (const auto name = row.text("name")) names.emplace(*name);
  });
  return names;
}

bool UsageDatabase::wasDisturbed() {
  return isOpen() && connection_->opened->wasDisturbed();
}

bool UsageDatabase::readWhole(const std::filesystem::path& path, const UsageDatabaseLimits& limits,
                              const std::function<void(UsageDatabase&)>& read) {
  for (int attempt = 0; attempt < maximumAttempts; ++attempt) {
    UsageDatabase database(path, limits);
    read(database);
    if (!database.wasDisturbed()) return true;
  }
  return false;
}

}  // namespace quillmeter
