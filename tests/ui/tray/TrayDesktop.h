#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QPoint>

#include "screentime/desktop/MessageBus.h"
#include "screentime/desktop/XServer.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter::test {

// The private X server and message bus that the program under test finds itself on, and the panels that a test starts
// there: a mocked watcher of notifier items, and a real X11 tray. Made by main(), ended after the last test.
class TrayDesktop {
 public:
  TrayDesktop();
  ~TrayDesktop();
  static TrayDesktop& current() { return *current_; }
  // What is not installed; empty when nothing is missing.
  static std::string missing();

  const std::string& display() const { return server_.display(); }
  const std::string& busAddress() const { return bus_.address(); }
  const std::string& home() const { return homePath_; }

  // A watcher with a host.
  void startWatcher();
  void endWatcher();
  // How many items have registered with it since its start, each under the name of this program's connection.
  int registrations();

  // Calls the item as a panel would, and runs the event loop until its answer is there.
  QDBusMessage callItem(const char* path, const char* interface, const char* method, const QVariantList& arguments);
  QVariant itemProperty(const char* name);
  // Counts a signal of the item from now on.
  void countSignal(const char* path, const char* interface, const char* name, int& count);

  void startTrayer();
  void endTrayer() { trayer_.end(); }
  int xdotool(std::vector<std::string> arguments) const { return server_.xdotool(std::move(arguments)); }

 private:
  static inline TrayDesktop* current_ = nullptr;
  TemporaryDirectory home_;
  std::string homePath_ = home_.path().string();
  XServer server_;
  MessageBus bus_;
  ChildProcess watcher_;
  ChildProcess trayer_;
  std::vector<std::unique_ptr<QObject>> counters_;
};

bool waitFor(const std::function<bool()>& condition);

}  // namespace quillmeter::test
