#include "agents/adapters/OpenClawDatabase.h"

#include <functional>
#include <utility>

namespace quillmeter {

namespace {

using Columns = std::set<std::string>;

// Versions differ in their columns: a statement names only those that are there.
std::string columnOrNull(const Columns& columns, const std::string& name) {
  return columns.contains(name) ? name : "NULL AS " + name;
}

std::string guarded(const Columns& columns, const std::string& name, const std::string& length, std::uint64_t limit) {
  if (!columns.contains(name)) return "NULL AS " + name;
  return "CASE WHEN length(" + length + ") <= " + std::to_string(limit) + " THEN " + name + " END AS " + name;
}

std::string eventStatement(const Columns& columns, const OpenClawLimits& limits) {
  const std::string compressed = columns.contains("event_zstd")
                                     ? guarded(columns, "event_zstd", "event_zstd", limits.eventBytes) + ", " +
                                           columnOrNull(columns, "event_utf8_bytes")
                                     : "NULL AS event_zstd, NULL AS event_utf8_bytes";
  return "SELECT session_id, " + columnOrNull(columns, "seq") + ", " + columnOrNull(columns, "created_at") + ",\n    " +
         guarded(columns, "event_json", "CAST(event_json AS BLOB)", limits.eventTextBytes) + ",\n    " + compressed +
         " FROM transcript_events ORDER BY session_id" + (columns.contains("seq") ? ", seq" : "");
}

std::string archiveStatement(const Columns& columns, const std::string& table, const std::string& furtherColumns,
                             const std::string& order, const OpenClawLimits& limits) {
  return "SELECT session_id, " + columnOrNull(columns, "encoding") + ", " + columnOrNull(columns, "archive_sha256") +
         ",\n    " + guarded(columns, "archive_blob", "archive_blob", limits.archiveBytes) + furtherColumns +
         "\nFROM " + table + " ORDER BY " + order;
}

// A BLOB's or a TEXT's bytes.
std::optional<std::string_view> bytesOf(const UsageRow& row, std::string_view column) {
  if (const auto blob = row.blob(column)) {
    return std::string_view(reinterpret_cast<const char*>(blob->data()), blob->size());
  }
  return row.text(column);
}

// Absent for an encoding that is not known. Without one it is zstd, as the cold archives have always been.
std::optional<bool> isCompressed(const UsageRow& row) {
  const auto encoding = row.text("encoding");
  if (!encoding || *encoding == "zstd") return true;
  if (*encoding == "identity") return false;
  return std::nullopt;
}

}  // namespace

OpenClawDatabaseUsage OpenClawDatabase::read(const std::filesystem::path& path) {
  const bool whole = UsageDatabase::readWhole(path, {}, [this](UsageDatabase& database) {
    usage_ = {};
    if (!database.isOpen() || !database.rows("BEGIN")) {
      usage_.unreadable = 1;
      usage_.settled = false;
      return;
    }
    readTables(database);
    run(database, "COMMIT", {});
  });
  if (!whole) usage_ = {.events = {}, .coldFiles = {}, .unreadable = 1, .settled = false};
  return std::exchange(usage_, {});
}

void OpenClawDatabase::readTables(UsageDatabase& database) {
  readEvents(database);
  readArchives(database);
  readColdArchives(database);
}

void OpenClawDatabase::run(UsageDatabase& database, const std::string& sql,
                           const std::function<void(const UsageRow&)>& body) {
  if (database.rows(sql, body)) return;
  ++usage_.unreadable;
  usage_.settled = false;
}

void OpenClawDatabase::take(std::string_view sessionID, std::vector<AdapterUsageEvent> events) {
  if (!events.empty()) usage_.events.push_back({std::string(sessionID), std::move(events)});
}

void OpenClawDatabase::readEvents(UsageDatabase& database) {
  const Columns columns = database.columns("transcript_events");
  if (columns.empty()) return;
  if (!columns.contains("session_id") || !(columns.contains("event_json") || columns.contains("event_zstd"))) {
    ++usage_.unreadable;
    return;
  }
  std::string sessionID;
  TranscriptUsage usage;
  run(database, eventStatement(columns, limits_), [&](const UsageRow& row) {
    const auto id = row.text("session_id");
    if (!id || id->empty()) return;
    if (*id != sessionID) {
      take(sessionID, usage.takeEvents());
      sessionID = *id;
    }
    appendEvent(row, usage);
  });
  take(sessionID, usage.takeEvents());
}

void OpenClawDatabase::appendEvent(const UsageRow& row, TranscriptUsage& usage) {
  const UsageValue createdAt = row.value("created_at");
  if (const auto text = row.text("event_json")) {
    reader_.event(*text, createdAt, usage);
  } else if (const auto bytes = bytesOf(row, "event_zstd")) {
    const auto read = reader_.compressedEvent(*bytes, limits_.eventBytes, createdAt, usage);
    if (!read && read.error() != ArchiveReadError::tooLarge) ++usage_.unreadable;
  }
}

void OpenClawDatabase::readArchives(UsageDatabase& database) {
  const std::string table = "session_transcript_archives";
  const Columns columns = database.columns(table);
  if (columns.empty()) return;
  if (!columns.contains("session_id")) {
    ++usage_.unreadable;
    return;
  }
  const std::string order = columns.contains("created_at") ? "session_id, created_at" : "session_id";
  run(database, archiveStatement(columns, table, "", order, limits_),
      [&](const UsageRow& row) { readBlob(row, false); });
}

void OpenClawDatabase::readColdArchives(UsageDatabase& database) {
  const std::string table = "session_transcript_cold_archives";
  const Columns columns = database.columns(table);
  if (columns.empty()) return;
  if (!columns.contains("session_id")) {
    ++usage_.unreadable;
    return;
  }
  std::string further;
  for (const char* name :
       {"id", "generation", "archive_name", "storage", "archive_bytes", "event_count", "raw_bytes", "last_seq"}) {
    if (columns.contains(name)) further += std::string(", ") + name;
  }
  run(database, archiveStatement(columns, table, further, "session_id", limits_),
      [&](const UsageRow& row) { readColdArchive(row); });
}

void OpenClawDatabase::readColdArchive(const UsageRow& row) {
  const auto storage = row.text("storage");
  const auto name = row.text("archive_name");
  const bool asFile = storage ? *storage == "file" : !bytesOf(row, "archive_blob") && name;
  if (!asFile) {
    readBlob(row, true);
    return;
  }
  const auto id = row.text("session_id");
  const auto compressed = isCompressed(row);
  if (!id || id->empty()) return;
  if (!name || !compressed) {
    ++usage_.unreadable;
    return;
  }
  usage_.coldFiles.push_back(
      {std::string(*id), std::string(*name), std::string(row.text("archive_sha256").value_or("")), *compressed});
}

void OpenClawDatabase::readBlob(const UsageRow& row, bool cold) {
  const auto id = row.text("session_id");
  if (!id || id->empty()) return;
  const auto bytes = bytesOf(row, "archive_blob");
  const auto compressed = isCompressed(row);
  if (!bytes || !compressed) {
    ++usage_.unreadable;
    return;
  }
  const auto source = AgentArchiveReader::bytesSource(*bytes);
  auto events = cold ? reader_.coldArchive(source, *compressed, limits_.archiveBytes)
                     : reader_.transcript(source, *compressed, limits_.archiveBytes);
  if (events) {
    take(*id, std::move(*events));
  } else {
    ++usage_.unreadable;
  }
}

}  // namespace quillmeter
