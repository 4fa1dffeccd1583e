#include "base/FileOpener.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace quillmeter {

tl::expected<FileDescriptor, int> SystemFileOpener::open(const std::filesystem::path& path) {
  // O_NONBLOCK keeps a FIFO without writer and a dead device from blocking; it means nothing to a regular file.
  constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
  int fd = -1;
  do {
    fd = ::open(path.c_str(), flags);
  } while (fd < 0 && errno == EINTR);
  // A socket has no reader's end; like every other irregular file it is invalid, not missing.
  if (fd < 0) return tl::unexpected(errno == ENXIO ? EINVAL : errno);
  FileDescriptor file(fd);
  struct stat status {};
  if (::fstat(fd, &status) != 0) return tl::unexpected(errno);
  if (!S_ISREG(status.st_mode)) return tl::unexpected(EINVAL);
  return file;
}

}  // namespace quillmeter
