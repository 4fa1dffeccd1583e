#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include <tl/expected.hpp>

#include "base/Calendar.h"
#include "ctl/Command.h"
#include "ctl/ToolContext.h"
#include "screentime/model/ActivityArchive.h"
#include "screentime/model/ActivitySummary.h"

namespace quillmeter::ctl {

// `screentime`: what the recorded file says of one day or one week. Only reads; a program that records is not
// disturbed.
class ScreentimeCommand final : public Command {
 public:
  ScreentimeCommand(ToolContext& context, std::filesystem::path archive)
      : context_(context), defaultArchive_(std::move(archive)) {}
  void declare(CLI::App& root, ChosenAction& chosen) override;

 private:
  ExitCode run();
  // The archive, an empty one when nothing was recorded yet, or the sentence that says why not.
  tl::expected<ActivityArchive, std::string> load() const;
  // Absent for a text that is no day of the calendar.
  std::optional<DateInterval> interval(const Calendar& calendar) const;

  ToolContext& context_;
  std::filesystem::path defaultArchive_;
  std::string archive_;
  std::string day_;
  std::string week_;
  bool json_ = false;
  bool csv_ = false;
};

}  // namespace quillmeter::ctl
