#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillmeter {

// What the command line asks for.
struct AppOptions {
  bool hidden = false;  // only the item in the panel, no window
  std::string action;   // "open-dashboard", "open-settings", "toggle-popover", "refresh", "quit"; empty: none
};

// Either the options, or the text to print and the exit status (help, version, wrong use).
struct ParsedOptions {
  AppOptions options;
  std::optional<int> exitStatus;
  std::string output;
};

// `arguments` without the program's name; texts in the present language.
ParsedOptions parseOptions(const std::vector<std::string>& arguments);

}  // namespace quillmeter
