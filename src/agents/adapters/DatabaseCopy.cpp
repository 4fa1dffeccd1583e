#include "agents/adapters/DatabaseCopy.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/FileDescriptor.h"
#include "base/StaleTemporaries.h"

namespace quillmeter {

namespace {

constexpr std::size_t blockBytes = 1'048'576;
constexpr const char* copyName = "database";
constexpr std::string_view folderPrefix = "quillmeter-database-";

// Copies can be large, so a folder on disk comes before one that may lie in memory.
std::filesystem::path temporaryFolder() {
  for (const char* folder : {static_cast<const char*>(std::getenv("TMPDIR")), "/var/tmp", "/tmp"}) {
    if (folder != nullptr && folder[0] == '/' && access(folder, W_OK | X_OK) == 0) return folder;
  }
  return {};
}

bool hasRoom(const std::filesystem::path& folder, std::int64_t bytes) {
  std::error_code error;
  const auto space = std::filesystem::space(folder, error);
  return !error && space.available / 2 >= static_cast<std::uintmax_t>(bytes);
}

FileDescriptor createFile(const std::filesystem::path& path) {
  return FileDescriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
}

bool copyDatabase(const DatabaseGuard& guard, std::int64_t size, const std::filesystem::path& target,
                  std::vector<char>& block) {
  const FileDescriptor out = createFile(target);
  if (!out) return false;
  for (std::int64_t offset = 0; offset < size;) {
    const auto count = static_cast<std::size_t>(std::min<std::int64_t>(size - offset, std::int64_t{blockBytes}));
    if (!guard.read({block.data(), count}, offset) || writeAll(out.get(), {block.data(), count}) != 0) return false;
    offset += static_cast<std::int64_t>(count);
  }
  return true;
}

bool copyLog(const std::filesystem::path& source, std::int64_t size, const std::filesystem::path& target,
             std::vector<char>& block) {
  const FileDescriptor in(::open(source.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  const FileDescriptor out = createFile(target);
  if (!in || !out) return false;
  for (std::int64_t left = size; left > 0;) {
    const ssize_t count = ::read(in.get(), block.data(), std::min(block.size(), static_cast<std::size_t>(left)));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0 || writeAll(out.get(), {block.data(), static_cast<std::size_t>(count)}) != 0) return false;
    left -= count;
  }
  return true;
}

// A process that was killed before it had its copy open leaves it. Of a folder only what a copy consists of is removed.
void removeStaleCopies(const std::filesystem::path& parent) {
  for (const auto& folder : staleTemporaries(parent, folderPrefix)) {
    for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
      ::unlink((folder / copyName).concat(suffix).c_str());
    }
    ::rmdir(folder.c_str());
  }
}

}  // namespace

std::unique_ptr<DatabaseCopy> DatabaseCopy::make(const DatabaseGuard& guard, const char* suffix,
                                                 std::int64_t maximumBytes, const std::filesystem::path& folder) {
  const auto source = guard.beside(suffix);
  const auto database = guard.stamp();
  const auto log = FileStamp::of(source);
  if (!database || !log || database->size > maximumBytes || log->size > maximumBytes - database->size) return nullptr;
  const bool hadIndex = FileStamp::of(guard.beside("-shm")).has_value();

  const auto parent = folder.empty() ? temporaryFolder() : folder;
  if (parent.empty()) return nullptr;
  removeStaleCopies(parent);
  if (!hasRoom(parent, database->size + log->size)) return nullptr;
  std::string pattern = (parent / std::string(folderPrefix).append("XXXXXX")).string();
  if (::mkdtemp(pattern.data()) == nullptr) return nullptr;
  std::unique_ptr<DatabaseCopy> copy(new DatabaseCopy(std::move(pattern)));

  std::vector<char> block(blockBytes);
  auto target = copy->path();
  if (!copyDatabase(guard, database->size, target, block)) return nullptr;
  target += suffix;
  if (!copyLog(source, log->size, target, block)) return nullptr;
  // A writer that came meanwhile has made an index or changed one of the two files.
  const bool unchanged = guard.stamp() == database && FileStamp::of(source) == log &&
                         FileStamp::of(guard.beside("-shm")).has_value() == hadIndex;
  return unchanged ? std::move(copy) : nullptr;
}

std::filesystem::path DatabaseCopy::path() const {
  return folder_ / copyName;
}

void DatabaseCopy::remove() {
  if (folder_.empty()) return;
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
  folder_.clear();
}

}  // namespace quillmeter
