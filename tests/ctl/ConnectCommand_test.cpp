#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "ctl/ToolRun.h"

namespace quillmeter::test {
namespace {

using testing::HasSubstr;
using testing::Not;

nlohmann::json agentNamed(const ToolRun& tool, const std::string& id) {
  const ToolResult result = tool.run({"agents", "--json"});
  EXPECT_EQ(result.status, 0);
  const auto agents = nlohmann::json::parse(result.out, nullptr, false);
  EXPECT_EQ(agents.size(), 8U);
  for (const auto& agent : agents) {
    if (agent.value("id", "") == id) return agent;
  }
  return {};
}

TEST(ConnectCommand, aGrantIsTheAbsolutePathStoredAsDataAndIsSeenByTheNextRun) {
  ToolRun tool;
  const auto folder = tool.scratch().path() / "agents/.codex";
  std::filesystem::create_directories(folder / "sessions");
  const ToolResult connected = tool.run({"connect", "codex", "agents/.codex/"});
  EXPECT_EQ(connected.status, 0);
  EXPECT_EQ(connected.err, "");
  EXPECT_THAT(connected.out, HasSubstr(folder.string()));
  EXPECT_THAT(connected.out, HasSubstr("quillmeterctl disconnect codex"));
  const auto stored = nlohmann::json::parse(readFile(tool.preferencesFile()), nullptr, false);
  EXPECT_TRUE(stored.at("settings.agentLogs.codex.bookmark.v2").at("data").is_string());
  EXPECT_EQ(stored.size(), 1U) << stored;

  auto agent = agentNamed(tool, "codex");
  EXPECT_EQ(agent.at("state"), "connected");
  EXPECT_EQ(agent.at("folder"), folder.string());
  EXPECT_EQ(agent.at("scanRoot"), (folder / "sessions").string());
  EXPECT_EQ(agent.at("detected"), true);

  // A refused folder leaves the grant as it was.
  EXPECT_EQ(tool.run({"connect", "codex", "agents"}).status, 2);
  EXPECT_EQ(agentNamed(tool, "codex").at("state"), "connected");

  EXPECT_EQ(tool.run({"disconnect", "codex"}).status, 0);
  EXPECT_THAT(readFile(tool.preferencesFile()), Not(HasSubstr("bookmark")));
  EXPECT_THAT(tool.run({"disconnect", "codex"}).out, HasSubstr("没有连接"));
}

TEST(ConnectCommand, aFolderThatDisappearedIsNamedOnceAndTheGrantForgotten) {
  ToolRun tool;
  const auto folder = tool.scratch().path() / "pi home";
  std::filesystem::create_directories(folder / "sessions");
  ASSERT_EQ(tool.run({"connect", "pi", folder.string()}).status, 0);
  std::filesystem::remove_all(folder);
  const ToolResult table = tool.run({"agents"});
  EXPECT_EQ(table.status, 0);
  EXPECT_THAT(table.out, HasSubstr("文件夹无法读取"));
  EXPECT_THAT(table.out, HasSubstr(folder.string()));
  EXPECT_THAT(table.out, HasSubstr("quillmeterctl connect pi"));
  EXPECT_THAT(readFile(tool.preferencesFile()), Not(HasSubstr("bookmark")));
  EXPECT_NE(agentNamed(tool, "pi").at("state"), "connected");
}

TEST(ConnectCommand, connectingTurnsASwitchOnThatWasNeverTouchedAndNoOther) {
  ToolRun tool;
  std::filesystem::create_directories(tool.scratch().path() / "pi/sessions");
  EXPECT_EQ(agentNamed(tool, "pi").at("enabled"), false);
  EXPECT_THAT(tool.run({"connect", "pi", "pi"}).out, HasSubstr("已开启 Pi 的统计"));
  EXPECT_EQ(agentNamed(tool, "pi").at("enabled"), true);
  EXPECT_EQ(agentNamed(tool, "hermes").at("enabled"), false);

  ASSERT_EQ(tool.run({"disable", "pi"}).status, 0);
  EXPECT_THAT(tool.run({"connect", "pi", "pi"}).out, HasSubstr("quillmeterctl enable pi"));
  EXPECT_EQ(agentNamed(tool, "pi").at("enabled"), false);
  EXPECT_THAT(tool.run({"enable", "pi"}).out, Not(HasSubstr("connect")));
  EXPECT_EQ(agentNamed(tool, "pi").at("enabled"), true);

  ASSERT_EQ(tool.run({"settings", "set", "settings.agentTokens.enabled", "off"}).status, 0);
  EXPECT_THAT(tool.run({"enable", "pi"}).out, HasSubstr("settings set settings.agentTokens.enabled true"));
}

TEST(AgentsCommand, saysWhatItFoundAndWhatItCouldNotReadOfEachConnectedAgent) {
  ToolRun tool;
  const auto& home = tool.scratch();
  std::filesystem::create_directories(home.path() / "pi/sessions");
  home.write("hermes/state.db", "this is no database");
  home.write("opencode/opencode.db", "this is no database");
  for (const char* id : {"pi", "opencode"}) ASSERT_EQ(tool.run({"connect", id, id}).status, 0);
  EXPECT_EQ(agentNamed(tool, "pi").at("logsFound"), false);
  EXPECT_EQ(agentNamed(tool, "pi").at("unreadableSourceCount"), 0);
  EXPECT_EQ(agentNamed(tool, "opencode").at("unreadableSourceCount"), 1);
  EXPECT_FALSE(agentNamed(tool, "hermes").contains("logsFound")) << "not connected, so not read";
  const ToolResult table = tool.run({"agents", "--language", "en"});
  EXPECT_THAT(table.out, HasSubstr("no logs this month · 1 unreadable"));
  EXPECT_THAT(table.out, HasSubstr("no logs this month"));
}

TEST(ConnectCommand, anInstalledAgentIsFoundWithItsExactCommand) {
  ToolRun tool;
  const auto program = tool.scratch().write("bin/claude", "#!/bin/sh\n");
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  EXPECT_EQ(agentNamed(tool, "claude").at("detected"), true);
  EXPECT_EQ(agentNamed(tool, "claude").at("state"), "found");
  EXPECT_THAT(tool.run({"agents"}).out, HasSubstr("quillmeterctl connect claude"));
}

}  // namespace
}  // namespace quillmeter::test
