#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include "agents/adapters/JsonAccess.h"
#include "base/Clock.h"

namespace quillmeter {

// What a foreign database may cost. The defaults suit every agent; tests make them small.
struct UsageDatabaseLimits {
  int busyMilliseconds = 250;                     // wait for a lock, at the opening and in every statement
  int maximumValueBytes = 134'217'728;            // a longer value, or row, fails the statement that reads it
  double maximumSeconds = 30;                     // spent inside statements, per connection
  std::int64_t maximumCopyBytes = 1'073'741'824;  // of database and log, where only a copy can be read
  std::filesystem::path copyFolder = {};          // where copies are made; empty: the system's temporary folder
  const MonotonicClock* clock = nullptr;          // null: the machine's
};

// The current row of a running statement; it and everything taken from it are valid during the call only. Nothing is
// fetched that is not asked for. A column that is NULL, or that the statement does not have, is absent.
class UsageRow {
 public:
  // INTEGER as int64, FLOAT as double, TEXT as a view (see text()); monostate when absent or a BLOB.
  UsageValue value(std::string_view column) const;
  // TEXT up to its first NUL, always valid UTF-8: bytes that are not stand as U+FFFD. Absent for every other type.
  std::optional<std::string_view> text(std::string_view column) const;
  // BLOB. Absent for every other type; empty for an empty one.
  std::optional<std::span<const std::byte>> blob(std::string_view column) const;

 private:
  friend class UsageDatabase;
  struct Statement;
  explicit UsageRow(Statement& statement) : statement_(statement) {}

  Statement& statement_;
};

// One read-only connection to a database that an agent owns and may be writing. Lives for one adapter call, on the
// collector's queue. Total: whatever is wrong with the file, nothing throws. It neither creates nor changes nor removes
// a file beside the database, whatever state that was left in, and needs no write permission there.
//
// While it is open the agent can write as beside any other reader. One case has no lock to rely on: a database in
// write-ahead mode whose log is absent (the agent ended properly) is read as it lies; should the agent come back and
// write into the database file before the reading ends, wasDisturbed() says so. Then what was read is thrown away and
// read again, as readWhole() does it.
class UsageDatabase {
 public:
  // Opens the database and reads its schema once. A file that is missing, empty, no database, damaged or locked for
  // longer than the busy wait leaves isOpen() false.
  explicit UsageDatabase(const std::filesystem::path& path, const UsageDatabaseLimits& limits = {});
  ~UsageDatabase();
  UsageDatabase(const UsageDatabase&) = delete;
  UsageDatabase& operator=(const UsageDatabase&) = delete;

  bool isOpen() const;

  // Runs the first statement of `sql` and gives each row to `body`. Whether it was prepared, ran to its end and nothing
  // tore it (see wasDisturbed()); rows delivered before an error stay delivered. False without rows when not open.
  bool rows(std::string_view sql, const std::function<void(const UsageRow&)>& body = {});
  // The names of the columns of a table; empty for an unknown one. The name is inserted into the statement as it is.
  std::set<std::string> columns(std::string_view table);

  // Whether the database file was written under this connection where no lock prevents it; true for good once it is.
  bool wasDisturbed();

  // Opens the database and hands it to `read`, again on a new connection while the last one was disturbed (at most
  // maximumAttempts times). `read` has to begin from nothing each time; it is called once, with a database that is not
  // open, when the opening fails. False when even the last attempt was disturbed: then what was read last is torn and
  // to be thrown away.
  static constexpr int maximumAttempts = 4;
  static bool readWhole(const std::filesystem::path& path, const UsageDatabaseLimits& limits,
                        const std::function<void(UsageDatabase&)>& read);

 private:
  struct Connection;
  std::unique_ptr<Connection> connection_;
};

}  // namespace quillmeter
