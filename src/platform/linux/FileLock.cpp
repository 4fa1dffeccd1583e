#include "platform/linux/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <thread>

namespace quillmeter {

namespace {

constexpr mode_t lockFileMode = 0600;
constexpr mode_t folderMode = 0700;
constexpr std::chrono::milliseconds longestPause{5};

int openLockFile(const std::filesystem::path& path) {
  return ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, lockFileMode);
}

int makeFolders(const std::filesystem::path& folder) {
  if (::mkdir(folder.c_str(), folderMode) == 0 || errno == EEXIST) return 0;
  if (errno != ENOENT || !folder.has_relative_path()) return errno;
  if (const int error = makeFolders(folder.parent_path()); error != 0) return error;
  return ::mkdir(folder.c_str(), folderMode) == 0 || errno == EEXIST ? 0 : errno;
}

}  // namespace

FileLock::Hold::~Hold() {
  if (fd_ >= 0) ::flock(fd_, LOCK_UN);
}

tl::expected<FileLock::Hold, int> FileLock::acquire(std::chrono::milliseconds patience) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  std::chrono::milliseconds pause{1};
  for (;;) {
    if (const int error = file_ ? 0 : open(); error != 0) return tl::unexpected(error);
    if (::flock(file_.get(), LOCK_EX | LOCK_NB) == 0) {
      if (isCurrent()) return Hold(file_.get());
      file_.reset();  // somebody removed the lock file: what we hold is no lock any more
      continue;
    }
    if (errno == EINTR) continue;
    if (errno != EWOULDBLOCK) return Hold(-1);
    if (std::chrono::steady_clock::now() >= deadline) return tl::unexpected(ETIMEDOUT);
    std::this_thread::sleep_for(pause);
    pause = std::min(pause * 2, longestPause);
  }
}

int FileLock::open() {
  int fd = openLockFile(path_);
  if (fd < 0 && errno == ENOENT) {
    if (const int error = makeFolders(path_.parent_path()); error != 0) return error;
    fd = openLockFile(path_);
  }
  if (fd < 0) return errno;
  file_.reset(fd);
  return 0;
}

bool FileLock::isCurrent() const {
  struct stat held {};
  struct stat named {};
  return ::fstat(file_.get(), &held) == 0 && ::lstat(path_.c_str(), &named) == 0 && held.st_ino == named.st_ino &&
         held.st_dev == named.st_dev;
}

}  // namespace quillmeter
