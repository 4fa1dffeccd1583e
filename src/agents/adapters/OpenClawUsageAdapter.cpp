#include "agents/adapters/OpenClawUsageAdapter.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <iterator>
#include <string_view>
#include <utility>

#include "agents/adapters/TranscriptFileName.h"
#include "base/DirectoryWalk.h"

namespace quillmeter {

namespace {

namespace fs = std::filesystem;

constexpr std::array databaseNames = {"agent/openclaw-agent.sqlite", "sessions/openclaw-agent.sqlite",
                                      "sessions/sessions.sqlite", "sessions/sessions.db"};
constexpr std::array coldFolders = {"sessions/cold", "cold"};

// A file written twice within one tick of the kernel's clock keeps its date: what was changed this recently may change
// again unseen.
constexpr double settledSeconds = 2;

// Changes with every file that is made, renamed or removed in the folder.
fs::file_time_type folderDate(const fs::path& folder) {
  std::error_code error;
  const auto date = fs::last_write_time(folder, error);
  return error ? fs::file_time_type::min() : date;
}

std::vector<fs::path> foldersIn(const fs::path& root, bool& listed) {
  std::error_code error;
  std::vector<fs::path> folders;
  fs::directory_iterator entries(root, error);
  for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
    std::error_code statusError;
    if (entries->is_directory(statusError)) folders.push_back(entries->path());
  }
  listed = !error;
  std::sort(folders.begin(), folders.end());
  return folders;
}

std::string hexadecimal(const Sha256Digest::Bytes& bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += digits[byte >> 4U];
    text += digits[byte & 15U];
  }
  return text;
}

// Keeps the first event of each id. Copies are found by sorting: a set of ids would need more memory than the events.
void dropCopies(std::vector<AdapterUsageEvent>& events) {
  struct Place {
    std::size_t hash;
    std::uint32_t index;
  };
  std::vector<Place> places;
  places.reserve(events.size());
  for (std::uint32_t i = 0; i < events.size(); ++i) places.push_back({std::hash<std::string>()(events[i].id), i});
  std::sort(places.begin(), places.end(), [&](const Place& a, const Place& b) {
    if (a.hash != b.hash) return a.hash < b.hash;
    const int order = events[a.index].id.compare(events[b.index].id);
    return order != 0 ? order < 0 : a.index < b.index;
  });
  std::vector<bool> isCopy(events.size());
  for (std::size_t i = 1; i < places.size(); ++i) {
    isCopy[places[i].index] =
        places[i].hash == places[i - 1].hash && events[places[i].index].id == events[places[i - 1].index].id;
  }
  std::size_t kept = 0;
  for (std::size_t i = 0; i < events.size(); ++i) {
    if (!isCopy[i] && kept++ != i) events[kept - 1] = std::move(events[i]);
  }
  events.resize(kept);
}

// A source of a descriptor's bytes that remembers whether a failure was the descriptor's and not the data's.
AgentArchiveReader::Source watchedSource(int fd, bool& readFailed) {
  return [source = AgentArchiveReader::descriptorSource(fd), &readFailed] {
    auto piece = source();
    readFailed = readFailed || !piece;
    return piece;
  };
}

}  // namespace

OpenClawUsageAdapter::OpenClawUsageAdapter(FileOpener& opener, Sha256& sha256, const Clock& clock,
                                           const OpenClawLimits& limits)
    : opener_(opener), sha256_(sha256), clock_(clock), limits_(limits), database_(reader_, limits_) {}

std::vector<AdapterUsageSession> OpenClawUsageAdapter::sessions(const fs::path& root, Date since) {
  unreadableSourceCount_ = 0;
  ++scan_;
  transcripts_.beginScan();
  coldFiles_.beginScan();
  bool listed = false;
  for (const fs::path& agent : foldersIn(root, listed)) readAgent(agent);
  if (std::error_code error; !listed && fs::exists(root, error)) ++unreadableSourceCount_;
  transcripts_.endScan();
  coldFiles_.endScan();
  std::erase_if(databases_, [this](const auto& item) { return item.second.scan != scan_; });

  std::vector<AdapterUsageSession> sessions;
  for (auto& [id, events] : std::exchange(events_, {})) {
    dropCopies(events);
    AdapterUsageSession session{id, std::move(events), std::nullopt};
    if (session.lastActivity().value_or(Date::distantPast()) >= since) sessions.push_back(std::move(session));
  }
  return sessions;
}

void OpenClawUsageAdapter::clearCache() {
  transcripts_.clear();
  coldFiles_.clear();
  databases_.clear();
}

// A transcript that is renamed, or written out of the database, while this runs is found by listing again; what is read
// twice thereby are copies with the same ids.
void OpenClawUsageAdapter::readAgent(const fs::path& agent) {
  const fs::path folder = agent / "sessions";
  int unreadableTranscripts = 0;
  for (int attempt = 0; attempt < maximumAttempts; ++attempt) {
    const auto date = folderDate(folder);
    unreadableTranscripts = readTranscripts(folder);
    if (attempt == 0) {
      for (const char* name : databaseNames) readDatabase(agent, agent / name);
    }
    if (folderDate(folder) == date) break;
  }
  unreadableSourceCount_ += unreadableTranscripts;
}

int OpenClawUsageAdapter::readTranscripts(const fs::path& folder) {
  std::vector<UsageFile> files;
  const WalkOutcome outcome = walkDirectory(
      folder, {}, [](std::string_view name) { return TranscriptFileName::from(name).has_value(); },
      [&](const WalkedFile& file) {
        if (file.path.parent_path() == folder) files.push_back({file.path, {file.modifiedAt, file.size}});
      });
  std::error_code error;
  if (!outcome.rootListed) return fs::is_directory(folder, error) ? 1 : 0;
  std::sort(files.begin(), files.end(),
            [](const UsageFile& a, const UsageFile& b) { return a.path.native() < b.path.native(); });

  int unreadable = 0;
  for (const UsageFile& file : files) {
    const std::string fileName = file.path.filename().native();
    const TranscriptFileName name = TranscriptFileName::from(fileName).value();
    const CachedFile& entry =
        transcripts_.entry(file, [&](CachedFile& fresh) { return readTranscript(file.path, name.compressed, fresh); });
    if (entry.failed && !entry.vanished) ++unreadable;
    take(name.sessionID, entry.events);
  }
  return unreadable;
}

// Whether the outcome holds as long as the file does not change.
bool OpenClawUsageAdapter::readTranscript(const fs::path& path, bool compressed, CachedFile& entry) {
  const auto file = opener_.open(path);
  if (!file) {
    entry.failed = true;
    entry.vanished = file.error() == ENOENT;
    return false;
  }
  bool readFailed = !compressed;  // the only way in which a plain file fails
  auto events = compressed ? reader_.transcript(watchedSource(file->get(), readFailed), true, limits_.transcriptBytes)
                           : reader_.plainFile(file->get());
  entry.failed = !events;
  if (events) entry.events = std::move(*events);
  return !entry.failed || !readFailed;
}

// A cold file that is gone although the row named it was taken back by the agent: then the database has changed, too.
void OpenClawUsageAdapter::readDatabase(const fs::path& agent, const fs::path& path) {
  int unreadable = 0;
  for (int attempt = 0; attempt < maximumAttempts; ++attempt) {
    std::error_code error;
    const fs::path real = fs::weakly_canonical(path, error);
    const auto stamp = error ? std::nullopt : FileStamp::of(real);
    if (!stamp) {
      unreadable = !error && fs::exists(path, error) ? 1 : 0;
      break;
    }
    if (stamp->size == 0) break;  // just being made: a database without tables
    const OpenClawDatabaseUsage& usage = databaseUsage(real, *stamp);
    unreadable = usage.unreadable;
    for (const SourceEvents& source : usage.events) take(source.sessionID, source.events);
    bool missing = false;
    for (const ColdArchiveFile& file : usage.coldFiles) {
      const ColdOutcome outcome = readColdFile(agent, file);
      if (outcome != ColdOutcome::counted) ++unreadable;
      missing = missing || outcome == ColdOutcome::missing;
    }
    if (!missing || isCurrent(real)) break;
  }
  unreadableSourceCount_ += unreadable;
}

// Whether the database still looks as it did when it was read last.
bool OpenClawUsageAdapter::isCurrent(const fs::path& path) {
  const CachedDatabase& cached = databases_[path.native()];
  return FileStamp::of(path) == cached.database && FileStamp::of(path.native() + "-wal") == cached.log;
}

const OpenClawDatabaseUsage& OpenClawUsageAdapter::databaseUsage(const fs::path& path, const FileStamp& stamp) {
  CachedDatabase& cached = databases_[path.native()];
  const auto log = FileStamp::of(path.native() + "-wal");
  cached.scan = scan_;
  if (cached.reusable && cached.database == stamp && cached.log == log) return cached.usage;

  const Date newest{std::max(stamp.modified, log ? log->modified : 0) / 1000};
  const bool settled = clock_.now().secondsSince(newest) >= settledSeconds;
  cached.database = stamp;
  cached.log = log;
  cached.usage = database_.read(path);
  cached.reusable = settled && cached.usage.settled;
  return cached.usage;
}

OpenClawUsageAdapter::ColdOutcome OpenClawUsageAdapter::readColdFile(const fs::path& agent,
                                                                     const ColdArchiveFile& file) {
  // A name of this form has no way out of the folder, and the opener refuses a link.
  if (!isColdFileName(file.name)) return ColdOutcome::unreadable;
  for (const char* folder : coldFolders) {
    const fs::path path = agent / folder / file.name;
    std::error_code error;
    if (fs::symlink_status(path, error).type() == fs::file_type::not_found) continue;
    const auto stamp = FileStamp::of(path);
    if (!stamp || static_cast<std::uint64_t>(stamp->size) > limits_.archiveBytes) return ColdOutcome::unreadable;
    const UsageFile listed{path, {Date{stamp->modified / 1000}, stamp->size}};
    const CachedFile& entry =
        coldFiles_.entry(listed, [&](CachedFile& fresh) { return parseColdFile(path, file.compressed, fresh); });
    if (entry.vanished) return ColdOutcome::missing;
    if (entry.failed || entry.digest != file.digest) return ColdOutcome::unreadable;
    take(file.sessionID, entry.events);
    return ColdOutcome::counted;
  }
  return ColdOutcome::missing;
}

// The bytes that are digested are the bytes that are decoded: nothing can change in between.
bool OpenClawUsageAdapter::parseColdFile(const fs::path& path, bool compressed, CachedFile& entry) {
  const auto file = opener_.open(path);
  if (!file) {
    entry.failed = true;
    entry.vanished = file.error() == ENOENT;
    return false;
  }
  bool readFailed = false;
  const auto digest = sha256_.begin();
  const auto source = [&, bytes = watchedSource(file->get(), readFailed)] {
    auto piece = bytes();
    if (piece) digest->append(*piece);
    return piece;
  };
  auto events = reader_.coldArchive(source, compressed, limits_.transcriptBytes);
  const auto value = digest->finish();
  entry.failed = !events || !value;
  if (entry.failed) return !readFailed;
  entry.events = std::move(*events);
  entry.digest = hexadecimal(*value);
  return true;
}

void OpenClawUsageAdapter::take(std::string_view sessionID, const std::vector<AdapterUsageEvent>& events) {
  if (events.empty()) return;
  auto& session = events_[std::string(sessionID)];
  session.insert(session.end(), events.begin(), events.end());
}

}  // namespace quillmeter
