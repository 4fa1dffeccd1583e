#pragma once

#include <filesystem>
#include <string>

#include "ctl/Command.h"
#include "ctl/ToolContext.h"

namespace quillmeter::ctl {

// `record`: becomes the program quillmeter-record, which stays in the foreground. A program of its own, because it
// loads what asks the desktop (X11, Wayland, D-Bus), which would cost every other command its quick start.
class RecordCommand final : public Command {
 public:
  // `language` is that of the texts.
  RecordCommand(ToolContext& context, std::filesystem::path archive, std::string language)
      : context_(context), defaultArchive_(std::move(archive)), language_(std::move(language)) {}
  void declare(CLI::App& root, ChosenAction& chosen) override;

 private:
  ExitCode run();

  ToolContext& context_;
  std::filesystem::path defaultArchive_;
  std::string language_;
  std::string archive_;
};

}  // namespace quillmeter::ctl
