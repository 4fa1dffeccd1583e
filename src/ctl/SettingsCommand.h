#pragma once

#include <functional>
#include <string>

#include "ctl/Command.h"
#include "ctl/ToolContext.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter::ctl {

// `settings`: all rows, or one row's value read, written or removed.
class SettingsCommand final : public Command {
 public:
  // Called with the new raw value after the language setting changed.
  using LanguageSelected = std::function<void(const std::string& language)>;

  SettingsCommand(ToolContext& context, LanguageSelected languageSelected)
      : context_(context), languageSelected_(std::move(languageSelected)) {}
  void declare(CLI::App& root, ChosenAction& chosen) override;

 private:
  using RowAction = ExitCode (SettingsCommand::*)(const SettingsKeys::AnySetting&);

  ExitCode list();
  ExitCode run(RowAction action);
  ExitCode get(const SettingsKeys::AnySetting& setting);
  ExitCode set(const SettingsKeys::AnySetting& setting);
  ExitCode unset(const SettingsKeys::AnySetting& setting);
  void announce(const SettingsKeys::AnySetting& setting);

  ToolContext& context_;
  LanguageSelected languageSelected_;
  std::string key_;
  std::string value_;
  bool valueGiven_ = false;
};

}  // namespace quillmeter::ctl
