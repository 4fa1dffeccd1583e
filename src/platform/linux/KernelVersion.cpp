#include "platform/linux/KernelVersion.h"

#include <sys/utsname.h>

#include <algorithm>

namespace quillmeter {

std::string kernelVersionIn(std::string_view release) {
  std::string version;
  for (int piece = 0; piece < 3; ++piece) {
    const std::size_t digits = std::min(release.find_first_not_of("0123456789"), release.size());
    version += piece == 0 ? "" : ".";
    version += digits == 0 ? std::string_view("0") : release.substr(0, digits);
    release.remove_prefix(digits);
    if (release.starts_with('.')) {
      release.remove_prefix(1);
    } else {
      release = {};
    }
  }
  return version;
}

std::string runningKernelVersion() {
  utsname system{};
  return ::uname(&system) == 0 ? kernelVersionIn(system.release) : kernelVersionIn({});
}

}  // namespace quillmeter
