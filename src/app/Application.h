#pragma once

#include <memory>
#include <vector>

#include "app/AppAction.h"
#include "app/AppOptions.h"
#include "base/Observers.h"
#include "platform/TimerFactory.h"

class QApplication;

namespace quillmeter {

struct AppGround;
struct AppServices;
class SignalDescriptor;

// The desktop application: makes everything it consists of, starts it in order and runs it until the user or the
// session ends it. One, on the main thread, after the QApplication.
class Application {
 public:
  // `ending` are those signals that end the program; both outlive it.
  Application(QApplication& application, SignalDescriptor& ending, AppOptions options);
  ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  // The exit status.
  int run();

 private:
  struct Interface;
  bool claimSession(int& status);
  void prepareLaunch();
  void begin();
  void startMonitors();
  void showFirstWindow();
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
  const AppOptions options_;
  std::unique_ptr<AppGround> ground_;
  std::unique_ptr<AppServices> services_;
  std::unique_ptr<Interface> interface_;
  std::unique_ptr<Timer> trayPatience_, tidying_;
  std::vector<Subscription> subscriptions_;
  bool hasReleasedStart_ = false;
};

}  // namespace quillmeter
