#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

#include "agents/adapters/DatabaseGuard.h"

namespace quillmeter {

// A private copy of a database with the log or journal beside it, for states that SQLite can only read after writing
// something: in a folder of mode 0700 that nobody else sees into. It removes itself, at the latest with this object.
class DatabaseCopy {
 public:
  // `suffix` names the file to copy along, "-wal" or "-journal". Null when together they are larger than
  // `maximumBytes`, when the folder has no room for them, on a read or write error, and when one of the two changed
  // while it was copied.
  static std::unique_ptr<DatabaseCopy> make(const DatabaseGuard& guard, const char* suffix, std::int64_t maximumBytes,
                                            const std::filesystem::path& folder);
  ~DatabaseCopy() { remove(); }
  DatabaseCopy(const DatabaseCopy&) = delete;
  DatabaseCopy& operator=(const DatabaseCopy&) = delete;

  std::filesystem::path path() const;
  // Takes the files' names away. To be called once a connection has all of them open: from then on even a killed
  // process leaves nothing behind.
  void remove();

 private:
  explicit DatabaseCopy(std::filesystem::path folder) : folder_(std::move(folder)) {}

  std::filesystem::path folder_;  // empty once removed
};

}  // namespace quillmeter
