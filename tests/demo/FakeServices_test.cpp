#include "demo/FakeServices.h"

#include <gtest/gtest.h>

#include "base/L10n.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {
namespace {

TEST(FakeServices, runUpToTheDescribedMoment) {
  FakeServices services;
  EXPECT_EQ(services.store.system().cpuUsage, 0);
  services.start();
  EXPECT_EQ(services.clock.now(), services.description.now);
  EXPECT_DOUBLE_EQ(services.store.system().cpuUsage, 0.23);
  EXPECT_NEAR(services.store.system().memoryUsage, 0.58, 0.001);
  EXPECT_NEAR(services.store.system().downloadBytesPerSecond, 1'258'291, 1);
  EXPECT_EQ(services.store.system().networkIP, "192.168.1.23");
  EXPECT_EQ(services.quickStatus.snapshot().connection, QuickConnection::wifi);
  EXPECT_EQ(services.quickStatus.snapshot().output->name, "Built-in Speakers");
}

TEST(FakeServices, showWhatTheDescriptionSaysFromNowOn) {
  FakeServices services;
  services.start();
  services.description.processorLoad = {0.97};
  services.description.network.sentPerSecond = {0};
  services.description.battery->percent = 7;
  services.advance(2);
  EXPECT_DOUBLE_EQ(services.store.system().cpuUsage, 0.97);
  EXPECT_EQ(services.store.system().uploadBytesPerSecond, 0);
  EXPECT_DOUBLE_EQ(services.store.system().batteryLevel.value_or(0), 0.07);
}

TEST(FakeServices, scanTheAgentsThatAreDescribed) {
  MachineDescription machine;
  machine.agents[AgentLogProvider::pi].isInstalled = true;
  FakeServices services(machine);
  const AgentTokenMetrics use{.totalTokens = 1'500, .inputTokens = 900, .outputTokens = 200, .cachedTokens = 400};
  services.addUsage(AgentLogProvider::codex, "a", use, services.today(9, 0));
  services.addUsage(AgentLogProvider::codex, "a", use, services.today(14, 25));
  services.addUsage(AgentLogProvider::claude, "b", use, services.today(10, 30));
  services.addUsage(AgentLogProvider::openclaw, "c", use, services.today(11, 0));
  services.description.limits = DescribedLimits{.observedAt = services.today(14, 24),
                                                .primaryUsed = 0.42,
                                                .primaryResetAt = services.today(17, 0),
                                                .weeklyUsed = 0.81,
                                                .weeklyResetAt = services.today(23, 0)};
  services.start();
  services.scanAgents();
  const AgentUsageSnapshot& agents = services.store.agents();
  EXPECT_EQ(agents.todayMetrics.totalTokens, 6'000);
  EXPECT_EQ(agents.todayMetrics.cachedTokens, 1'600);
  ASSERT_EQ(agents.providers.size(), 3U) << "what is not connected is not scanned";
  EXPECT_EQ(agents.providers[0].todayMetrics.totalTokens, 3'000);
  EXPECT_EQ(agents.providers[0].todayMetrics.inputTokens, 1'800);
  EXPECT_EQ(agents.providers[0].todayMetrics.sessionCount, 1);
  EXPECT_DOUBLE_EQ(agents.primaryLimitUsed.value_or(0), 0.42);
  EXPECT_EQ(agents.weeklyResetAt, services.today(23, 0));
  EXPECT_EQ(agents.activeSessions(services.clock.now()).size(), 1U);
  EXPECT_EQ(services.store.detectedAgentProviders().size(), 4U);
}

TEST(FakeServices, letSettingsTakeEffect) {
  FakeServices services;
  services.start();
  services.set(SettingsKeys::refreshInterval.key, 10.0);
  services.useLanguage("en");
  EXPECT_EQ(QM_TR("今天"), "Today");
  services.description.processorLoad = {0.9};
  services.advance(9);
  EXPECT_DOUBLE_EQ(services.store.system().cpuUsage, 0.23);
  services.advance(1);
  EXPECT_GT(services.store.system().cpuUsage, 0.8);
}

}  // namespace
}  // namespace quillmeter
