#pragma once

#include <functional>
#include <memory>
#include <string>

#include "app/AppAction.h"

namespace quillmeter {

// The program's name on the session bus, under which it answers org.freedesktop.Application: one in a session; a second
// start hands its wish to the first and ends. Without a session bus every start is the first. Main thread, after the
// QApplication.
class SingleInstance {
 public:
  static constexpr const char* busName = "com.kesto.Quillmeter";
  static constexpr const char* objectPath = "/com/kesto/Quillmeter";

  enum class Role { first, second };
  struct Handlers {
    std::function<void()> activate;
    std::function<void(AppAction)> act;
  };

  explicit SingleInstance(Handlers handlers);
  ~SingleInstance();
  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;

  // Takes the name, if nobody has it.
  Role claim();
  // Asks the one that has the name: for the action, or without one to come to the front. False when it does not
  // answer.
  bool askFirst(const std::string& action);

 private:
  class Object;
  std::unique_ptr<Object> object_;
};

}  // namespace quillmeter
