#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/LoginItems.h"

namespace quillmeter {

// The program's entry in the user's autostart folder, by the desktop's autostart specification. An entry that the user
// switched off there ("Hidden" or the switch of GNOME's settings) counts as none.
class XdgLoginItems final : public LoginItems {
 public:
  static constexpr std::string_view entryName = "com.kesto.Quillmeter.desktop";

  // `configHome` is that of XdgPaths; without an absolute one nothing can start at login. `command` is the program's
  // absolute path and its arguments.
  XdgLoginItems(const std::filesystem::path& configHome, std::vector<std::string> command);

  LoginItemStatus status() override;
  tl::expected<void, std::string> registerProgram() override;
  tl::expected<void, std::string> unregisterProgram() override;

 private:
  std::filesystem::path entry_;  // empty: there is no place for one
  std::vector<std::string> command_;
};

}  // namespace quillmeter
