#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "support/TemporaryDirectory.h"

namespace quillmeter::test {

struct ToolResult {
  int status = -1;  // exit status; 128 + signal when a signal ended it, as a shell shows it
  std::string out;
  std::string err;
};

enum class OutputKind { pipe, terminal, closedPipe, fullDevice, closed };

// Runs the real quillmeterctl in a private environment: nothing of the caller's but the sanitizers' options, all XDG
// folders below an own scratch folder, standard input empty.
class ToolRun {
  const TemporaryDirectory scratch_;

 public:
  ToolRun();

  std::map<std::string, std::string> environment;  // change it before run()
  OutputKind output = OutputKind::pipe;
  bool errorIsTerminal = false;  // then what it writes comes with `err` all the same
  std::filesystem::path workingDirectory;

  ToolResult run(const std::vector<std::string>& arguments) const;

  const TemporaryDirectory& scratch() const { return scratch_; }
  std::filesystem::path preferencesFile() const;
};

// Copies tests/data/homes/<name> to `target` and gives each log the modification date of the last time written in it.
void copyHome(const std::string& name, const std::filesystem::path& target);

// Compares with tests/data/golden/<name>, where @HOME@ stands for `home`. QUILLMETER_UPDATE_GOLDEN=1 writes the file
// instead.
void expectGolden(const std::string& name, std::string text, const std::filesystem::path& home);

}  // namespace quillmeter::test
