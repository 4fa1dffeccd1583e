#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace quillmeter {

// A running application as the window system tells it. Only what it is, never the titles of its windows.
struct RunningApplication {
  std::optional<std::string> identifier;  // a stable id ("org.mozilla.firefox"); absent for a window without any class
  std::optional<std::string> name;        // in the user's language; absent when it has none
  std::int64_t processId = 0;             // 0: unknown
  std::optional<double> launchTime;       // seconds since 1970; absent when unknown
  friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

// Which application is in front. Main thread.
class ForegroundApplicationSource {
 public:
  virtual ~ForegroundApplicationSource() = default;
  // Whether this desktop can tell. May turn true or false while running (a service appears, a compositor ends).
  virtual bool isSupported() const = 0;
  // The application in front; absent when there is none (an empty desktop, the moment between two windows) or it is
  // unknown.
  virtual std::optional<RunningApplication> frontmost() = 0;
  // Called at each change to another application; never for "none". One handler; an empty one ends it.
  virtual void setActivationHandler(std::function<void(const RunningApplication&)> handler) = 0;
};

}  // namespace quillmeter
