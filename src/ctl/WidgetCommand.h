#pragma once

#include "ctl/Command.h"
#include "ctl/ToolContext.h"
#include "platform/PreferenceDomain.h"

namespace quillmeter::ctl {

// `widget`: the record that widgets read, as it is stored.
class WidgetCommand final : public Command {
 public:
  // `suite` is null where the shared suite has no place to be.
  WidgetCommand(ToolContext& context, PreferenceDomain* suite) : context_(context), suite_(suite) {}
  void declare(CLI::App& root, ChosenAction& chosen) override;

 private:
  ExitCode run();

  ToolContext& context_;
  PreferenceDomain* suite_;
};

}  // namespace quillmeter::ctl
