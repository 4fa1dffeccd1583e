#include "ctl/ToolCommandName.h"

namespace quillmeter::ctl {

std::string toolCommandName(const char* wrapper, std::string_view program) {
  const bool wrapped = wrapper != nullptr && *wrapper != '\0';
  const std::string_view name = wrapped ? std::string_view(wrapper) : program;
  return name.empty() ? "quillmeterctl" : shellQuoted(name);
}

std::string shellQuoted(std::string_view word) {
  constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-./:=@%+,";
  if (!word.empty() && word.find_first_not_of(plain) == std::string_view::npos) return std::string(word);
  std::string quoted = "'";
  for (const char c : word) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted + "'";
}

}  // namespace quillmeter::ctl
