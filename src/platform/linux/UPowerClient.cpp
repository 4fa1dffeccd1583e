#include "platform/linux/UPowerClient.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace quillmeter {
namespace {

constexpr const char* serviceName = "org.freedesktop.UPower";
constexpr const char* managerPath = "/org/freedesktop/UPower";
constexpr const char* managerInterface = "org.freedesktop.UPower";
constexpr const char* deviceInterface = "org.freedesktop.UPower.Device";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr const char* signalRule =
    "type='signal',sender='org.freedesktop.UPower',path_namespace='/org/freedesktop/UPower'";
constexpr const char* ownerRule =
    "type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',interface='org.freedesktop.DBus',"
    "member='NameOwnerChanged',arg0='org.freedesktop.UPower'";
constexpr std::size_t mostDevices = 64;
constexpr std::uint64_t noDeadline = UINT64_MAX;  // an answer that never comes costs no timer

// The next text ('s') or object path ('o'); absent when something else comes.
std::optional<std::string> readText(sd_bus_message* message, char type) {
  const char* text = nullptr;
  if (sd_bus_message_read_basic(message, type, &text) <= 0) return std::nullopt;
  return std::string(text);
}

// The name that UPower puts into a battery's object path: ".../battery_BAT0".
std::string nameIn(std::string_view path) {
  std::string_view name = path.substr(path.rfind('/') + 1);
  constexpr std::string_view prefix = "battery_";
  if (name.starts_with(prefix)) name.remove_prefix(prefix.size());
  return std::string(name);
}

}  // namespace

struct UPowerClient::Bus {
  template <void (UPowerClient::*handle)(sd_bus_message*)>
  static int dispatch(sd_bus_message* message, void* self, sd_bus_error*) {
    (static_cast<UPowerClient*>(self)->*handle)(message);
    return 0;
  }

  static int dispatchDevice(sd_bus_message* message, void* device, sd_bus_error*) {
    auto& asked = *static_cast<Device*>(device);
    asked.client->takeDevice(asked, message);
    return 0;
  }

  // Calls a method without starting the service; `argument` may be null. The answer comes while the slot lives.
  static BusSlot call(sd_bus* bus, const char* path, const char* interface, const char* member, const char* argument,
                      sd_bus_message_handler_t handler, void* target) {
    sd_bus_message* message = nullptr;
    sd_bus_slot* slot = nullptr;
    if (sd_bus_message_new_method_call(bus, &message, serviceName, path, interface, member) < 0) return {};
    sd_bus_message_set_auto_start(message, 0);
    if (argument != nullptr) sd_bus_message_append_basic(message, 's', argument);
    sd_bus_call_async(bus, &slot, message, handler, target, noDeadline);
    sd_bus_message_unref(message);
    return BusSlot(slot);
  }

  template <void (UPowerClient::*handle)(sd_bus_message*)>
  static BusSlot match(UPowerClient& client, const char* rule) {
    sd_bus_slot* slot = nullptr;
    sd_bus_add_match_async(client.connection_.handle(), &slot, rule, &dispatch<handle>, nullptr, &client);
    return BusSlot(slot);
  }
};

UPowerClient::UPowerClient(BusConnection& connection) : connection_(connection) {
  // Watched before it is asked, so that nothing is missed in between.
  ownerMatch_ = Bus::match<&UPowerClient::takeOwnerChange>(*this, ownerRule);
  signalMatch_ = Bus::match<&UPowerClient::takeSignal>(*this, signalRule);
  askEverything();
}

bool UPowerClient::isReady() const {
  return hasList_ && hasManager_ &&
         std::all_of(devices_.begin(), devices_.end(), [](const auto& device) { return device.second.known; });
}

const std::vector<PowerSourceDescription>& UPowerClient::list() {
  if (!std::exchange(isStale_, false)) return descriptions_;
  std::vector<const UPowerDevice*> batteries;
  for (const auto& [path, device] : devices_) {
    if (device.facts.isBatteryOfTheMachine()) batteries.push_back(&device.facts);
  }
  std::stable_sort(batteries.begin(), batteries.end(), [](auto* a, auto* b) { return a->name() < b->name(); });
  descriptions_.clear();
  for (const auto* battery : batteries) descriptions_.push_back(battery->describe(onBattery_));
  return descriptions_;
}

void UPowerClient::forgetEverything() {
  pendingList_.reset();
  pendingManager_.reset();
  devices_.clear();
  onBattery_.reset();
  hasList_ = hasManager_ = false;
  isStale_ = true;
}

void UPowerClient::askEverything() {
  forgetEverything();
  askManager();
  pendingList_ = Bus::call(connection_.handle(), managerPath, managerInterface, "EnumerateDevices", nullptr,
                           &Bus::dispatch<&UPowerClient::takeDeviceList>, this);
}

void UPowerClient::askManager() {
  pendingManager_ = Bus::call(connection_.handle(), managerPath, propertiesInterface, "GetAll", managerInterface,
                              &Bus::dispatch<&UPowerClient::takeManager>, this);
}

void UPowerClient::askDevice(const std::string& path) {
  if (devices_.size() >= mostDevices && !devices_.contains(path)) return;
  const auto [entry, isNew] = devices_.try_emplace(path, Device{this, {}, {}, false});
  Device& device = entry->second;
  if (isNew) device.facts.nativePath = nameIn(path);  // until it tells its own
  device.pending = Bus::call(connection_.handle(), path.c_str(), propertiesInterface, "GetAll", deviceInterface,
                             &Bus::dispatchDevice, &device);
}

void UPowerClient::takeOwnerChange(sd_bus_message* message) {
  const auto name = readText(message, 's');
  const auto oldOwner = readText(message, 's');
  const auto newOwner = readText(message, 's');
  if (name != serviceName || !oldOwner || !newOwner) return;
  if (newOwner->empty()) {
    forgetEverything();
  } else {
    askEverything();
  }
}

void UPowerClient::takeManager(sd_bus_message* message) {
  BusProperties properties;
  if (sd_bus_message_is_method_error(message, nullptr) == 0) readBusProperties(message, properties);
  hasManager_ = true;  // also when refused: then the batteries themselves tell
  applyManager(properties);
}

void UPowerClient::applyManager(const BusProperties& properties) {
  const auto found = properties.find("OnBattery");
  if (found == properties.end()) return;
  const auto* value = std::get_if<bool>(&found->second);
  onBattery_ = value != nullptr ? std::optional<bool>(*value) : std::nullopt;
  isStale_ = true;
}

void UPowerClient::takeDeviceList(sd_bus_message* message) {
  if (sd_bus_message_is_method_error(message, nullptr) > 0) return;
  if (sd_bus_message_enter_container(message, 'a', "o") <= 0) return;
  while (const auto path = readText(message, 'o')) askDevice(*path);
  hasList_ = true;
  isStale_ = true;
}

void UPowerClient::takeDevice(Device& device, sd_bus_message* message) {
  BusProperties properties;
  if (sd_bus_message_is_method_error(message, nullptr) == 0) readBusProperties(message, properties);
  device.facts.apply(properties);
  device.known = true;  // also when refused: it has just gone
  isStale_ = true;
}

void UPowerClient::takeSignal(sd_bus_message* message) {
  const char* path = sd_bus_message_get_path(message);
  if (sd_bus_message_is_signal(message, managerInterface, "DeviceAdded") > 0) {
    if (const auto added = readText(message, 'o')) askDevice(*added);
  } else if (sd_bus_message_is_signal(message, managerInterface, "DeviceRemoved") > 0) {
    if (const auto removed = readText(message, 'o')) devices_.erase(*removed);
    isStale_ = true;
  } else if (sd_bus_message_is_signal(message, propertiesInterface, "PropertiesChanged") > 0 && path != nullptr) {
    takeChangedProperties(path, message);
  }
}

void UPowerClient::takeChangedProperties(const std::string& path, sd_bus_message* message) {
  const auto interface = readText(message, 's');
  const auto device = devices_.find(path);
  BusProperties properties;
  if (!readBusProperties(message, properties)) return;
  // Changes announced without the new values have to be asked for.
  const bool isIncomplete =
      sd_bus_message_enter_container(message, 'a', "s") > 0 && sd_bus_message_at_end(message, 0) == 0;
  if (interface == managerInterface) {
    applyManager(properties);
    if (isIncomplete) askManager();
  } else if (interface == deviceInterface && device != devices_.end()) {
    device->second.facts.apply(properties);
    isStale_ = true;
    if (isIncomplete) askDevice(path);
  }
}

}  // namespace quillmeter
