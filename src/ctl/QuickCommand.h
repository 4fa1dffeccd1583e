#pragma once

#include <string>

#include "ctl/Command.h"
#include "ctl/ToolContext.h"

namespace quillmeter::ctl {

// `quick`: the network link and the sound output, read or changed. It becomes the program quillmeter-query, which loads
// what asks the sound server.
class QuickCommand final : public Command {
 public:
  // `language` is that of the texts.
  QuickCommand(ToolContext& context, std::string language) : context_(context), language_(std::move(language)) {}
  void declare(CLI::App& root, ChosenAction& chosen) override;

 private:
  ExitCode run(const std::string& action);
  ExitCode runWithPercentage(const std::string& action);

  ToolContext& context_;
  std::string language_;
  bool json_ = false;
  std::string value_;
};

}  // namespace quillmeter::ctl
