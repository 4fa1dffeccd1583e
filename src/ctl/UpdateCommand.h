#pragma once

#include <string>

#include "ctl/Command.h"
#include "ctl/ToolContext.h"

namespace quillmeter::ctl {

// `update`: asks the web host for a newer release. It becomes the program quillmeter-query, which loads the network
// stack.
class UpdateCommand final : public Command {
 public:
  // `language` is that of the texts.
  UpdateCommand(ToolContext& context, std::string language) : context_(context), language_(std::move(language)) {}
  void declare(CLI::App& root, ChosenAction& chosen) override;

 private:
  ToolContext& context_;
  std::string language_;
  bool json_ = false;
};

}  // namespace quillmeter::ctl
