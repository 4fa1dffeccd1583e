#pragma once

#include <functional>

#include "base/Clock.h"
#include "ctl/Command.h"
#include "ctl/ToolContext.h"
#include "platform/Platform.h"

namespace quillmeter::ctl {

// `status`: one sample of the machine. Rates and shares need two readings, a quarter of a second apart.
class StatusCommand final : public Command {
 public:
  // Makes the readers of this machine, for a program without an event loop.
  using MakePlatform = std::function<Platform()>;

  StatusCommand(ToolContext& context, MakePlatform makePlatform)
      : context_(context), makePlatform_(std::move(makePlatform)) {}
  void declare(CLI::App& root, ChosenAction& chosen) override;

 private:
  ExitCode run();

  ToolContext& context_;
  MakePlatform makePlatform_;
  bool json_ = false;
};

}  // namespace quillmeter::ctl
