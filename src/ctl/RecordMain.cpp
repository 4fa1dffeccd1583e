#include <csignal>
#include <string>

#include <QCoreApplication>

#include "base/Clock.h"
#include "ctl/Console.h"
#include "ctl/NonblockingOutput.h"
#include "platform/linux/SignalDescriptor.h"
#include "platform/linux/desktop/LinuxDesktop.h"
#include "platform/qt/QtCatalogue.h"
#include "platform/qt/QtDescriptorWatcher.h"
#include "platform/qt/QtLocale.h"
#include "platform/qt/QtTimerFactory.h"
#include "screentime/ActivityArchiveFile.h"
#include "screentime/ScreenTimeMonitor.h"

// quillmeter-record ARCHIVE LANGUAGE: what `quillmeterctl record` becomes. Records until SIGTERM, SIGINT or SIGHUP, and
// prints a line at each change of what is counted.

using namespace quillmeter;

namespace {

// Says what changed; a failure of the store ends the program, since nobody is there to press a button.
class RecordLog {
 public:
  explicit RecordLog(const ScreenTimeMonitor& monitor) : monitor_(monitor) {}

  void monitorChanged() {
    if (monitor_.storageError()) return QCoreApplication::exit(1);
    const std::string app = monitor_.currentApp() ? monitor_.currentApp()->name : "";
    const std::string line = app.empty() ? monitor_.state() : monitor_.state() + "  " + app;
    // A reader that stands still or leaves does not stop the recording. What it misses is made up for by the next line.
    if (line != last_ && output_.offer(line + "\n")) last_ = line;
  }

 private:
  const ScreenTimeMonitor& monitor_;
  ctl::NonblockingOutput output_{1};
  std::string last_;
};

int record(const std::string& archive, const std::string& language, ctl::Console& console, int endDescriptor) {
  const SystemClock clock;
  const SystemMonotonicClock monotonic;
  QtDescriptorWatcher descriptors;
  QtTimerFactory timers;
  const Weekday firstWeekday = localeConventions(language).firstWeekday;
  LinuxDesktop desktop(LinuxDesktopPlaces::current(), descriptors, timers, monotonic);
  ActivityArchiveFile store(archive);
  ScreenTimeMonitor monitor({clock, monotonic, [firstWeekday] { return Calendar::current(firstWeekday); }, timers,
                             [&desktop] { return desktop.sources(); }, store});
  RecordLog log(monitor);
  const Subscription changes = monitor.observe([&log] { log.monitorChanged(); });
  const auto end = descriptors.watch(endDescriptor, DescriptorEvent::readable, [] { QCoreApplication::exit(0); });
  // The desktop's services answer within the first moments; a tick before that would only find nothing.
  const auto begin = timers.once(0, [&] {
    monitor.start();
    monitor.setEnabled(true);
    if (monitor.storageError()) QCoreApplication::exit(1);
  });
  const int code = QCoreApplication::exec();
  monitor.willTerminate();
  if (!monitor.storageError()) return code;
  console.diagnose(*monitor.storageError());
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  ctl::Console::occupyStandardDescriptors();
  const SignalDescriptor ending({SIGTERM, SIGINT, SIGHUP});  // before any thread is made
  if (argc != 3) return 2;
  QCoreApplication application(argc, argv);
  ctl::Console console(1, 2);
  installCatalogue(argv[2]);
  const int code = record(argv[1], argv[2], console, ending.descriptor());
  return static_cast<int>(console.finish(code == 0 ? ctl::ExitCode::done : ctl::ExitCode::couldNot));
}
