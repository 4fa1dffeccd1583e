#include "base/FileDescriptor.h"

#include <unistd.h>

namespace quillmeter {

void FileDescriptor::reset(int fd) {
  // Linux releases the number even when close() reports an interruption, so it is never repeated.
  if (fd_ >= 0) ::close(fd_);
  fd_ = fd;
}

}  // namespace quillmeter
