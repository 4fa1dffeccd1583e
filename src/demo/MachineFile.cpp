#include "demo/MachineFile.h"

#include <fstream>
#include <iterator>
#include <utility>

#include "base/Calendar.h"
#include "demo/StrictObject.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {
namespace {

void readClock(const StrictObject& clock, MachineDescription& machine) {
  clock.read("now", machine.now);
  clock.read("zone", machine.zone);
  clock.read("warmUpSeconds", machine.warmUpSeconds);
  if (!Calendar::forZone(machine.zone, 1)) clock.fail("zone", "no time zone");
  if (machine.warmUpSeconds < 0) clock.fail("warmUpSeconds", "negative");
}

void readSettings(const StrictObject& settings, MachineDescription& machine) {
  for (const std::string& key : settings.keys()) {
    auto value = settings.preferenceValue(key);
    if (SettingsKeys::find(key) == nullptr) settings.fail(key, "no setting");
    if (value) machine.settings.emplace_back(key, std::move(*value));
  }
}

void readShares(const StrictObject& object, std::string_view key, std::vector<double>& values) {
  object.read(key, values);
  for (const double value : values) {
    if (value < 0 || value > 1) object.fail(key, "not within 0 ... 1");
  }
}

void readProcessor(const StrictObject& processor, MachineDescription& machine) {
  processor.read("count", machine.processors);
  readShares(processor, "load", machine.processorLoad);
}

void readMemory(const StrictObject& object, DescribedMemory& memory) {
  object.read("totalBytes", memory.totalBytes);
  readShares(object, "used", memory.used);
  object.read("wired", memory.wired);
  object.read("compressed", memory.compressed);
  object.read("cached", memory.cached);
  object.read("releasedByCleanup", memory.releasedByCleanup);
}

void readDisk(const StrictObject& disk, MachineDescription& machine) {
  disk.read("totalBytes", machine.diskTotalBytes);
  disk.read("availableBytes", machine.diskAvailableBytes);
}

void readPath(const StrictObject& network, NetworkPath& path) {
  std::string name;
  network.read("path", name);
  if (name == "wifi") path = {.satisfied = true, .usesWifi = true};
  if (name == "ethernet") path = {.satisfied = true, .usesWiredEthernet = true};
  if (name == "other") path = {.satisfied = true};
  if (name == "offline") path = {};
  if (!name.empty() && name != "wifi" && name != "ethernet" && name != "other" && name != "offline") {
    network.fail("path", "neither wifi, ethernet, other nor offline");
  }
}

void readNetwork(const StrictObject& object, MachineDescription& machine) {
  object.read("interface", machine.network.interface);
  object.read("address", machine.network.address);
  object.read("receivedPerSecond", machine.network.receivedPerSecond);
  object.read("sentPerSecond", machine.network.sentPerSecond);
  readPath(object, machine.path);
}

void readWifi(const StrictObject& object, WifiFacts& wifi) {
  object.read("powered", wifi.powered);
  object.read("signal", wifi.rssi);
  object.read("rate", wifi.transmitRate);
}

void readBattery(const StrictObject& object, DescribedBattery& battery) {
  object.read("name", battery.name);
  object.read("percent", battery.percent);
  object.read("isCharging", battery.isCharging);
  object.read("isCharged", battery.isCharged);
  object.read("isOnMains", battery.isOnMains);
  object.read("minutesToEmpty", battery.minutesToEmpty);
  object.read("minutesToFull", battery.minutesToFull);
}

AudioOutputFacts readOutput(const StrictObject& object) {
  AudioOutputFacts output;
  output.id = static_cast<std::uint32_t>(object.required<int>("id"));
  output.name = object.required<std::string>("name");
  object.read("transport", output.transport);
  object.read("formFactor", output.formFactor);
  object.read("volume", output.mainVolume);
  object.read("balance", output.mainBalance);
  object.read("muted", output.muted);
  output.canSetMainVolume = output.mainVolume.has_value();
  output.canSetMainBalance = output.mainBalance.has_value();
  output.canSetMute = output.muted.has_value();
  return output;
}

void readAudio(const StrictObject& object, AudioFacts& audio) {
  audio = {};
  for (const StrictObject& output : object.objects("outputs")) audio.outputs.push_back(readOutput(output));
  if (object.has("default")) audio.defaultOutput = static_cast<std::uint32_t>(object.required<int>("default"));
}

AdapterUsageEvent readEvent(const StrictObject& object, std::string id) {
  AdapterUsageEvent event{std::move(id), object.required<Date>("at"), {}};
  AgentTokenMetrics& metrics = event.metrics;
  object.read("input", metrics.inputTokens);
  object.read("output", metrics.outputTokens);
  object.read("cached", metrics.cachedTokens);
  if (metrics.inputTokens < 0 || metrics.outputTokens < 0 || metrics.cachedTokens < 0) object.fail("", "negative");
  metrics.totalTokens = metrics.inputTokens + metrics.outputTokens + metrics.cachedTokens;
  return event;
}

AdapterUsageSession readSession(const StrictObject& object) {
  AdapterUsageSession session{object.required<std::string>("id"), {}, {}};
  // It becomes the name of a file.
  if (session.id.empty() || session.id.find_first_of("/\\.") != std::string::npos) object.fail("id", "no plain name");
  for (const StrictObject& event : object.objects("events")) {
    session.events.push_back(readEvent(event, session.id + "-" + std::to_string(session.events.size())));
  }
  return session;
}

void readAgents(const StrictObject& object, MachineDescription& machine) {
  for (const std::string& name : object.keys()) {
    const auto provider = agentLogProviderFromRawValue(name);
    const auto content = object.object(name);
    if (!provider) object.fail(name, "no agent");
    if (!provider || !content) continue;
    DescribedAgent& agent = machine.agents[*provider];
    agent.isInstalled = true;
    content->read("isInstalled", agent.isInstalled);
    content->read("isConnected", agent.isConnected);
    content->read("unreadableSources", agent.unreadableSources);
    for (const StrictObject& session : content->objects("sessions")) agent.sessions.push_back(readSession(session));
  }
}

DescribedLimits readLimits(const StrictObject& object) {
  DescribedLimits limits;
  limits.observedAt = object.required<Date>("observedAt");
  limits.primaryUsed = object.required<double>("primaryUsed");
  limits.primaryResetAt = object.required<Date>("primaryResetAt");
  limits.weeklyUsed = object.required<double>("weeklyUsed");
  limits.weeklyResetAt = object.required<Date>("weeklyResetAt");
  return limits;
}

using ApplicationNames = std::map<std::string, std::string>;

ApplicationNames readApplications(const StrictObject& screenTime, DescribedScreenTime& record) {
  ApplicationNames names;
  const auto applications = screenTime.object("applications");
  if (!applications) return names;
  for (const std::string& id : applications->keys()) {
    const auto application = applications->object(id);
    if (!application) continue;
    names[id] = application->required<std::string>("name");
    std::string icon;
    application->read("icon", icon);
    if (!icon.empty()) record.icons[id] = icon;
  }
  return names;
}

void readSpans(const StrictObject& screenTime, const ApplicationNames& names, DescribedScreenTime& record) {
  for (const StrictObject& object : screenTime.objects("spans")) {
    const std::string id = object.required<std::string>("application");
    const Date start = object.required<Date>("start");
    const double minutes = object.required<double>("minutes");
    constexpr double secondsInMinute = 60;
    if (!names.contains(id)) object.fail("application", "not among the applications");
    if (!(minutes > 0)) object.fail("minutes", "not above 0");
    if (!names.contains(id) || !(minutes > 0)) return;
    const Date end = Date::fromSeconds(start.seconds() + minutes * secondsInMinute);
    if (!record.spans.empty() && start < record.spans.back().end)
      object.fail("start", "before the end of the span above");
    record.spans.push_back({start, end, {id, names.at(id)}});
  }
}

void readScreenTime(const StrictObject& object, DescribedScreenTime& record) {
  object.read("isEnabled", record.isEnabled);
  object.read("startedAt", record.startedAt);
  const ApplicationNames names = readApplications(object, record);
  readSpans(object, names, record);
  std::string id;
  object.read("foreground", id);
  if (id.empty()) return;
  if (!names.contains(id)) return object.fail("foreground", "not among the applications");
  record.foreground = RunningApplication{.identifier = id, .name = names.at(id), .processId = 1, .launchTime = {}};
}

void readUpdate(const StrictObject& object, DescribedUpdate& update) {
  object.read("runningVersion", update.runningVersion);
  object.read("runningBuild", update.runningBuild);
  object.read("status", update.status);
  object.read("manifest", update.manifest);
}

void readMachine(const StrictObject& root, MachineDescription& machine) {
  const auto part = [&root](std::string_view key, const auto& read, auto& into) {
    if (const auto object = root.object(key)) read(*object, into);
  };
  part("clock", readClock, machine);
  part("settings", readSettings, machine);
  part("processor", readProcessor, machine);
  part("memory", readMemory, machine.memory);
  part("disk", readDisk, machine);
  part("network", readNetwork, machine);
  part("wifi", readWifi, machine.wifi);
  if (root.isNull("battery")) {
    machine.battery.reset();
  } else {
    part("battery", readBattery, *machine.battery);
  }
  root.read("thermalLevel", machine.thermalLevel);
  part("audio", readAudio, machine.audio);
  part("agents", readAgents, machine);
  if (const auto limits = root.object("limits")) machine.limits = readLimits(*limits);
  part("screenTime", readScreenTime, machine.screenTime);
  part("update", readUpdate, machine.update);
}

}  // namespace

tl::expected<MachineDescription, std::string> parseMachine(std::string_view json) {
  std::optional<StrictObject> root(std::in_place, json);
  const StrictObject::Mistake mistake = root->mistake();
  MachineDescription machine;
  readMachine(*root, machine);
  root.reset();  // finds what nobody took
  if (mistake->has_value()) return tl::unexpected(**mistake);
  return machine;
}

tl::expected<MachineDescription, std::string> readMachineFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return tl::unexpected(path.string() + ": cannot be read");
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  auto machine = parseMachine(text);
  if (!machine) return tl::unexpected(path.string() + ": " + machine.error());
  return machine;
}

}  // namespace quillmeter
