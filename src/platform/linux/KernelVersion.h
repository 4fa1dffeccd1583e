#pragma once

#include <string>
#include <string_view>

namespace quillmeter {

// "major.minor.patch" at the beginning of a kernel's release text ("6.1.0-18-amd64"); what is missing is 0.
std::string kernelVersionIn(std::string_view release);
// Of the running kernel.
std::string runningKernelVersion();

}  // namespace quillmeter
