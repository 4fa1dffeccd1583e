#include "app/ProgramPath.h"

#include <filesystem>
#include <string_view>

namespace quillmeter {

std::string programPath() {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error || !path.is_absolute()) return "quillmeter";
  // The kernel marks a program whose file was replaced by an update; its successor has the same name.
  std::string text = path.string();
  constexpr std::string_view replaced = " (deleted)";
  if (text.ends_with(replaced)) text.resize(text.size() - replaced.size());
  return text;
}

}  // namespace quillmeter
