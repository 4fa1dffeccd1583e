#include "sweep/OpenWindow.h"

#include <stdexcept>

#include "demo/MachineFile.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter::test {
namespace {

MachineDescription inLanguage(MachineDescription machine, const std::string& language) {
  machine.settings.emplace_back(SettingsKeys::appLanguage.key, language);
  return machine;
}

}  // namespace

const MachineDescription& describedMachine() {
  static const auto machine = readMachineFile(QUILLMETER_SOURCES "/tools/screenshots/machine.json");
  if (!machine) throw std::runtime_error(machine.error());
  return *machine;
}

MachineDescription bareMachine() {
  MachineDescription machine;
  machine.battery.reset();
  machine.audio = {};
  machine.wifi = {};
  machine.path = {};
  machine.network.interface.clear();
  return machine;
}

MachineDescription troubledMachine() {
  MachineDescription machine = describedMachine();
  machine.processorLoad = {0.999};
  machine.memory.used = {0.985};
  machine.diskAvailableBytes = 1'048'576;
  machine.thermalLevel = 3;
  machine.battery = DescribedBattery{.percent = 3, .minutesToEmpty = 4};
  machine.limits->primaryUsed = machine.limits->weeklyUsed = 1;
  machine.audio.outputs.front().name = "A loudspeaker with a name that is much longer than any place it is shown in";
  machine.agents[AgentLogProvider::hermes] = {.isInstalled = true, .isConnected = true, .unreadableSources = 2};
  const AgentTokenMetrics huge{.totalTokens = 9'876'543'210, .inputTokens = 9'876'543'210};
  machine.agents[AgentLogProvider::openclaw].sessions.push_back({"huge", {{"huge-1", machine.now, huge}}, {}});
  return machine;
}

std::vector<Shot> allShots() {
  std::vector<Shot> shots = windowShots();
  for (Shot& shot : trayShots()) shots.push_back(std::move(shot));
  return shots;
}

Desk::Desk(const std::string& language, const MachineDescription& machine) : services(inLanguage(machine, language)) {
  appearance.preferences.reducedMotion = true;
  theme_ =
      std::make_unique<Theme>(*dynamic_cast<QApplication*>(QApplication::instance()), services.preferences, appearance);
  services.start();
}

std::unique_ptr<QWidget> Desk::open(const Shot& shot) {
  auto window = shot.open(services);
  if (!shot.size.isEmpty()) window->resize(shot.size);
  window->show();
  settle();
  if (shot.prepare) shot.prepare(*window, services);
  settle();
  return window;
}

void Desk::bringTrouble() {
  services.domain.refuseWrites(PreferenceProblem{.kind = PreferenceProblem::Kind::unwritable, .path = "/home/user/x"});
  services.audio.refuses = true;
  services.quickStatus.setVolume(0.3);
  services.archive.saveOutcome = ArchiveOutcome::failed;
  services.loginItems.failure = "org.freedesktop.DBus.Error.AccessDenied: the session manager said no";
  constexpr double untilTheRecordIsSaved = 40;
  services.advance(untilTheRecordIsSaved);
  services.https.response = tl::unexpected(HttpsFailure::transport);
  services.updates.check();
  services.authorization.connect(AgentLogProvider::pi);
  settle();
}

void Desk::settle() {
  services.settle();
  // A layout may ask for another one.
  constexpr int turns = 5;
  for (int turn = 0; turn < turns; ++turn) {
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

}  // namespace quillmeter::test
