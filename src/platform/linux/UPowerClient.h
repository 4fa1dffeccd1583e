#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/PowerSources.h"
#include "platform/linux/BusConnection.h"
#include "platform/linux/UPowerDevice.h"

struct sd_bus_message;

namespace quillmeter {

// The batteries as UPower tells them, kept up to date by its signals. Asked once when it is there, never started for
// it: without UPower the kernel tells the same. Everything is dropped when it leaves the bus. Lives on an open
// connection; main thread.
class UPowerClient {
 public:
  explicit UPowerClient(BusConnection& connection);

  // Whether UPower is there and has answered everything that was asked first. One that never answers is never ready.
  bool isReady() const;
  // The batteries of the machine by name; meaningful when ready.
  const std::vector<PowerSourceDescription>& list();

 private:
  struct Device {
    UPowerClient* client;
    UPowerDevice facts;
    BusSlot pending;     // its properties are asked for
    bool known = false;  // they have come, or were refused
  };
  struct Bus;  // the calls of the D-Bus library

  void askEverything();
  void askManager();
  void askDevice(const std::string& path);
  void forgetEverything();
  void takeOwnerChange(sd_bus_message* message);
  void takeSignal(sd_bus_message* message);
  void takeChangedProperties(const std::string& path, sd_bus_message* message);
  void takeManager(sd_bus_message* message);
  void takeDeviceList(sd_bus_message* message);
  void takeDevice(Device& device, sd_bus_message* message);
  void applyManager(const BusProperties& properties);

  BusConnection& connection_;
  BusSlot ownerMatch_, signalMatch_, pendingList_, pendingManager_;
  bool hasList_ = false;
  bool hasManager_ = false;
  std::optional<bool> onBattery_;
  std::map<std::string, Device, std::less<>> devices_;  // by object path
  std::vector<PowerSourceDescription> descriptions_;
  bool isStale_ = true;  // descriptions_ are to be made anew
};

}  // namespace quillmeter
