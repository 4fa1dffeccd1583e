#include "platform/linux/LinuxPowerSources.h"

#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/fake/ManualClock.h"
#include "platform/fake/PollWatcher.h"
#include "platform/linux/WidgetReloadSignal.h"
#include "support/PrivateBus.h"

namespace quillmeter {
namespace {

constexpr const char* service = "org.freedesktop.UPower";
constexpr const char* manager = "/org/freedesktop/UPower";
constexpr const char* mock = "org.freedesktop.DBus.Mock";
constexpr const char* device = "org.freedesktop.UPower.Device";

// A connection of the test itself, on which it may wait.
class TestConnection {
 public:
  explicit TestConnection(const std::string& address) {
    sd_bus_new(&bus_);
    sd_bus_set_address(bus_, address.c_str());
    sd_bus_set_bus_client(bus_, 1);
    if (sd_bus_start(bus_) < 0) throw std::runtime_error("no private bus");
  }
  TestConnection(const TestConnection&) = delete;
  TestConnection& operator=(const TestConnection&) = delete;
  ~TestConnection() { sd_bus_flush_close_unref(bus_); }
  sd_bus* operator*() const { return bus_; }

  bool hasOwner(const char* name) const {
    sd_bus_message* reply = nullptr;
    int owned = 0;
    if (sd_bus_call_method(bus_, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                           "NameHasOwner", nullptr, &reply, "s", name) >= 0) {
      sd_bus_message_read(reply, "b", &owned);
    }
    sd_bus_message_unref(reply);
    return owned != 0;
  }
  template <typename... Arguments>
  void callMock(const char* path, const char* member, const char* types, Arguments... arguments) const {
    sd_bus_error error = SD_BUS_ERROR_NULL;
    const int result = sd_bus_call_method(bus_, service, path, mock, member, &error, nullptr, types, arguments...);
    EXPECT_GE(result, 0) << member << ": " << (error.message != nullptr ? error.message : "no answer");
    sd_bus_error_free(&error);
  }

 private:
  sd_bus* bus_ = nullptr;
};

struct LinuxPowerSourcesTest : testing::Test {
  // The mock of UPower (python3-dbusmock), by Debian's own Python.
  std::unique_ptr<test::ChildProcess> startUPower(bool withTemplate = true) {
    std::vector<std::string> arguments = {"/usr/bin/python3", "-m", "dbusmock", "--system"};
    if (withTemplate) {
      arguments.insert(arguments.end(), {"--template", "upower", "-p", R"({"OnBattery": true})"});
    } else {
      arguments.insert(arguments.end(), {service, manager, service});
    }
    auto process = std::make_unique<test::ChildProcess>(std::move(arguments));
    EXPECT_TRUE(wait([this] { return control.hasOwner(service); })) << "python3-dbusmock does not start";
    return process;
  }
  // Turns the event loop until the condition holds; false after ten seconds.
  bool wait(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
      if (std::chrono::steady_clock::now() > end) return false;
      watcher.pollOnce(20);
    }
    return true;
  }
  // The name of the first battery; empty without one.
  std::string first() { return text(0, "Name"); }
  std::string text(std::size_t index, const char* key) {
    const auto* value = find(index, key);
    return value != nullptr && std::holds_alternative<std::string>(*value) ? std::get<std::string>(*value) : "";
  }
  std::optional<std::int64_t> number(std::size_t index, const char* key) {
    const auto* value = find(index, key);
    if (value == nullptr || !std::holds_alternative<std::int64_t>(*value)) return std::nullopt;
    return std::get<std::int64_t>(*value);
  }
  const PowerSourceValue* find(std::size_t index, const char* key) {
    const auto list = sources.list();
    if (!list || index >= list->size()) return nullptr;
    const auto found = (*list)[index].find(key);
    return found == (*list)[index].end() ? nullptr : &found->second;
  }

  test::PrivateBus bus;
  TestConnection control{bus.address()};
  PollWatcher watcher;
  ManualMonotonicClock clock;
  // The kernel's own figures are those of a captured laptop: "BAT0" with a full charge of 45000000.
  LinuxPowerSources sources{std::filesystem::path(QUILLMETER_TEST_DATA) / "machines/laptop", &watcher, clock};
};

TEST_F(LinuxPowerSourcesTest, followsUPowerAndFallsBackToTheKernelWhileItIsAway) {
  EXPECT_EQ(first(), "BAT0");
  EXPECT_EQ(number(0, "Max Capacity"), 45'000'000);

  auto upower = startUPower();
  control.callMock(manager, "AddDischargingBattery", "ssdx", "battery_BAT9", "Second", 10.0, std::int64_t{60});
  control.callMock(manager, "AddDischargingBattery", "ssdx", "battery_BAT1", "First", 60.5, std::int64_t{7'500});
  control.callMock(manager, "AddAC", "ss", "line_power_AC", "Charger");
  ASSERT_TRUE(wait([this] { return first() == "BAT1" && number(1, "Max Capacity") == 10'000; }));
  EXPECT_EQ(sources.list()->size(), 2u);
  EXPECT_EQ(number(0, "Current Capacity"), 6'050);
  EXPECT_EQ(number(0, "Time to Empty"), 125);
  EXPECT_EQ(number(0, "Time to Full Charge"), std::nullopt);
  EXPECT_EQ(text(0, "Power Source State"), "Battery Power");

  const char* path = "/org/freedesktop/UPower/devices/battery_BAT1";
  control.callMock(path, "AddProperty", "ssv", device, "TimeToFull", "x", std::int64_t{0});  // the mock lacks it
  control.callMock(path, "UpdateProperties", "sa{sv}", device, 3, "Percentage", "d", 61.0, "State", "u", 1u,
                   "TimeToFull", "x", std::int64_t{5'700});
  control.callMock(manager, "UpdateProperties", "sa{sv}", service, 1, "OnBattery", "b", 0);
  ASSERT_TRUE(wait([this] { return text(0, "Power Source State") == "AC Power"; }));
  EXPECT_EQ(number(0, "Current Capacity"), 6'100);
  EXPECT_EQ(number(0, "Time to Full Charge"), 95);
  EXPECT_EQ(*find(0, "Is Charging"), PowerSourceValue(true));

  // A mouse, and a battery that was taken out.
  control.callMock(path, "UpdateProperties", "sa{sv}", device, 1, "PowerSupply", "b", 0);
  ASSERT_TRUE(wait([this] { return first() == "BAT9"; }));
  control.callMock(manager, "EmitSignal", "sssav", service, "DeviceRemoved", "o", 1, "o",
                   "/org/freedesktop/UPower/devices/battery_BAT9");
  ASSERT_TRUE(wait([this] { return sources.list()->empty(); }));

  upower.reset();
  ASSERT_TRUE(wait([this] { return number(0, "Max Capacity") == 45'000'000; }));
  upower = startUPower();
  ASSERT_TRUE(wait([this] { return sources.list()->empty(); }));  // it knows no battery yet
  control.callMock(manager, "AddDischargingBattery", "ssdx", "battery_BAT1", "First", 33.0, std::int64_t{60});
  ASSERT_TRUE(wait([this] { return number(0, "Current Capacity") == 3'300; }));
}

TEST_F(LinuxPowerSourcesTest, propertiesOfWrongTypesAreUnknown) {
  auto upower = startUPower();
  control.callMock(manager, "AddObject", "ssa{sv}a(ssss)", "/org/freedesktop/UPower/devices/battery_BAT3", device, 7,
                   "Type", "u", 2u, "PowerSupply", "b", 1, "Percentage", "s", "full", "State", "d", 1.0, "TimeToEmpty",
                   "as", 1, "x", "TimeToFull", "t", UINT64_MAX, "NativePath", "s", "/sys/devices/BAT3", 0);
  ASSERT_TRUE(wait([this] { return first() == "BAT3"; }));
  EXPECT_EQ((*sources.list())[0], (PowerSourceDescription{{"Name", "BAT3"}, {"Power Source State", "Battery Power"}}));
}

TEST_F(LinuxPowerSourcesTest, aServiceThatListsNoDevicesLeavesItToTheKernel) {
  auto upower = startUPower(false);
  control.callMock(manager, "AddMethod", "sssss", service, "EnumerateDevices", "", "s", "ret = 'nonsense'");
  EXPECT_EQ(first(), "BAT0");
  for (int i = 0; i < 20; ++i) watcher.pollOnce(10);
  EXPECT_EQ(number(0, "Max Capacity"), 45'000'000);
}

TEST_F(LinuxPowerSourcesTest, aServiceThatNeverAnswersLeavesItToTheKernel) {
  auto silent = std::make_unique<TestConnection>(bus.address());
  ASSERT_GE(sd_bus_request_name(**silent, service, 0), 0);  // and reads nothing from now on
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(number(0, "Max Capacity"), 45'000'000);
    watcher.pollOnce(10);
  }
  silent.reset();
  auto upower = startUPower();
  control.callMock(manager, "AddDischargingBattery", "ssdx", "battery_BAT1", "First", 33.0, std::int64_t{60});
  ASSERT_TRUE(wait([this] { return number(0, "Current Capacity") == 3'300; }));
}

TEST_F(LinuxPowerSourcesTest, aBusThatGoesAwayLeavesItToTheKernelAndIsTriedAgainAfterAMinute) {
  auto upower = startUPower();
  EXPECT_TRUE(wait([this] { return sources.list()->empty(); }));
  bus.end();
  ASSERT_TRUE(wait([this] { return first() == "BAT0"; }));
  EXPECT_EQ(watcher.watches(), 0u);

  const test::PrivateBus another;
  EXPECT_EQ(first(), "BAT0");
  EXPECT_EQ(watcher.watches(), 0u);
  clock.advance(60);
  EXPECT_EQ(first(), "BAT0");
  EXPECT_GT(watcher.watches(), 0u);
}

TEST_F(LinuxPowerSourcesTest, withoutAnEventLoopEachQuestionLooksAtWhatArrived) {
  auto upower = startUPower();
  LinuxPowerSources unwatched("/there/is/nothing", nullptr, clock);
  control.callMock(manager, "AddDischargingBattery", "ssdx", "battery_BAT1", "First", 33.0, std::int64_t{60});
  ASSERT_TRUE(wait([&unwatched] { return unwatched.list()->size() == 1; }));
}

TEST_F(LinuxPowerSourcesTest, withoutABusTheKernelTells) {
  ::setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/there/is/no/bus", 1);
  EXPECT_EQ(first(), "BAT0");
  WidgetReloadSignal signal(&watcher);
  ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/there/is/no/bus", 1);
  signal.reloadAllTimelines();  // silent
}

TEST_F(LinuxPowerSourcesTest, widgetsHearOfEachReload) {
  int heard = 0;
  sd_bus_match_signal(
      *control, nullptr, nullptr, "/com/kesto/Quillmeter", "com.kesto.Quillmeter", "WidgetsChanged",
      [](sd_bus_message*, void* count, sd_bus_error*) { return ++*static_cast<int*>(count), 0; }, &heard);
  WidgetReloadSignal signal(&watcher);
  signal.reloadAllTimelines();
  signal.reloadAllTimelines();
  EXPECT_TRUE(wait([this, &heard] {
    while (sd_bus_process(*control, nullptr) > 0) {
    }
    return heard == 2;
  }));
}

}  // namespace
}  // namespace quillmeter
