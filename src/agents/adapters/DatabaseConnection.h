#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "agents/adapters/DatabaseCopy.h"
#include "agents/adapters/DatabaseGuard.h"
#include "agents/adapters/UsageDatabase.h"

namespace quillmeter {

// What a UsageDatabase stands on: a connection opened in the way that the state of the files asks for, held to the
// limits, its schema read once, with the guard that keeps the state as it is.
//
//   rollbackMode  opened as it is; after a crash in the middle of a write a private copy is rolled back instead
//   shared        its index opened for reading only, so that the read marks of other readers serve this one too and an
//   index
//                 that a killed agent left is rebuilt in memory; where the index cannot be read, a private copy
//   orphanedLog   a private copy of database and log
//   still         without locks, which is as good while the file keeps its stamp
class DatabaseConnection {
 public:
  static std::unique_ptr<DatabaseConnection> open(const std::filesystem::path& path, const UsageDatabaseLimits& limits);
  DatabaseConnection(const DatabaseConnection&) = delete;
  DatabaseConnection& operator=(const DatabaseConnection&) = delete;

  sqlite3* handle() const { return handle_.get(); }
  bool wasDisturbed();

  // The time that statements may take is used up between these two; false when nothing is left.
  bool beginStatementTime();
  void endStatementTime();

 private:
  explicit DatabaseConnection(const UsageDatabaseLimits& limits);

  enum class Opening { done, tryAgain, failed };
  Opening openOnce(const std::filesystem::path& path);
  Opening openInPlace(DatabaseState state);
  Opening openCopy(const char* suffix);
  Opening openStill();
  // Opens and reads the schema; SQLite's result code.
  int openHandle(const std::string& name, int flags);
  int configure();
  int readSchema();
  static int interruptWhenOverdue(void* self);

  const UsageDatabaseLimits& limits_;
  const MonotonicClock& clock_;
  double secondsLeft_;
  double deadline_ = 0;
  // In this order, so that the handle is closed first.
  std::unique_ptr<DatabaseGuard> guard_;
  std::unique_ptr<DatabaseCopy> copy_;
  SqliteHandle handle_;
  std::optional<FileStamp> stillStamp_;
  bool disturbed_ = false;
};

}  // namespace quillmeter
