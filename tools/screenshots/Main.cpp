// Pictures of the program's windows on a described machine, for the documentation and for looking at a page while it is
// made. No display, no bus, none of the user's own files.
#include <algorithm>
#include <cstdlib>
#include <optional>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QTemporaryDir>
#include <QTextStream>

#include "demo/FakeServices.h"
#include "demo/MachineFile.h"
#include "platform/fake/FakeDesktop.h"
#include "preferences/SettingsKeys.h"
#include "screenshots/Shot.h"
#include "ui/theme/Theme.h"

using namespace quillmeter;

namespace {

struct Options {
  QString machine;
  QString language;
  QString theme;
  QString folder;
  QString prefix;
  QStringList names;
  std::optional<QSize> size;
};

void leaveTheDesktop(const QString& home) {
  const QByteArray folder = QFile::encodeName(home);
  for (const char* variable : {"HOME", "XDG_RUNTIME_DIR"}) qputenv(variable, folder);
  for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) qunsetenv(variable);
  for (const char* bus : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"})
    qputenv(bus, "unix:path=/nonexistent");
  for (const char* variable : {"QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "XDG_CURRENT_DESKTOP"}) qunsetenv(variable);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("LC_ALL", "C.UTF-8");
}

// The scale has to be known before the application is made.
void scaleBefore(int count, char** arguments) {
  const std::string option = "--scale=";
  for (int index = 1; index < count; ++index) {
    const std::string argument = arguments[index];
    if (argument.starts_with(option)) qputenv("QT_SCALE_FACTOR", QByteArray(argument.c_str() + option.size()));
  }
}

[[noreturn]] void fail(const QString& text) {
  QTextStream(stderr) << "quillmeter_screenshots: " << text << '\n';
  std::exit(1);
}

std::optional<QSize> sizeOf(const QString& text) {
  if (text.isEmpty()) return std::nullopt;
  const QStringList sides = text.split('x');
  const QSize size(sides.value(0).toInt(), sides.value(1).toInt());
  if (size.isEmpty()) fail("--size takes WIDTHxHEIGHT");
  return size;
}

Options readOptions(QApplication& application) {
  QCommandLineParser parser;
  parser.setApplicationDescription("Pictures of Quillmeter's windows on a described machine.");
  parser.addHelpOption();
  parser.addOptions({{"machine", "The machine (tools/screenshots/MACHINE_FILE.md).", "file"},
                     {"language", "zh-Hans or en.", "language", "zh-Hans"},
                     {"theme", "light or dark.", "theme", "light"},
                     {"scale", "Device pixels a point; written --scale=2.", "factor", "1"},
                     {"size", "Of the windows, instead of their usual one.", "WIDTHxHEIGHT"},
                     {"prefix", "Before the name of each file.", "text"},
                     {"list", "Prints the names."}});
  parser.addPositionalArgument("folder", "Where the pictures go.");
  parser.addPositionalArgument("names", "Which pictures; all without.", "[name...]");
  parser.process(application);
  if (parser.isSet("list")) {
    for (const auto& shots : {windowShots(), trayShots()}) {
      for (const Shot& shot : shots) QTextStream(stdout) << QString::fromStdString(shot.name) << '\n';
    }
    std::exit(0);
  }
  QStringList arguments = parser.positionalArguments();
  if (arguments.isEmpty()) parser.showHelp(2);
  const QString folder = arguments.takeFirst();
  return {parser.value("machine"),     parser.value("language"),
          parser.value("theme"),       folder,
          parser.value("prefix"),      arguments,
          sizeOf(parser.value("size"))};
}

MachineDescription machineFor(const Options& options) {
  MachineDescription machine;
  if (!options.machine.isEmpty()) {
    auto described = readMachineFile(options.machine.toStdString());
    if (!described) fail(QString::fromStdString(described.error()));
    machine = *std::move(described);
  }
  machine.settings.emplace_back(SettingsKeys::appLanguage.key, options.language.toStdString());
  machine.settings.emplace_back(SettingsKeys::appTheme.key, options.theme.toStdString());
  return machine;
}

void take(const Shot& shot, const Options& options, const MachineDescription& machine, QApplication& application) {
  FakeServices services(machine);
  FakeDesktopAppearance desktop;
  desktop.preferences.reducedMotion = true;
  const Theme theme(application, services.preferences, desktop);
  services.start();
  const std::unique_ptr<QWidget> window = shot.open(services);
  if (const QSize size = options.size.value_or(shot.size); !size.isEmpty()) window->resize(size);
  window->show();
  QApplication::processEvents();
  services.settle();
  if (shot.prepare) shot.prepare(*window, services);
  QApplication::processEvents();
  const QString path = QDir(options.folder).filePath(options.prefix + QString::fromStdString(shot.name) + ".png");
  constexpr int smallestFile = 0;  // quality 0 compresses most
  if (!window->grab().toImage().save(path, "PNG", smallestFile)) fail(path + " cannot be written");
}

}  // namespace

int main(int argc, char** argv) {
  const QTemporaryDir home;
  leaveTheDesktop(home.path());
  scaleBefore(argc, argv);
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  const Options options = readOptions(application);
  if (!QDir().mkpath(options.folder)) fail(options.folder + " cannot be made");
  const MachineDescription machine = machineFor(options);
  std::vector<Shot> shots = windowShots();
  for (Shot& shot : trayShots()) shots.push_back(std::move(shot));
  for (const QString& name : options.names) {
    if (std::ranges::find(shots, name.toStdString(), &Shot::name) == shots.end()) fail("no picture is called " + name);
  }
  for (const Shot& shot : shots) {
    if (!options.names.isEmpty() && !options.names.contains(QString::fromStdString(shot.name))) continue;
    take(shot, options, machine, application);
  }
}
