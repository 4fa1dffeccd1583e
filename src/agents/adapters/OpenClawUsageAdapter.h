#pragma once

#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "agents/adapters/DatabaseGuard.h"
#include "agents/adapters/FileCache.h"
#include "agents/adapters/LocalUsageReader.h"
#include "agents/adapters/OpenClawDatabase.h"
#include "agents/adapters/OpenClawLimits.h"
#include "agents/adapters/TranscriptReader.h"
#include "agents/model/AgentUsageAdapter.h"
#include "base/Clock.h"
#include "platform/Sha256.h"

namespace quillmeter {

// Reads OpenClaw's transcripts in all the forms in which they lie side by side: files (plain, rotated, compressed),
// events and archives in a database, cold archives in the database or as files. Copies of a response within its session
// count once, wherever they lie: files come first, then the databases in the order of their names below. A move from
// one form to the other during a scan is followed, so that nothing is missed. Files, databases and cold files that did
// not change are not read again. See docs/formats/openclaw.md.
class OpenClawUsageAdapter final : public AgentUsageAdapter {
 public:
  // All of them outlive the adapter.
  OpenClawUsageAdapter(FileOpener& opener, Sha256& sha256, const Clock& clock, const OpenClawLimits& limits = {});

  // `root` holds a folder per agent.
  std::vector<AdapterUsageSession> sessions(const std::filesystem::path& root, Date since) override;
  void clearCache() override;
  int unreadableSourceCount() const override { return unreadableSourceCount_; }

 private:
  struct CachedFile {
    FileSignature signature;
    std::vector<AdapterUsageEvent> events;
    bool failed = false;
    bool vanished = false;  // between listing and opening
    std::string digest;     // of the stored bytes, of cold files only
  };
  struct CachedDatabase {
    FileStamp database;
    std::optional<FileStamp> log;
    OpenClawDatabaseUsage usage;
    bool reusable = false;
    std::uint64_t scan = 0;
  };
  // How often a folder or database is looked at again because it changed during the reading.
  static constexpr int maximumAttempts = 3;

  void readAgent(const std::filesystem::path& agent);
  int readTranscripts(const std::filesystem::path& folder);
  bool readTranscript(const std::filesystem::path& path, bool compressed, CachedFile& entry);
  void readDatabase(const std::filesystem::path& agent, const std::filesystem::path& path);
  const OpenClawDatabaseUsage& databaseUsage(const std::filesystem::path& path, const FileStamp& stamp);
  bool isCurrent(const std::filesystem::path& path);
  enum class ColdOutcome { counted, unreadable, missing };
  ColdOutcome readColdFile(const std::filesystem::path& agent, const ColdArchiveFile& file);
  bool parseColdFile(const std::filesystem::path& path, bool compressed, CachedFile& entry);
  void take(std::string_view sessionID, const std::vector<AdapterUsageEvent>& events);

  FileOpener& opener_;
  Sha256& sha256_;
  const Clock& clock_;
  const OpenClawLimits limits_;
  TranscriptReader reader_;
  OpenClawDatabase database_;
  FileCache<CachedFile> transcripts_;
  FileCache<CachedFile> coldFiles_;
  std::unordered_map<std::string, CachedDatabase> databases_;
  std::map<std::string, std::vector<AdapterUsageEvent>> events_;  // of the running call, by session
  int unreadableSourceCount_ = 0;
  std::uint64_t scan_ = 0;
};

}  // namespace quillmeter
