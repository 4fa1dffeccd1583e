#include "screentime/ActivityArchiveFile.h"

#include <cerrno>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/AtomicFile.h"

namespace quillmeter {
namespace {

constexpr mode_t ownerOnly = 0600;
constexpr mode_t ownerOnlyFolder = 0700;

// The whole file, or the errno. Devices and pipes are refused before they can block.
tl::expected<std::string, int> readArchive(const std::filesystem::path& path, struct stat& status) {
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file || fstat(file.get(), &status) != 0) return tl::unexpected(errno);
  if (!S_ISREG(status.st_mode)) return tl::unexpected(EINVAL);
  if (static_cast<std::uint64_t>(status.st_size) > ActivityArchive::maximumBytes) return tl::unexpected(EFBIG);
  std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const ssize_t count = read(file.get(), bytes.data() + filled, bytes.size() - filled);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return tl::unexpected(errno);
    if (count == 0) break;  // shorter meanwhile: decoding will tell
    filled += static_cast<std::size_t>(count);
  }
  bytes.resize(filled);
  return bytes;
}

}  // namespace

ActivityArchiveFile::ActivityArchiveFile(std::filesystem::path path) : path_(std::move(path)), lockPath_(path_) {
  lockPath_ += ".lock";
}

ActivityArchiveFile::Signature ActivityArchiveFile::signatureOf(const struct stat& status) {
  constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
  return {status.st_dev, status.st_ino, status.st_size,
          status.st_mtim.tv_sec * nanosecondsPerSecond + status.st_mtim.tv_nsec};
}

std::optional<ActivityArchiveFile::Signature> ActivityArchiveFile::currentSignature() const {
  struct stat status {};
  if (stat(path_.c_str(), &status) != 0) return std::nullopt;
  return signatureOf(status);
}

// The folder may have vanished with the lock file in it; then another process can lock a new one.
bool ActivityArchiveFile::lockIsInPlace() const {
  struct stat held {};
  struct stat named {};
  return lock_ && fstat(lock_.get(), &held) == 0 && stat(lockPath_.c_str(), &named) == 0 &&
         held.st_ino == named.st_ino && held.st_dev == named.st_dev;
}

ArchiveOutcome ActivityArchiveFile::claim() {
  if (lockIsInPlace()) return ArchiveOutcome::done;
  lock_.reset();
  if (makeFolders(path_.parent_path(), ownerOnlyFolder) != 0) return ArchiveOutcome::failed;
  FileDescriptor lock(open(lockPath_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, ownerOnly));
  if (!lock) return ArchiveOutcome::failed;
  if (flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
    return errno == EWOULDBLOCK ? ArchiveOutcome::heldByOther : ArchiveOutcome::failed;
  lock_ = std::move(lock);
  return ArchiveOutcome::done;
}

tl::expected<std::optional<ActivityArchive>, int> ActivityArchiveFile::load() {
  struct stat status {};
  const auto bytes = readArchive(path_, status);
  if (!bytes && bytes.error() == ENOENT) {
    left_.reset();
    return std::nullopt;
  }
  if (!bytes) return tl::unexpected(bytes.error());
  auto archive = ActivityArchive::decode(*bytes);
  if (!archive || !archive->validate()) return tl::unexpected(EBADMSG);
  left_ = signatureOf(status);
  return std::optional(std::move(*archive));
}

ArchiveOutcome ActivityArchiveFile::save(const ActivityArchiveView& archive) {
  if (!lock_) return ArchiveOutcome::failed;
  if (const ArchiveOutcome claimed = claim(); claimed != ArchiveOutcome::done) return claimed;
  const auto bytes = archive.encode();
  if (!bytes || !writeFileAtomically(path_, *bytes, {.fileMode = ownerOnly})) return ArchiveOutcome::failed;
  left_ = currentSignature();
  return ArchiveOutcome::done;
}

ArchiveOutcome ActivityArchiveFile::remove() {
  struct stat status {};
  if (lstat(path_.c_str(), &status) == 0) {
    if (const ArchiveOutcome claimed = claim(); claimed != ArchiveOutcome::done) return claimed;
    if (unlink(path_.c_str()) != 0 && errno != ENOENT) return ArchiveOutcome::failed;
  } else if (errno != ENOENT) {
    return ArchiveOutcome::failed;
  }
  left_.reset();
  return ArchiveOutcome::done;
}

bool ActivityArchiveFile::isAsLeft() const {
  return currentSignature() == left_;
}

}  // namespace quillmeter
