// Pictures of the program's windows on a described machine, for the documentation and for looking at a page while it is
// made. No display, no bus, none of the user's own files.
#include <algorithm>
#include <cstdlib>
#include <optional>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QPainter>
#include <QTemporaryDir>
#include <QTextStream>

#include "demo/FakeServices.h"
#include "demo/MachineFile.h"
#include "platform/fake/FakeDesktop.h"
#include "preferences/SettingsKeys.h"
#include "screenshots/IndexedImage.h"
#include "screenshots/Shot.h"
#include "ui/theme/Theme.h"
#include "ui/theme/ThemeColors.h"

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
  qputenv("LC_ALL", "C.UTF-8");
}

// The scale has to be known before the application is made.
double scaleIn(int count, char** arguments) {
  const std::string option = "--scale=";
  for (int index = 1; index < count; ++index) {
    const std::string argument = arguments[index];
    if (argument.starts_with(option)) return std::max(QByteArray(argument.c_str() + option.size()).toDouble(), 1.0);
  }
  return 1;
}

// A screen of a usual size, whatever the scale.
void makeScreen(const QString& home, double scale) {
  constexpr double widthPoints = 1440;
  constexpr double heightPoints = 900;
  const QString path = home + "/screen.json";
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return;
  file.write(QStringLiteral(R"({"screens":[{"name":"screen","x":0,"y":0,"width":%1,"height":%2,)"
                            R"("logicalDpi":96,"logicalBaseDpi":96,"dpr":1}]})")
                 .arg(widthPoints * scale)
                 .arg(heightPoints * scale)
                 .toUtf8());
  qputenv("QT_SCALE_FACTOR", QByteArray::number(scale));
  qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(path));
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

// Rounded windows stand on something.
QImage onDesk(const QImage& window) {
  QImage picture(window.size(), QImage::Format_RGB32);
  picture.setDevicePixelRatio(window.devicePixelRatio());
  picture.fill(ThemeColors::of(QApplication::palette()).dark ? QColor(0x0B, 0x0C, 0x0F) : QColor(0xDD, 0xE1, 0xE8));
  QPainter(&picture).drawImage(0, 0, window);
  return picture;
}

// A layout may ask for another one.
void settle(FakeServices& services) {
  constexpr int turns = 5;
  services.settle();
  for (int turn = 0; turn < turns; ++turn) QApplication::processEvents();
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
  settle(services);
  if (shot.prepare) shot.prepare(*window, services);
  settle(services);
  const QString path = QDir(options.folder).filePath(options.prefix + QString::fromStdString(shot.name) + ".png");
  constexpr int smallestFile = 0;  // quality 0 compresses most
  if (!indexedImage(onDesk(window->grab().toImage())).save(path, "PNG", smallestFile))
    fail(path + " cannot be written");
}

}  // namespace

int main(int argc, char** argv) {
  const QTemporaryDir home;
  leaveTheDesktop(home.path());
  makeScreen(home.path(), scaleIn(argc, argv));
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
