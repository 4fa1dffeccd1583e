#include <fcntl.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "access/AgentAuthorizationCoordinator.h"
#include "base/Clock.h"
#include "base/FileDescriptor.h"
#include "ctl/CommandLine.h"
#include "ctl/ConnectCommand.h"
#include "ctl/TerminalFolderPicker.h"
#include "platform/fake/InMemoryPreferenceDomain.h"
#include "platform/linux/SystemFolderProbe.h"
#include "preferences/SettingsKeys.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// A home with Codex, Claude Code and Pi in it, and a console that writes into files.
class ConnectAllTest : public testing::Test {
 protected:
  ConnectAllTest() {
    SettingsKeys::registerDefaults(preferences);
    for (const char* folder :
         {".codex/sessions", ".claude/projects", ".pi/agent/sessions", "elsewhere/.claude/projects"}) {
      std::filesystem::create_directories(home.path() / folder);
    }
  }
  std::string printed() {
    console.flush();
    return readFile(out);
  }
  bool isConnected(AgentLogProvider provider) { return access.location(provider).has_value(); }

  // Goes through Codex, Claude Code and Pi on a terminal where the user types `typed`.
  bool connectByTyping(const std::string& typed) {
    const FileDescriptor input(::open(home.write("typed", typed).c_str(), O_RDONLY | O_CLOEXEC));
    ctl::TerminalFolderPicker picker(console, input.get(), home.path());
    AgentAuthorizationCoordinator coordinator(access, picker);
    bool all = false;
    coordinator.connectInSequence({AgentLogProvider::codex, AgentLogProvider::claude, AgentLogProvider::pi},
                                  [&all](bool connected) { all = connected; });
    feedback = coordinator.feedback()->message();
    return all;
  }

  const TemporaryDirectory home;
  const std::filesystem::path out = home.write("out", "");
  const std::filesystem::path err = home.write("err", "");
  const FileDescriptor outFile{::open(out.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC)};
  const FileDescriptor errFile{::open(err.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC)};
  ctl::Console console{outFile.get(), errFile.get()};
  InMemoryPreferenceDomain domain;
  PreferenceStore preferences{domain};
  const SystemFolderProbe probe;
  AgentLogAccessManager access{preferences, probe, AgentSearchPlaces::standard(home.path(), "")};
  const SystemClock clock;
  ctl::ToolContext context{console, preferences, access, clock, {}, "quillmeterctl"};
  std::string feedback;
};

TEST_F(ConnectAllTest, takesTheExpectedFoldersOfAllFoundAgentsWhereNobodyCanBeAsked) {
  ctl::CommandLine tool(console, "1");
  tool.add(std::make_unique<ctl::ConnectCommand>(context));
  EXPECT_EQ(tool.run({"connect", "--all"}), ctl::ExitCode::done) << readFile(err);
  EXPECT_THAT(printed(), AllOf(HasSubstr("已连接 Codex："), HasSubstr("已连接 Claude"), HasSubstr("已开启 Pi 的统计。"),
                               HasSubstr("已连好 3 个来源，正在找可统计的日志。"), Not(HasSubstr("Hermes"))));
  EXPECT_TRUE(isConnected(AgentLogProvider::pi));
  EXPECT_TRUE(*preferences.boolean(monitoringSettingsKey(AgentLogProvider::pi)));
  EXPECT_EQ(tool.run({"connect", "--all"}), ctl::ExitCode::done);
  EXPECT_THAT(printed(), HasSubstr("目录都已连好，正在找可统计的日志。"));
  EXPECT_EQ(tool.run({"connect", "codex", "--all"}), ctl::ExitCode::wrongUse);
}

TEST_F(ConnectAllTest, leavesOutWhatTheUserSwitchedOff) {
  ASSERT_TRUE(preferences.set(monitoringSettingsKey(AgentLogProvider::claude), false));
  ctl::CommandLine tool(console, "1");
  tool.add(std::make_unique<ctl::ConnectCommand>(context));
  EXPECT_EQ(tool.run({"connect", "--all"}), ctl::ExitCode::done);
  EXPECT_FALSE(isConnected(AgentLogProvider::claude));
  EXPECT_TRUE(isConnected(AgentLogProvider::codex));
}

TEST_F(ConnectAllTest, whereNoAgentIsFoundItSaysSo) {
  for (const char* folder : {".codex", ".claude", ".pi"}) std::filesystem::remove_all(home.path() / folder);
  ctl::CommandLine tool(console, "1");
  tool.add(std::make_unique<ctl::ConnectCommand>(context));
  EXPECT_EQ(tool.run({"connect", "--all"}), ctl::ExitCode::couldNot);
  EXPECT_THAT(readFile(err), HasSubstr("没有找到可以连接的 Agent。"));
}

TEST_F(ConnectAllTest, aTerminalAsksOneAfterAnotherAndEnterTakesTheOfferedFolder) {
  EXPECT_TRUE(connectByTyping("\n  ~/elsewhere/.claude \n" + (home.path() / ".pi/agent").string() + "\n"));
  EXPECT_EQ(feedback, "已连好 3 个来源，正在找可统计的日志。");
  EXPECT_THAT(printed(),
              AllOf(HasSubstr("连接 Codex（1/3）\n第 1/3 个：已为你定位到 ~/.codex。确认后会自动打开下一个目录。\n"),
                    HasSubstr("回车：" + (home.path() / ".codex").string()), HasSubstr("（3/3）")));
  EXPECT_EQ(access.location(AgentLogProvider::claude)->selectedURL, home.path() / "elsewhere/.claude");
}

TEST_F(ConnectAllTest, qOrTheEndOfTheInputCancelsAndAWrongFolderEndsIt) {
  EXPECT_FALSE(connectByTyping("q\n"));
  EXPECT_EQ(feedback, "这次没有选择目录，想继续时再点一次。");
  EXPECT_FALSE(connectByTyping("\n"));
  EXPECT_EQ(feedback, "已连好 1 个来源，剩下的下次会接着来。");
  EXPECT_TRUE(isConnected(AgentLogProvider::codex));
  EXPECT_FALSE(connectByTyping("/\n\n\n"));
  EXPECT_EQ(feedback, "请选择 ~/.codex。");
  EXPECT_FALSE(isConnected(AgentLogProvider::claude)) << "the folders that follow are not asked for";
}

}  // namespace
}  // namespace quillmeter::test
