#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>

struct sqlite3;
struct sqlite3_file;

namespace quillmeter {

struct SqliteCloser {
  void operator()(sqlite3* handle) const;
};
using SqliteHandle = std::unique_ptr<sqlite3, SqliteCloser>;

// What the agent left beside its database; decides how it can be read without touching anything there.
enum class DatabaseState {
  rollbackMode,  // the file is all there is, but for a journal during a write
  shared,        // write-ahead log with its index: by the agent's side, or as an agent that was killed left it
  orphanedLog,   // write-ahead log without its index, which an ordinary reader would create
  still,         // write-ahead mode without log, or a void one: an ordinary reader would create log and index
};

// Tells two states of one file apart. Fields of struct stat; nanoseconds.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;  // bytes
  std::int64_t modified = 0;
  std::int64_t changed = 0;
  // Absent for what is no regular file. Does not follow a link.
  static std::optional<FileStamp> of(const std::filesystem::path& path);
  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

// Holds SQLite's shared lock on a database file for as long as it lives, without reading it as a database. Under this
// lock nobody removes the log or its index, nobody changes the journal mode and nobody writes a database in rollback
// mode; so what state() says stays true, except that a writer may come and add a log to one that stood still. It goes
// through SQLite's own file object: a descriptor of ours on the same file would drop the process's locks when closed.
class DatabaseGuard {
 public:
  // Null when the file is missing, empty, no database or locked for longer than the wait. Links in the path are
  // resolved.
  static std::unique_ptr<DatabaseGuard> acquire(const std::filesystem::path& path, int busyMilliseconds);

  // Looks beside the database now.
  DatabaseState state() const;
  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path beside(const char* suffix) const;
  std::optional<FileStamp> stamp() const { return FileStamp::of(path_); }

  // Bytes of the database file.
  std::int64_t size() const;
  bool read(std::span<char> into, std::int64_t offset) const;

 private:
  DatabaseGuard(std::filesystem::path path, SqliteHandle handle, sqlite3_file* file);
  bool lock(int busyMilliseconds);
  bool readHeader();

  std::filesystem::path path_;
  SqliteHandle handle_;
  sqlite3_file* file_;
  bool writeAheadMode_ = false;
};

}  // namespace quillmeter
