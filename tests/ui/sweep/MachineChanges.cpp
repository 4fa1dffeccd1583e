#include "sweep/MachineChanges.h"

#include <string>
#include <variant>

#include "preferences/SettingsKeys.h"

namespace quillmeter::test {

void MachineChanges::makeOne() {
  using Change = void (MachineChanges::*)();
  static constexpr Change changes[] = {&MachineChanges::changeLoad,    &MachineChanges::changeBattery,
                                       &MachineChanges::changeNetwork, &MachineChanges::changeAudio,
                                       &MachineChanges::changeAgents,  &MachineChanges::changeDesktop,
                                       &MachineChanges::changeSetting, &MachineChanges::answerPicker};
  (this->*changes[below(static_cast<int>(std::size(changes)))])();
}

void MachineChanges::changeLoad() {
  services_.description.processorLoad = {share()};
  services_.description.memory.used = {share()};
  services_.description.memory.releasedByCleanup = below(3) * 1'000'000;
  services_.description.diskAvailableBytes = static_cast<std::int64_t>(share() * 512e9);
  services_.description.thermalLevel = below(4);
}

void MachineChanges::changeBattery() {
  if (!services_.description.battery || below(10) == 0) services_.description.battery = DescribedBattery{};
  DescribedBattery& battery = *services_.description.battery;
  battery.percent = below(101);
  battery.isOnMains = chance();
  battery.isCharging = battery.isOnMains && chance();
  battery.isCharged = battery.percent == 100;
  battery.minutesToEmpty = chance() ? std::optional(below(900)) : std::nullopt;
  battery.minutesToFull = chance() ? std::optional(below(900)) : std::nullopt;
}

void MachineChanges::changeNetwork() {
  DescribedNetwork& network = services_.description.network;
  static constexpr const char* interfaces[] = {"", "wlp3s0", "enp0s31f6"};
  network.interface = interfaces[below(3)];
  network.address = chance() ? "10.0.0." + std::to_string(below(256)) : "";
  network.receivedPerSecond = {share() * 1e9};
  network.sentPerSecond = {share() * 1e6};
  services_.paths.change({.satisfied = chance(), .usesWifi = chance(), .usesWiredEthernet = chance()});
  services_.wifi.facts = {chance() ? std::optional(chance()) : std::nullopt,
                          chance() ? std::optional(-30 - below(60)) : std::nullopt,
                          chance() ? std::optional(share() * 2'400) : std::nullopt};
}

void MachineChanges::changeAudio() {
  AudioFacts facts = MachineDescription::defaultAudio();
  facts.outputs.resize(static_cast<std::size_t>(below(3)));
  for (AudioOutputFacts& output : facts.outputs) {
    output.mainVolume = chance() ? std::optional(share()) : std::nullopt;
    output.muted = chance();
    output.canSetMainVolume = chance();
    output.canSetMainBalance = chance();
  }
  facts.defaultOutput = chance() ? std::optional<std::uint32_t>(1 + below(3)) : std::nullopt;
  services_.audio.facts = facts;
  services_.audio.refuses = below(4) == 0;
  if (services_.audio.changed) services_.audio.changed();
}

void MachineChanges::changeAgents() {
  const AgentLogProvider provider = allAgentLogProviders[static_cast<std::size_t>(below(8))];
  const AgentTokenMetrics use{.totalTokens = 3, .inputTokens = 1, .outputTokens = 1, .cachedTokens = 1};
  if (below(5) == 0) {
    services_.description.agents.erase(provider);
  } else {
    services_.addUsage(provider, "soak-" + std::to_string(below(4)), use, services_.clock.now());
  }
  if (services_.description.limits) services_.description.limits->primaryUsed = share();
  services_.description.agents[AgentLogProvider::pi].unreadableSources = below(2);
  services_.scanAgents();
}

void MachineChanges::changeDesktop() {
  const std::string id = "app" + std::to_string(below(30));
  services_.foreground.activate({.identifier = id, .name = "Application " + id, .processId = 7, .launchTime = {}});
  services_.idle.seconds = chance() ? std::optional(share() * 400) : std::nullopt;
  services_.lock.registry = below(5) == 0;
  services_.archive.saveOutcome = below(5) == 0 ? ArchiveOutcome::failed : ArchiveOutcome::done;
  services_.loginItems.failure = below(3) == 0 ? std::optional<std::string>("refused") : std::nullopt;
  services_.activation.refuses = below(3) == 0;
  if (services_.sessionEvents.announce) services_.sessionEvents.announce(static_cast<SessionEvent>(below(6)));
}

// Any value, sensible or not, by this program or another.
void MachineChanges::changeSetting() {
  services_.domain.refuseWrites(below(6) == 0 ? std::optional(PreferenceProblem{}) : std::nullopt);
  const auto rows = SettingsKeys::all();
  const auto& row = rows[static_cast<std::size_t>(below(static_cast<int>(rows.size())))];
  std::optional<PreferenceValue> value;
  if (const auto* text = std::get_if<StringSetting>(&row)) {
    const int choices = static_cast<int>(text->choices.size());
    const int choice = below(choices + 1);
    value = std::string(choice < choices ? text->choices[static_cast<std::size_t>(choice)] : "nonsense");
  } else if (std::holds_alternative<BooleanSetting>(row)) {
    value = chance();
  } else if (const auto* real = std::get_if<RealSetting>(&row)) {
    value = real->minimum + share() * 10;
  } else if (std::holds_alternative<DataSetting>(row)) {
    value = PreferenceData{R"([{"kind":"cpu","size":"large","isEnabled":false},{"kind":"nothing"}])"};
  }
  if (value && chance()) {
    services_.set(SettingsKeys::keyOf(row), *value);
  } else {
    services_.setByAnotherProgram(std::string(SettingsKeys::keyOf(row)), value);
  }
}

void MachineChanges::answerPicker() {
  if (!services_.picker.isOpen()) return;
  const auto& request = services_.picker.requests.back();
  services_.picker.answer(chance() ? std::optional(request.startDirectory) : std::nullopt);
}

}  // namespace quillmeter::test
