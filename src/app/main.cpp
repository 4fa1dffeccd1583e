#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include <QApplication>

#include "app/AppOptions.h"
#include "app/Application.h"
#include "app/DisplayCheck.h"
#include "app/StoredLanguage.h"
#include "platform/linux/SignalDescriptor.h"
#include "platform/qt/QtCatalogue.h"

using namespace quillmeter;

int main(int argc, char** argv) {
  SignalDescriptor ending({SIGTERM, SIGINT, SIGHUP});  // before any thread is made
  installCatalogue(storedLanguage());
  const ParsedOptions parsed = parseOptions(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
  if (parsed.exitStatus) {
    std::fputs(parsed.output.c_str(), *parsed.exitStatus == 0 ? stdout : stderr);
    return *parsed.exitStatus;
  }
  if (const auto problem = displayProblem()) {
    std::fprintf(stderr, "quillmeter: %s\n", problem->c_str());
    return 1;
  }
  QApplication::setApplicationName("Quillmeter");
  QApplication::setDesktopFileName("com.kesto.Quillmeter");
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication application(argc, argv);
  return Application(application, ending, parsed.options).run();
}
