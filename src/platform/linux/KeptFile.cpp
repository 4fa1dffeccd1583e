#include "platform/linux/KeptFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace quillmeter {
namespace {

constexpr unsigned readingsBetweenChecks = 16;

// Whether opening the path again can help; a sensor that cannot answer now (EAGAIN, EIO, ENODATA) stays open.
bool isGone(int error) {
  return error == ENODEV || error == ENXIO || error == ENOTCONN || error == ESTALE || error == EBADF;
}

}  // namespace

bool KeptFile::open() {
  // O_NONBLOCK: whatever stands there in an odd container, opening it never waits.
  file_.reset(::open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  return static_cast<bool>(file_);
}

bool KeptFile::isReplaced() const {
  struct stat opened {};
  struct stat named {};
  if (::fstat(file_.get(), &opened) != 0 || ::stat(path_.c_str(), &named) != 0) return true;
  return opened.st_dev != named.st_dev || opened.st_ino != named.st_ino;
}

std::string_view KeptFile::read(std::span<char> buffer) {
  if (file_ && ++readings_ % readingsBetweenChecks == 0 && isReplaced()) file_.reset();
  for (int attempt = 0; attempt < 2; ++attempt) {
    if (!file_ && !open()) return {};
    const ssize_t count = ::pread(file_.get(), buffer.data(), buffer.size(), 0);
    if (count >= 0) return {buffer.data(), static_cast<std::size_t>(count)};
    if (!isGone(errno)) return {};
    file_.reset();
  }
  return {};
}

}  // namespace quillmeter
