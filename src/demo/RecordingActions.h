#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/PreferenceDomain.h"
#include "ui/AppActions.h"

namespace quillmeter {

// Notes what views ask of the program: "dashboard", "dashboard agents", "settings menuBar", "onboarding", "quit".
class RecordingActions final : public AppActions {
 public:
  void showDashboard(std::string_view page) override { note("dashboard", page); }
  void showSettings(std::string_view page) override { note("settings", page); }
  void showOnboarding() override { note("onboarding", {}); }
  void quit() override { note("quit", {}); }
  void preferenceFailed(const PreferenceProblem& failed) override { problem = failed; }

  std::vector<std::string> asked;
  std::optional<PreferenceProblem> problem;

 private:
  void note(std::string what, std::string_view page) {
    if (!page.empty()) what.append(" ").append(page);
    asked.push_back(std::move(what));
  }
};

}  // namespace quillmeter
