#include "platform/linux/SignalDescriptor.h"

#include <sys/signalfd.h>
#include <unistd.h>

namespace quillmeter {

SignalDescriptor::SignalDescriptor(std::initializer_list<int> numbers) {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : numbers) sigaddset(&set, signal);
  pthread_sigmask(SIG_BLOCK, &set, &before_);
  descriptor_.reset(::signalfd(-1, &set, SFD_NONBLOCK | SFD_CLOEXEC));
}

SignalDescriptor::~SignalDescriptor() {
  while (take()) {  // handled, though late: they must not end the process now
  }
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

std::optional<int> SignalDescriptor::take() {
  signalfd_siginfo info{};
  if (::read(descriptor_.get(), &info, sizeof info) != sizeof info) return std::nullopt;
  return static_cast<int>(info.ssi_signo);
}

}  // namespace quillmeter
