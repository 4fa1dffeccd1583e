#pragma once

#include <string_view>

namespace quillmeter {

// The desktop applications installed for this user. Safe on every thread.
class InstalledApplications {
 public:
  virtual ~InstalledApplications() = default;
  // Whether an application of this name is installed; upper and lower case do not matter.
  virtual bool contains(std::string_view name) = 0;
};

}  // namespace quillmeter
