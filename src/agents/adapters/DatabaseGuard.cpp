#include "agents/adapters/DatabaseGuard.h"

#include <array>
#include <bit>
#include <chrono>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/FileDescriptor.h"

namespace quillmeter {

namespace {

constexpr std::string_view magic{"SQLite format 3\0", 16};
constexpr std::size_t headerBytes = 100;
constexpr std::size_t readVersionOffset = 19;  // 1 rollback journal, 2 write-ahead log
constexpr int lockStepMilliseconds = 10;

std::int64_t nanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

// Whether SQLite would look for frames in a log of this path at all. One whose first 32 bytes are no header (a crash
// tore its first write) is void to every reader; through an index opened for reading only, SQLite would try it again
// for ten seconds.
bool hasLogHeader(const std::filesystem::path& log) {
  constexpr std::uint32_t magicOfEitherByteOrder = 0x377F0682;
  std::array<unsigned char, 32> header{};
  const FileDescriptor fd(::open(log.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!fd || ::pread(fd.get(), header.data(), header.size(), 0) != static_cast<ssize_t>(header.size())) return false;
  const auto number = [&](std::size_t at) {
    return std::uint32_t{header[at]} << 24U | std::uint32_t{header[at + 1]} << 16U |
           std::uint32_t{header[at + 2]} << 8U | std::uint32_t{header[at + 3]};
  };
  const std::uint32_t pageBytes = number(8);
  return (number(0) & ~1U) == magicOfEitherByteOrder && std::has_single_bit(pageBytes) && pageBytes >= 512 &&
         pageBytes <= 65'536;
}

}  // namespace

void SqliteCloser::operator()(sqlite3* handle) const {
  sqlite3_close(handle);
}

std::optional<FileStamp> FileStamp::of(const std::filesystem::path& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return FileStamp{static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
                   std::int64_t{status.st_size}, nanoseconds(status.st_mtim), nanoseconds(status.st_ctim)};
}

DatabaseGuard::DatabaseGuard(std::filesystem::path path, SqliteHandle handle, sqlite3_file* file)
    : path_(std::move(path)), handle_(std::move(handle)), file_(file) {}

std::unique_ptr<DatabaseGuard> DatabaseGuard::acquire(const std::filesystem::path& path, int busyMilliseconds) {
  std::error_code error;
  auto real = std::filesystem::canonical(path, error);
  if (error) return nullptr;
  // An empty file is not given to SQLite: it would take a log beside it for a remnant and remove that.
  const auto stamp = FileStamp::of(real);
  if (!stamp || stamp->size < static_cast<std::int64_t>(headerBytes)) return nullptr;

  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2(real.c_str(), &opened, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, nullptr);
  SqliteHandle handle(opened);
  sqlite3_file* file = nullptr;
  if (code != SQLITE_OK || sqlite3_file_control(opened, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK ||
      file == nullptr || file->pMethods == nullptr) {
    return nullptr;
  }
  std::unique_ptr<DatabaseGuard> guard(new DatabaseGuard(std::move(real), std::move(handle), file));
  if (!guard->lock(busyMilliseconds) || !guard->readHeader()) return nullptr;
  return guard;
}

bool DatabaseGuard::lock(int busyMilliseconds) {
  for (int waited = 0;; waited += lockStepMilliseconds) {
    const int code = file_->pMethods->xLock(file_, SQLITE_LOCK_SHARED);
    if (code == SQLITE_OK) return true;
    if (code != SQLITE_BUSY || waited >= busyMilliseconds) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(lockStepMilliseconds));
  }
}

bool DatabaseGuard::readHeader() {
  std::array<char, headerBytes> header{};
  if (!read(header, 0) || std::string_view(header.data(), magic.size()) != magic) return false;
  writeAheadMode_ = header[readVersionOffset] == 2;
  return true;
}

DatabaseState DatabaseGuard::state() const {
  const auto log = FileStamp::of(beside("-wal"));
  // SQLite opens even an empty log whatever the mode says.
  if (!log) return writeAheadMode_ ? DatabaseState::still : DatabaseState::rollbackMode;
  if (log->size > 0 && !hasLogHeader(beside("-wal"))) return DatabaseState::still;
  if (FileStamp::of(beside("-shm"))) return DatabaseState::shared;
  return log->size > 0 ? DatabaseState::orphanedLog : DatabaseState::still;
}

std::filesystem::path DatabaseGuard::beside(const char* suffix) const {
  auto path = path_;
  path += suffix;
  return path;
}

std::int64_t DatabaseGuard::size() const {
  sqlite3_int64 bytes = 0;
  return file_->pMethods->xFileSize(file_, &bytes) == SQLITE_OK ? bytes : -1;
}

bool DatabaseGuard::read(std::span<char> into, std::int64_t offset) const {
  return file_->pMethods->xRead(file_, into.data(), static_cast<int>(into.size()), offset) == SQLITE_OK;
}

}  // namespace quillmeter
