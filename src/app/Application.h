#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "app/AppAction.h"
#include "app/AppOptions.h"
#include "app/SingleInstance.h"
#include "base/Observers.h"
#include "platform/TimerFactory.h"

class QApplication;

namespace quillmeter {

struct AppGround;
struct AppServices;
struct AppSettings;
class SignalDescriptor;

// The desktop application: makes everything it consists of, starts it in order and runs it until the user or the
// session ends it. One, on the main thread, after the QApplication.
class Application {
 public:
  // `ending` are those signals that end the program; all outlive it.
  Application(QApplication& application, SignalDescriptor& ending, AppSettings& settings, AppOptions options);
  ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  // The exit status.
  int run();

 private:
  struct Interface;
  std::optional<int> handOver();
  void prepareLaunch();
  void applyDock();
  void tellLanguage();
  void begin();
  void startMonitors();
  void showFirstWindow();
  void showMain();
  void missTray();
  void trayChanged(bool available);
  void act(AppAction action);
  void systemChanged();
  void agentsChanged();
  void applyLanguage();
  void windowsClosed();
  void tidySoon();
  void end();

  QApplication& application_;
  SignalDescriptor& ending_;
  AppSettings& settings_;
  const AppOptions options_;
  SingleInstance instance_;
  std::unique_ptr<AppGround> ground_;
  std::unique_ptr<AppServices> services_;
  std::unique_ptr<Interface> interface_;
  std::unique_ptr<Timer> trayPatience_, tidying_;
  std::vector<Subscription> subscriptions_;
  bool hasReleasedStart_ = false;
};

}  // namespace quillmeter
