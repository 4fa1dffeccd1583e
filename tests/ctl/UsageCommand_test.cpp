#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ctl/ToolRun.h"

namespace quillmeter::test {
namespace {

using testing::HasSubstr;
using testing::Not;

struct UsageCase {
  const char* name;  // of the golden file
  const char* home;
  const char* zone;
  const char* locale;
  const char* now;
  std::vector<std::string> more;
};

// Runs `usage` over a fixture home. Golden files hold what was counted by hand from the logs.
class UsageGolden : public testing::TestWithParam<UsageCase> {};

std::vector<std::string> folderArguments(const std::filesystem::path& home) {
  std::vector<std::string> arguments;
  for (const char* provider : {"codex", "claude"}) {
    if (!std::filesystem::exists(home / ("." + std::string(provider)))) continue;
    arguments.insert(arguments.end(),
                     {"--folder", std::string(provider) + "=" + (home / ("." + std::string(provider))).string()});
  }
  return arguments;
}

std::string goldenName(const testing::TestParamInfo<UsageCase>& golden) {
  std::string name = golden.param.name;
  std::erase_if(name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; });
  return name;
}

TEST_P(UsageGolden, isAsCounted) {
  ToolRun tool;
  const auto home = tool.scratch().path() / "agents";
  copyHome(GetParam().home, home);
  tool.environment["TZ"] = GetParam().zone;
  tool.environment["LC_ALL"] = GetParam().locale;
  std::vector<std::string> arguments = {"usage", "--now", GetParam().now};
  arguments.insert(arguments.end(), GetParam().more.begin(), GetParam().more.end());
  for (const std::string& argument : folderArguments(home)) arguments.push_back(argument);
  const ToolResult result = tool.run(arguments);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  expectGolden(GetParam().name, result.out, home);
}

INSTANTIATE_TEST_SUITE_P(
    Zones, UsageGolden,
    testing::Values(
        // The day without 02:00: 23 hours long, and the first day of the week in the United States.
        UsageCase{"new-york.json", "new-york", "America/New_York", "C.UTF-8", "2026-03-08T16:30:00Z", {"--json"}},
        UsageCase{"new-york-sunday-first.json",
                  "new-york",
                  "America/New_York",
                  "en_US.UTF-8",
                  "2026-03-08T16:30:00Z",
                  {"--json"}},
        // The same instant is another day, week and hour in the east.
        UsageCase{"new-york-seen-from-shanghai.json",
                  "new-york",
                  "Asia/Shanghai",
                  "C.UTF-8",
                  "2026-03-08T16:30:00Z",
                  {"--json"}},
        // The first day of a month in the middle of a week.
        UsageCase{"shanghai.json", "shanghai", "Asia/Shanghai", "C.UTF-8", "2026-03-01T02:00:00Z", {"--json"}},
        // The last instant of a day and of a month, and the first one after it.
        UsageCase{"kolkata-before-midnight.json",
                  "shanghai",
                  "Asia/Kolkata",
                  "C.UTF-8",
                  "2026-02-28T18:29:59.999999Z",
                  {"--json"}},
        UsageCase{"kolkata-midnight.json", "shanghai", "Asia/Kolkata", "C.UTF-8", "2026-02-28T18:30:00Z", {"--json"}},
        // The day that has half an hour twice.
        UsageCase{"lord-howe.json", "lord-howe", "Australia/Lord_Howe", "C.UTF-8", "2026-04-05T13:29:59Z", {"--json"}}),
    goldenName);

INSTANTIATE_TEST_SUITE_P(
    Texts, UsageGolden,
    testing::Values(
        UsageCase{"shanghai-today.zh.txt", "shanghai", "Asia/Shanghai", "zh_CN.UTF-8", "2026-03-01T02:00:00Z", {}},
        UsageCase{"shanghai-today.en.txt",
                  "shanghai",
                  "Asia/Shanghai",
                  "zh_CN.UTF-8",
                  "2026-03-01T02:00:00Z",
                  {"--language", "en"}},
        UsageCase{"new-york-week.en.txt",
                  "new-york",
                  "America/New_York",
                  "en_US.UTF-8",
                  "2026-03-10T16:00:00Z",
                  {"--range", "week", "--language=en"}},
        UsageCase{"lord-howe-month.zh.txt",
                  "lord-howe",
                  "Australia/Lord_Howe",
                  "C.UTF-8",
                  "2026-04-05T03:00:00Z",
                  {"--range", "month"}},
        UsageCase{"lord-howe-today.zh.txt", "lord-howe", "Australia/Lord_Howe", "C.UTF-8", "2026-04-05T03:00:00Z", {}}),
    goldenName);

TEST(UsageCommand, aFolderThatIsRefusedIsASourceWithoutLocation) {
  ToolRun tool;
  std::filesystem::create_directories(tool.scratch().path() / "elsewhere");
  const ToolResult result = tool.run({"usage", "--json", "--folder", "claude=elsewhere"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.err, HasSubstr("请选择 ~/.claude。"));
  EXPECT_THAT(result.out, HasSubstr(R"("missingAuthorization")"));
  EXPECT_THAT(result.out, HasSubstr(R"("Claude Code")"));
  EXPECT_THAT(result.out, HasSubstr(R"("id": "claude")"));
  EXPECT_THAT(result.out, Not(HasSubstr(R"("id": "codex")")));
}

TEST(UsageCommand, foldersAreTakenRelativeToWhereTheUserStandsAndInCatalogueOrder) {
  ToolRun tool;
  copyHome("shanghai", tool.scratch().path() / "agents");
  tool.workingDirectory = tool.scratch().path() / "agents";
  const ToolResult result = tool.run({"usage", "--json", "--now", "2026-03-01T02:00:00Z", "--folder", "claude=.claude/",
                                      "--folder=codex=./x/../.codex"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_LT(result.out.find(R"("id": "codex")"), result.out.find(R"("id": "claude")"));
  EXPECT_THAT(result.out, Not(HasSubstr("scanStatus")));
}

TEST(UsageCommand, namesTheLogsThatCannotBeCountedWhenAsked) {
  ToolRun tool;
  copyHome("unsummable", tool.scratch().path() / "agents");
  std::vector<std::string> arguments = {"usage", "--now", "2026-03-08T12:00:00Z", "--folder",
                                        "claude=" + (tool.scratch().path() / "agents/.claude").string()};
  const ToolResult quiet = tool.run(arguments);
  EXPECT_EQ(quiet.status, 0);
  EXPECT_EQ(quiet.err, "");
  EXPECT_THAT(quiet.out, HasSubstr("Claude Code 的部分日志读取失败，统计可能不完整。"));
  arguments.push_back("--verbose");
  const ToolResult verbose = tool.run(arguments);
  EXPECT_EQ(verbose.status, 0);
  EXPECT_EQ(verbose.out, quiet.out);
  EXPECT_THAT(verbose.err, HasSubstr("too-much.jsonl"));
  EXPECT_THAT(verbose.err, Not(HasSubstr("fine.jsonl")));
}

TEST(UsageCommand, namesFoldersThatCannotBeListedAndWhereAReaderOnlyCounts) {
  ToolRun tool;
  const auto agents = tool.scratch().path() / "agents";
  std::filesystem::path tooDeep = agents / ".codex/sessions";
  for (int i = 0; i < 65; ++i) tooDeep /= "d";
  std::filesystem::create_directories(tooDeep);
  tool.scratch().write("agents/opencode/opencode.db", "no database, though long enough to be looked at");
  const ToolResult result = tool.run({"usage", "--verbose", "--language", "en", "--folder", "codex=agents/.codex",
                                      "--folder", "opencode=agents/opencode"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.err, HasSubstr("Codex: cannot read " + tooDeep.string() + " ("));
  EXPECT_THAT(result.err, HasSubstr("OpenCode: unreadable sources below " + (agents / "opencode").string() + ": 1\n"));
}

TEST(UsageCommand, countsGrantedFoldersOfEnabledAgents) {
  ToolRun tool;
  copyHome("shanghai", tool.scratch().path() / "agents");
  const std::vector<std::string> usage = {"usage", "--json", "--now", "2026-03-01T02:00:00Z"};
  ASSERT_EQ(tool.run({"connect", "codex", "agents/.codex"}).status, 0);
  ASSERT_EQ(tool.run({"connect", "claude", "agents/.claude"}).status, 0);
  const std::string both = tool.run(usage).out;
  EXPECT_THAT(both, HasSubstr(R"("totalTokens": 1251499)"));  // of Claude's newest session
  EXPECT_THAT(both, HasSubstr(R"("totalTokens": 47100)"));    // of Codex

  ASSERT_EQ(tool.run({"disable", "claude"}).status, 0);
  EXPECT_THAT(tool.run(usage).out, Not(HasSubstr(R"("id": "claude")")));

  ASSERT_EQ(tool.run({"settings", "set", "settings.agentTokens.enabled", "false"}).status, 0);
  const ToolResult off = tool.run(usage);
  EXPECT_THAT(off.out, HasSubstr("monitoringDisabled"));
  EXPECT_THAT(off.out, HasSubstr(R"("lastUpdated": "2026-03-01T02:00:00Z")"));
  EXPECT_THAT(tool.run({"usage"}).out, HasSubstr("Agent Token 监控已关闭"));
  // Folders on the command line are scanned all the same.
  EXPECT_THAT(tool.run({"usage", "--json", "--now", "2026-03-01T02:00:00Z", "--folder", "codex=agents/.codex"}).out,
              HasSubstr(R"("totalTokens": 47100)"));
}

TEST(UsageCommand, saysThatQwenGivesNoFiguresWhereItsLogsWereRead) {
  ToolRun tool;
  const std::string log = "agents/.qwenworkcn/logs/sessions/s1/segments/1.jsonl";
  const std::vector<std::string> usage = {"usage", "--now", "2026-03-01T02:00:00Z", "--folder", "qwenOffice=agents/.qwenworkcn"};
  const std::string note = "已读取日志 · 千问暂未提供 Token 数字";
  const std::string begin = R"({"type":"model.response.completed","ts":"2026-03-01T01:00:00Z","turn_id":"t","data":{)";
  tool.scratch().write(log, begin + "}}\n");
  EXPECT_THAT(tool.run(usage).out, HasSubstr("千问办公"));
  EXPECT_THAT(tool.run(usage).out, HasSubstr(note));
  tool.scratch().write(log, begin + R"("input_tokens":3,"output_tokens":4}})" + "\n");
  EXPECT_THAT(tool.run(usage).out, Not(HasSubstr(note)));
}

TEST(UsageCommand, withoutGrantsItGivesTheCommandsThatConnect) {
  ToolRun tool;
  tool.environment["QUILLMETER_COMMAND"] = "./run.sh";
  const auto program = tool.scratch().write("bin/codex", "#!/bin/sh\n");
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  const ToolResult result = tool.run({"usage"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, HasSubstr("日志文件夹"));
  EXPECT_THAT(result.out, HasSubstr("./run.sh connect codex\n"));
  EXPECT_THAT(result.out, Not(HasSubstr("\x1b")));
}

}  // namespace
}  // namespace quillmeter::test
