#pragma once

#include <string_view>

namespace quillmeter {

struct PreferenceProblem;

// What a view asks of the program beyond its own window. Implemented by the application, which owns all windows. Main
// thread.
class AppActions {
 public:
  virtual ~AppActions() = default;
  // Opens the dashboard, or brings it to the front; with a page identifier ("overview", "agents", "screenTime") it
  // turns to that page.
  virtual void showDashboard(std::string_view page = {}) = 0;
  // "general", "menuBar", "components", "agents", "screenTime", "about".
  virtual void showSettings(std::string_view page = {}) = 0;
  virtual void showOnboarding() = 0;
  virtual void quit() = 0;
  // A choice could not be stored: every open window tells the user.
  virtual void preferenceFailed(const PreferenceProblem& problem) = 0;
};

}  // namespace quillmeter
