#include "platform/linux/FileLock.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <thread>

#include "base/AtomicFile.h"

namespace quillmeter {

namespace {

using Milliseconds = std::chrono::milliseconds;
using Deadline = std::chrono::steady_clock::time_point;

constexpr mode_t lockFileMode = 0600;
constexpr mode_t folderMode = 0700;
constexpr std::chrono::microseconds firstPause{100};
constexpr std::chrono::microseconds longestPause{5000};

// The bytes of the lock file. Who writes holds `write`. To get it one has to hold `turn` first and gives that back at
// once: so who waits for `write` holds `turn` meanwhile, and nobody comes before him.
struct Range {
  off_t start;
  off_t length;
};
constexpr Range turn{0, 1};
constexpr Range write{1, 1};
constexpr Range both{0, 2};

// 0 or the errno. Locks of the open file, not of the process: they keep threads with files of their own apart as well.
int setLock(int fd, short type, Range range) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = range.start;
  lock.l_len = range.length;
  for (;;) {
    if (::fcntl(fd, F_OFD_SETLK, &lock) == 0) return 0;
    if (errno != EINTR) return errno;
  }
}

bool meansHeld(int error) {
  return error == EAGAIN || error == EACCES;
}

int waitForLock(int fd, Range range, Deadline deadline) {
  for (auto pause = firstPause;; pause = std::min(pause * 2, longestPause)) {
    const int error = setLock(fd, F_WRLCK, range);
    if (!meansHeld(error)) return error;
    if (std::chrono::steady_clock::now() >= deadline) return ETIMEDOUT;
    std::this_thread::sleep_for(pause);
  }
}

int lockForWriting(int fd, Deadline deadline) {
  int error = setLock(fd, F_WRLCK, both);
  if (meansHeld(error)) {
    error = waitForLock(fd, turn, deadline);
    if (error != 0) return error;
    error = waitForLock(fd, write, deadline);
  }
  setLock(fd, F_UNLCK, turn);
  return error;
}

int openLockFile(const std::filesystem::path& path) {
  return ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, lockFileMode);
}

}  // namespace

FileLock::Hold::~Hold() {
  if (fd_ >= 0) setLock(fd_, F_UNLCK, write);
}

tl::expected<FileLock::Hold, int> FileLock::acquire(Milliseconds patience) {
  const Deadline deadline = std::chrono::steady_clock::now() + patience;
  for (;;) {
    if (const int error = file_ ? 0 : open(); error != 0) return tl::unexpected(error);
    const int error = lockForWriting(file_.get(), deadline);
    if (error == ETIMEDOUT) return tl::unexpected(error);
    if (error != 0) return Hold(-1);
    if (isCurrent()) return Hold(file_.get());
    file_.reset();  // somebody removed the lock file: what we hold is no lock any more
  }
}

int FileLock::open() {
  int fd = openLockFile(path_);
  if (fd < 0 && errno == ENOENT) {
    if (const int error = makeFolders(path_.parent_path(), folderMode); error != 0) return error;
    fd = openLockFile(path_);
  }
  if (fd < 0) return errno;
  file_.reset(fd);
  struct stat status {};
  if (::fstat(fd, &status) != 0) return errno;
  device_ = status.st_dev;
  number_ = status.st_ino;
  return 0;
}

bool FileLock::isCurrent() const {
  struct stat named {};
  return ::lstat(path_.c_str(), &named) == 0 && named.st_ino == number_ && named.st_dev == device_;
}

}  // namespace quillmeter
