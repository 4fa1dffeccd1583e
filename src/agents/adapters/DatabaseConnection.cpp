#include "agents/adapters/DatabaseConnection.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <string_view>
#include <thread>

#include <sqlite3.h>

namespace quillmeter {

namespace {

constexpr int readOnly = SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX;
constexpr int stepsBetweenTimeChecks = 1000;
constexpr int maximumPatternBytes = 100;
// Coarser than the ticks in which file systems date a change.
constexpr std::int64_t settleMicroseconds = 20'000;

const MonotonicClock& machineClock() {
  static const SystemMonotonicClock clock;
  return clock;
}

std::string uri(const std::filesystem::path& path, std::string_view parameter) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text = "file:";
  for (const char c : path.native()) {
    const auto byte = static_cast<unsigned char>(c);
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '/' ||
                       c == '-' || c == '_' || c == '.';
    if (plain) {
      text += c;
    } else {
      text += '%';
      text += digits[byte >> 4U];
      text += digits[byte & 15U];
    }
  }
  return text.append("?").append(parameter);
}

// Two changes within one tick have one date: waits until a new change would have a date of its own.
std::optional<FileStamp> settledStamp(const DatabaseGuard& guard) {
  for (int attempt = 0; attempt < 3; ++attempt) {
    const auto stamp = guard.stamp();
    if (!stamp) return std::nullopt;
    const auto age = SystemClock().now().microseconds - std::max(stamp->modified, stamp->changed) / 1000;
    if (age < 0 || age >= settleMicroseconds) return stamp;
    std::this_thread::sleep_for(std::chrono::microseconds(settleMicroseconds - age));
  }
  return std::nullopt;
}

}  // namespace

DatabaseConnection::DatabaseConnection(const UsageDatabaseLimits& limits)
    : limits_(limits),
      clock_(limits.clock != nullptr ? *limits.clock : machineClock()),
      secondsLeft_(limits.maximumSeconds) {}

std::unique_ptr<DatabaseConnection> DatabaseConnection::open(const std::filesystem::path& path,
                                                             const UsageDatabaseLimits& limits) {
  std::unique_ptr<DatabaseConnection> connection(new DatabaseConnection(limits));
  for (int attempt = 0; attempt < UsageDatabase::maximumAttempts; ++attempt) {
    const auto opening = connection->openOnce(path);
    if (opening == Opening::done) return connection;
    connection->handle_.reset();
    connection->copy_.reset();
    connection->stillStamp_.reset();
    connection->disturbed_ = false;
    if (opening == Opening::failed) break;
  }
  return nullptr;
}

DatabaseConnection::Opening DatabaseConnection::openOnce(const std::filesystem::path& path) {
  guard_.reset();
  guard_ = DatabaseGuard::acquire(path, limits_.busyMilliseconds);
  if (!guard_) return Opening::failed;
  const auto state = guard_->state();
  switch (state) {
    case DatabaseState::orphanedLog:
      return openCopy("-wal");
    case DatabaseState::still:
      return openStill();
    case DatabaseState::rollbackMode:
    case DatabaseState::shared:
      break;
  }
  return openInPlace(state);
}

DatabaseConnection::Opening DatabaseConnection::openInPlace(DatabaseState state) {
  const bool shared = state == DatabaseState::shared;
  const int code = shared ? openHandle(uri(guard_->path(), "readonly_shm=1"), readOnly | SQLITE_OPEN_URI)
                          : openHandle(guard_->path().native(), readOnly);
  if (code == SQLITE_OK) return Opening::done;
  // To be read it would have to be written: a journal rolled back, an index rebuilt that cannot even be opened.
  const bool needsWriting = code == SQLITE_READONLY || code == SQLITE_CANTOPEN;
  return needsWriting ? openCopy(shared ? "-wal" : "-journal") : Opening::failed;
}

DatabaseConnection::Opening DatabaseConnection::openCopy(const char* suffix) {
  handle_.reset();
  copy_ = DatabaseCopy::make(*guard_, suffix, limits_.maximumCopyBytes, limits_.copyFolder);
  if (!copy_) return guard_->state() == DatabaseState::shared ? Opening::tryAgain : Opening::failed;
  guard_.reset();
  const bool rollsBack = std::string_view(suffix) == "-journal";
  const int flags = rollsBack ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX : readOnly;
  if (openHandle(copy_->path().native(), flags) != SQLITE_OK) return Opening::failed;
  copy_->remove();
  return Opening::done;
}

DatabaseConnection::Opening DatabaseConnection::openStill() {
  stillStamp_ = settledStamp(*guard_);
  if (!stillStamp_ || guard_->state() != DatabaseState::still) return Opening::tryAgain;
  // All of the database is in its file: a log, if there is one at all, is empty.
  const int code = openHandle(uri(guard_->path(), "immutable=1"), readOnly | SQLITE_OPEN_URI);
  if (code == SQLITE_OK) return Opening::done;
  return wasDisturbed() ? Opening::tryAgain : Opening::failed;
}

int DatabaseConnection::openHandle(const std::string& name, int flags) {
  sqlite3* opened = nullptr;
  int code = sqlite3_open_v2(name.c_str(), &opened, flags, nullptr);
  handle_.reset(opened);
  if (code == SQLITE_OK) code = configure();
  return code == SQLITE_OK ? readSchema() : code;
}

// A schema is foreign code. Views, triggers, virtual tables and functions that reach outside are off; what is left
// (generated columns, indexes on expressions) is bounded in time and size.
int DatabaseConnection::configure() {
  sqlite3* const db = handle_.get();
  sqlite3_busy_timeout(db, limits_.busyMilliseconds);
  sqlite3_limit(db, SQLITE_LIMIT_LENGTH, limits_.maximumValueBytes);
  sqlite3_limit(db, SQLITE_LIMIT_LIKE_PATTERN_LENGTH, maximumPatternBytes);
  sqlite3_limit(db, SQLITE_LIMIT_ATTACHED, 0);
  sqlite3_limit(db, SQLITE_LIMIT_WORKER_THREADS, 0);
  for (const int off : {SQLITE_DBCONFIG_TRUSTED_SCHEMA, SQLITE_DBCONFIG_ENABLE_VIEW, SQLITE_DBCONFIG_ENABLE_TRIGGER,
                        SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION}) {
    if (const int code = sqlite3_db_config(db, off, 0, nullptr); code != SQLITE_OK) return code;
  }
  if (const int code = sqlite3_db_config(db, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr); code != SQLITE_OK) return code;
  sqlite3_drop_modules(db, nullptr);
  // A file that shrinks under a mapping ends the process.
  sqlite3_int64 mappedBytes = 0;
  sqlite3_file_control(db, "main", SQLITE_FCNTL_MMAP_SIZE, &mappedBytes);
  sqlite3_progress_handler(db, stepsBetweenTimeChecks, &DatabaseConnection::interruptWhenOverdue, this);
  return sqlite3_exec(db, "PRAGMA cell_size_check=ON", nullptr, nullptr, nullptr);
}

int DatabaseConnection::readSchema() {
  if (!beginStatementTime()) return SQLITE_INTERRUPT;
  const int code = sqlite3_exec(handle_.get(), "SELECT 1 FROM sqlite_master LIMIT 1", nullptr, nullptr, nullptr);
  endStatementTime();
  return code;
}

int DatabaseConnection::interruptWhenOverdue(void* self) {
  const auto& connection = *static_cast<const DatabaseConnection*>(self);
  return connection.clock_.uptime() > connection.deadline_ ? 1 : 0;
}

bool DatabaseConnection::beginStatementTime() {
  if (secondsLeft_ <= 0) return false;
  deadline_ = clock_.uptime() + secondsLeft_;
  return true;
}

void DatabaseConnection::endStatementTime() {
  secondsLeft_ = deadline_ - clock_.uptime();
}

bool DatabaseConnection::wasDisturbed() {
  if (!disturbed_ && stillStamp_) disturbed_ = guard_->stamp() != stillStamp_;
  return disturbed_;
}

}  // namespace quillmeter
