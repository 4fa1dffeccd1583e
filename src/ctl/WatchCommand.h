#pragma once

#include <functional>
#include <optional>
#include <string>

#include "agents/AgentUsageCollector.h"
#include "ctl/Command.h"
#include "ctl/PreferenceOverride.h"
#include "ctl/ToolContext.h"
#include "platform/Platform.h"

namespace quillmeter::ctl {

// `watch`: machine and tokens, again and again: a live view on a terminal, a line a tick elsewhere.
class WatchCommand final : public Command {
 public:
  struct Parts {
    // Makes the readers of this machine; called when the event loop is there.
    std::function<Platform()> makePlatform;
    std::function<AgentUsageAdapters(FileOpener& opener)> makeAdapters;
    PreferenceDomain* suite = nullptr;  // null where the widgets' suite has no place to be
  };

  // `domain` is the one that the context's preferences read.
  WatchCommand(ToolContext& context, PreferenceOverride& domain, Parts parts)
      : context_(context), domain_(domain), parts_(std::move(parts)) {}
  void declare(CLI::App& root, ChosenAction& chosen) override;

 private:
  ExitCode run();

  ToolContext& context_;
  PreferenceOverride& domain_;
  Parts parts_;
  std::optional<std::string> interval_;
};

}  // namespace quillmeter::ctl
