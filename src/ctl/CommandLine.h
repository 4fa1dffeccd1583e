#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ctl/Command.h"
#include "ctl/Console.h"
#include "ctl/ExitCode.h"

namespace quillmeter::ctl {

// The value of --language, wherever it stands, since the texts of the parser need it before the parser runs.
std::optional<std::string> languageArgument(const std::vector<std::string>& arguments);

// Parses the arguments, runs the command that they name, and says in one sentence what is wrong with them otherwise.
class CommandLine {
 public:
  CommandLine(Console& console, std::string version);
  ~CommandLine();

  void add(std::unique_ptr<Command> command);
  // `arguments` without the program's name.
  [[nodiscard]] ExitCode run(const std::vector<std::string>& arguments);

 private:
  ExitCode runParsed(CLI::App& root, const ChosenAction& chosen);

  Console& console_;
  std::string version_;
  std::vector<std::unique_ptr<Command>> commands_;
  std::string language_;
};

}  // namespace quillmeter::ctl
