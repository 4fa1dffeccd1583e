#pragma once

#include <string>
#include <string_view>

namespace quillmeter {

// The icons of installed applications. Main thread.
class ApplicationIcons {
 public:
  virtual ~ApplicationIcons() = default;
  // What the application's desktop entry names as its icon: a name of the icon theme or an absolute path. Empty when
  // there is none. `applicationId` is that of the foreground application.
  virtual std::string iconName(std::string_view applicationId) = 0;
};

}  // namespace quillmeter
