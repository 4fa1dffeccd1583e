#pragma once

#include <memory>
#include <string>
#include <vector>

#include <QDBusConnection>
#include <QVariantList>

#include "screentime/desktop/ChildProcess.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter::test {

// A private message bus, which plays the session's and the system's alike, with mocked services on it.
class MessageBus {
 public:
  MessageBus();
  ~MessageBus();
  // Absent when the bus or the mocks are not installed; the sentence says which.
  static std::string missing();
  const std::string& address() const { return address_; }

  // A mock made by one of the templates that come with python3-dbusmock. Waits until it has its name.
  ChildProcess startTemplate(const std::string& name, const std::string& service);
  // A mock without methods.
  ChildProcess startMock(const std::string& service, const std::string& path, const std::string& interface);
  // Adds a method to a mock: signatures, and the Python code that sets `ret`.
  void addMethod(const std::string& service, const std::string& path, const std::string& interface,
                 const std::string& name, const std::string& in, const std::string& out, const std::string& code);
  void emitSignal(const std::string& service, const std::string& path, const std::string& interface,
                  const std::string& name, const std::string& signature, const QVariantList& arguments);
  // Calls a method and waits for its answer, which has to be no error.
  QVariant call(const std::string& service, const std::string& path, const std::string& interface,
                const std::string& method, const QVariantList& arguments);
  bool hasName(const std::string& service);

 private:
  ChildProcess startMockWith(std::vector<std::string> arguments, const std::string& service);

  TemporaryDirectory directory_;
  ChildProcess daemon_;
  std::string address_;
  std::unique_ptr<QDBusConnection> connection_;
};

}  // namespace quillmeter::test
