#include "ctl/NonblockingOutput.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>

namespace quillmeter::ctl {

NonblockingOutput::NonblockingOutput(int descriptor) : descriptor_(descriptor) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0 || S_ISREG(status.st_mode)) return;  // a file takes everything at once
  if (S_ISCHR(status.st_mode) || S_ISFIFO(status.st_mode)) {
    const std::string path = "/proc/self/fd/" + std::to_string(descriptor);
    opened_.reset(::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  }
  if (opened_) {
    descriptor_ = opened_.get();
    return;
  }
  flagsBefore_ = ::fcntl(descriptor, F_GETFL);
  if (flagsBefore_ != -1) ::fcntl(descriptor, F_SETFL, flagsBefore_ | O_NONBLOCK);
}

NonblockingOutput::~NonblockingOutput() {
  if (flagsBefore_ != -1) ::fcntl(descriptor_, F_SETFL, flagsBefore_);
}

bool NonblockingOutput::offer(std::string_view piece) {
  sendRest();
  if (isBlocked()) return false;
  // Nothing of a piece that does not even begin to fit is kept.
  ssize_t written = 0;
  while (error_ == 0 && !piece.empty()) {
    written = ::write(descriptor_, piece.data(), piece.size());
    if (written >= 0) break;
    if (errno == EAGAIN) return false;
    if (errno != EINTR) error_ = errno;
  }
  if (error_ == 0) rest_.assign(piece.substr(static_cast<std::size_t>(written)));
  return true;
}

void NonblockingOutput::sendRest() {
  while (error_ == 0 && !rest_.empty()) {
    const ssize_t written = ::write(descriptor_, rest_.data(), rest_.size());
    if (written >= 0) {
      rest_.erase(0, static_cast<std::size_t>(written));
    } else if (errno == EAGAIN) {
      return;
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
  if (error_ != 0) rest_.clear();
}

void NonblockingOutput::finishWith(std::string_view piece, int milliseconds) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + std::chrono::milliseconds(milliseconds);
  rest_ += piece;
  sendRest();
  while (isBlocked()) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    pollfd waiting{descriptor_, POLLOUT, 0};
    if (left <= 0 || ::poll(&waiting, 1, static_cast<int>(left)) == 0) break;
    sendRest();
  }
  rest_.clear();
}

}  // namespace quillmeter::ctl
