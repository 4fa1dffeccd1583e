#include <string>
#include <vector>

#include <QCoreApplication>

#include "base/Clock.h"
#include "ctl/Console.h"
#include "ctl/QuickReport.h"
#include "ctl/UpdateReport.h"
#include "platform/linux/KernelVersion.h"
#include "platform/linux/Nl80211WifiClient.h"
#include "platform/linux/RtnetlinkPathReader.h"
#include "platform/linux/audio/PulseAudioHardware.h"
#include "platform/qt/QtCatalogue.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/qt/QtHttpsClient.h"
#include "update/AppUpdateChecker.h"
#include "update/model/AppVersion.h"
#include "update/model/WebHost.h"

// quillmeter-query LANGUAGE json|text COMMAND [ARGUMENT]...: what `quillmeterctl quick` and `quillmeterctl update`
// become.

using namespace quillmeter;

namespace {

ctl::ExitCode quick(ctl::Console& console, const ctl::QuickRequest& request) {
  const SystemMonotonicClock clock;
  PulseAudioHardware audio(clock);
  Nl80211WifiClient wifi;
  return ctl::runQuick(console, {wifi, audio, RtnetlinkPathReader().read()}, request);
}

ctl::ExitCode update(ctl::Console& console, bool json) {
  QtEventLoop loop;
  QtHttpsClient client;
  AppUpdateChecker checker(client, AppVersion::current(), std::string(productWebHost()), runningKernelVersion());
  const Subscription changes = checker.onChange([&] {
    if (!checker.isChecking()) loop.quit();
  });
  checker.check();
  console.showProgress(checker.progressText().value_or(""));
  loop.run();
  console.showProgress({});
  return ctl::printUpdateResult(console, *checker.result(), json);
}

}  // namespace

int main(int argc, char** argv) {
  ctl::Console::occupyStandardDescriptors();
  ctl::Console console(1, 2);
  const std::vector<std::string> arguments(argv, argv + argc);
  if (arguments.size() < 4) return static_cast<int>(ctl::ExitCode::wrongUse);
  if (!installCatalogue(arguments[1])) installCatalogue(simplifiedChineseLanguage);
  const bool json = arguments[2] == "json";
  if (arguments[3] == "update") return static_cast<int>(console.finish(update(console, json)));
  ctl::QuickRequest request{.json = json};
  if (arguments.size() > 4) request.action = arguments[4];
  if (arguments.size() > 5) request.value = arguments[5];
  return static_cast<int>(console.finish(quick(console, request)));
}
