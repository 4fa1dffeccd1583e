#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include <QApplication>

#include "app/AppOptions.h"
#include "app/AppSettings.h"
#include "app/Application.h"
#include "app/DisplayCheck.h"
#include "platform/linux/SignalDescriptor.h"
#include "platform/linux/desktop/GtkDesktop.h"
#include "platform/qt/QtCatalogue.h"
#include "ui/theme/Theme.h"

using namespace quillmeter;

namespace {

constexpr const char* platformThemeVariable = "QT_QPA_PLATFORMTHEME";

// On desktops made with GTK the toolkit would load all of GTK to ask for fonts and colours, more than this program
// weighs itself. Its built-in theme for GNOME does not; Theme gets the font from the portal. False where the user chose.
bool chooseBuiltInPlatformTheme() {
  if (qEnvironmentVariableIsSet(platformThemeVariable)) return false;
  return currentGtkDesktop() && qputenv(platformThemeVariable, "gnome");
}

}  // namespace

int main(int argc, char** argv) {
  SignalDescriptor ending({SIGTERM, SIGINT, SIGHUP});  // before any thread is made
  AppSettings settings;
  installCatalogue(settings.language());
  const ParsedOptions parsed = parseOptions(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
  if (parsed.exitStatus) {
    std::fputs(parsed.output.c_str(), *parsed.exitStatus == 0 ? stdout : stderr);
    return *parsed.exitStatus;
  }
  if (const auto problem = displayProblem()) {
    std::fprintf(stderr, "quillmeter: %s\n", problem->c_str());
    return 1;
  }
  const bool isThemeOurs = chooseBuiltInPlatformTheme();
  Theme::installStyle();
  QApplication::setApplicationName("Quillmeter");
  QApplication::setDesktopFileName("com.kesto.Quillmeter");
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication application(argc, argv);
  if (isThemeOurs) qunsetenv(platformThemeVariable);
  return Application(application, ending, settings, parsed.options).run();
}
