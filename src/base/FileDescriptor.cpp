#include "base/FileDescriptor.h"

#include <unistd.h>

#include <cerrno>

namespace quillmeter {

void FileDescriptor::reset(int fd) {
  // Linux releases the number even when close() reports an interruption, so it is never repeated.
  if (fd_ >= 0) ::close(fd_);
  fd_ = fd;
}

int writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(fd, bytes.data(), bytes.size());
    if (written < 0) {
      if (errno == EINTR) continue;
      return errno;
    }
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

}  // namespace quillmeter
