#include "demo/MachineFile.h"

#include <gtest/gtest.h>

#include "base/Iso8601.h"
#include "demo/FakeServices.h"

namespace quillmeter {
namespace {

TEST(MachineFile, readsTheMachineOfTheScreenshots) {
  const auto machine = readMachineFile(QUILLMETER_SOURCES "/tools/screenshots/machine.json");
  ASSERT_TRUE(machine) << machine.error();
  EXPECT_EQ(machine->now, parseIso8601("2026-03-18T06:26:00Z"));
  FakeServices services(*machine);
  services.start();
  EXPECT_EQ(services.store.agents().providers.size(), 4U);
  EXPECT_FALSE(services.store.agents().scanStatus);
  EXPECT_EQ(services.store.agents().activeSessions(services.clock.now()).size(), 2U);
  EXPECT_GT(services.screenTime.spans().size(), 100U);
  EXPECT_TRUE(services.screenTime.enabled());
  EXPECT_FALSE(services.screenTime.storageError());
}

TEST(MachineFile, leavesOutWhatItDoesNotName) {
  const auto machine = parseMachine(R"({"battery": null, "processor": {"count": 4}, "wifi": {"signal": null}})");
  ASSERT_TRUE(machine) << machine.error();
  EXPECT_FALSE(machine->battery);
  EXPECT_EQ(machine->processors, 4);
  EXPECT_EQ(machine->processorLoad, MachineDescription{}.processorLoad);
  EXPECT_FALSE(machine->wifi.rssi);
  EXPECT_TRUE(machine->wifi.powered);
}

TEST(MachineFile, namesTheFirstMistakeAndItsPlace) {
  const std::pair<const char*, const char*> mistakes[] = {
      {"[", "not valid JSON"},
      {"[]", "not a JSON object"},
      {R"({"procesor": {}})", "procesor: unknown key"},
      {R"({"battery": {"percent": 7.5}})", "battery.percent: not a whole number"},
      {R"({"battery": 7})", "battery: not an object"},
      {R"({"clock": {"now": "yesterday"}})", "clock.now: not a date such as \"2026-03-18T14:26:00+08:00\""},
      {R"({"clock": {"zone": "Mars/Olympus"}})", "clock.zone: no time zone"},
      {R"({"processor": {"load": [0.1, 2]}})", "processor.load: not within 0 ... 1"},
      {R"({"settings": {"settings.appThem": "dark"}})", "settings.settings.appThem: no setting"},
      {R"({"agents": {"codex": {"sesions": []}}})", "agents.codex.sesions: unknown key"},
      {R"({"agents": {"codex": {"sessions": [{"id": "a", "events": [{"input": 1}]}]}}})",
       "agents.codex.sessions[0].events[0].at: missing"},
      {R"({"agents": {"claude": {"sessions": [{"id": "../a"}]}}})", "agents.claude.sessions[0].id: no plain name"},
      {R"({"agents": {"nobody": {}}})", "agents.nobody: no agent"},
      {R"({"network": {"path": "air"}})", "network.path: neither wifi, ethernet, other nor offline"},
      {R"({"screenTime": {"spans": [{"application": "x", "start": "2026-03-18T14:26:00Z", "minutes": 1}]}})",
       "screenTime.spans[0].application: not among the applications"},
  };
  for (const auto& [json, expected] : mistakes) {
    const auto machine = parseMachine(json);
    ASSERT_FALSE(machine) << json;
    EXPECT_EQ(machine.error(), expected);
  }
  EXPECT_EQ(readMachineFile("/nonexistent").error(), "/nonexistent: cannot be read");
}

}  // namespace
}  // namespace quillmeter
