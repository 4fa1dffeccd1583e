#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "agents/adapters/OpenClawLimits.h"
#include "agents/adapters/TranscriptReader.h"
#include "agents/adapters/UsageDatabase.h"

namespace quillmeter {

// A cold archive that the database keeps as a file.
struct ColdArchiveFile {
  std::string sessionID;
  std::string name;
  std::string digest;  // archive_sha256 as the row has it
  bool compressed = true;
};

// The events that one source holds of a session, in their order there.
struct SourceEvents {
  std::string sessionID;
  std::vector<AdapterUsageEvent> events;
};

// What one database of an agent holds.
struct OpenClawDatabaseUsage {
  std::vector<SourceEvents> events;
  std::vector<ColdArchiveFile> coldFiles;
  int unreadable = 0;   // sources that could not be read
  bool settled = true;  // false when a failure may be gone next time (a lock, say)
};

// Reads one database inside one transaction, so that a move between its tables is seen before or after, never half.
class OpenClawDatabase {
 public:
  // `reader` and `limits` outlive it.
  OpenClawDatabase(TranscriptReader& reader, const OpenClawLimits& limits) : reader_(reader), limits_(limits) {}

  OpenClawDatabaseUsage read(const std::filesystem::path& path);

 private:
  void readTables(UsageDatabase& database);
  void readEvents(UsageDatabase& database);
  void appendEvent(const UsageRow& row, TranscriptUsage& usage);
  void readArchives(UsageDatabase& database);
  void readColdArchives(UsageDatabase& database);
  void readColdArchive(const UsageRow& row);
  void readBlob(const UsageRow& row, bool cold);
  void take(std::string_view sessionID, std::vector<AdapterUsageEvent> events);
  void run(UsageDatabase& database, const std::string& sql, const std::function<void(const UsageRow&)>& body);

  TranscriptReader& reader_;
  const OpenClawLimits& limits_;
  OpenClawDatabaseUsage usage_;
};

}  // namespace quillmeter
