#pragma once

#include <filesystem>

#include "ctl/Console.h"
#include "platform/FolderPicker.h"

namespace quillmeter::ctl {

// Picks a folder on a terminal: shows what a picker shows and reads a line. Enter takes the folder that is offered, a
// path takes that one ("~/" is the home folder); "q" or the end of the input cancels. Waits for the user, so that
// pick() has completed when it returns.
class TerminalFolderPicker final : public FolderPicker {
 public:
  // Reads from `input`, which stays the caller's.
  TerminalFolderPicker(Console& console, int input, std::filesystem::path home)
      : console_(console), input_(input), home_(std::move(home)) {}
  void pick(const FolderPickRequest& request, Completion completion) override;

 private:
  Console& console_;
  int input_;
  std::filesystem::path home_;
};

// Takes the folder that is offered, for callers that nobody sits before.
class OfferedFolderPicker final : public FolderPicker {
 public:
  void pick(const FolderPickRequest& request, Completion completion) override { completion(request.startDirectory); }
};

}  // namespace quillmeter::ctl
