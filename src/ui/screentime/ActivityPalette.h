#pragma once

#include <map>
#include <string>
#include <string_view>

namespace quillmeter {

// A colour for each application, the same wherever it is shown and for as long as the page lives. Two applications get
// the same one only when all are taken.
class ActivityPalette {
 public:
  // Six hexadecimal digits.
  const std::string& tint(std::string_view applicationId);

 private:
  std::map<std::string, std::size_t, std::less<>> given_;
};

}  // namespace quillmeter
