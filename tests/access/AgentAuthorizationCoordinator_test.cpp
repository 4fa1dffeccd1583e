#include "access/AgentAuthorizationCoordinator.h"

#include <deque>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/fake/InMemoryPreferenceDomain.h"
#include "platform/linux/SystemFolderProbe.h"
#include "preferences/PreferenceStore.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

using Kind = AgentAuthorizationFeedback::Kind;
using enum AgentLogProvider;

// Answers each pick when the test says so, and records what was asked.
class ScriptedPicker final : public FolderPicker {
 public:
  void pick(const FolderPickRequest& request, Completion completion) override {
    requests.push_back(request);
    waiting.push_back(std::move(completion));
  }
  void answer(std::optional<std::filesystem::path> folder) {
    auto completion = std::move(waiting.front());
    waiting.pop_front();
    completion(std::move(folder));
  }
  std::vector<FolderPickRequest> requests;
  std::deque<Completion> waiting;
};

class AgentAuthorizationTest : public testing::Test {
 protected:
  AgentAuthorizationTest() {
    for (const char* folder : {".codex/sessions", ".claude/projects", ".pi/agent/sessions"}) {
      std::filesystem::create_directories(home.path() / folder);
    }
  }

  void connectAll() {
    coordinator.connectInSequence({codex, claude, pi}, [this](bool all) { outcome = all; });
  }
  std::string message() const { return coordinator.feedback() ? coordinator.feedback()->message() : "none"; }

  test::TemporaryDirectory home;
  InMemoryPreferenceDomain domain;
  PreferenceStore preferences{domain};
  SystemFolderProbe probe;
  AgentLogAccessManager access{preferences, probe, AgentSearchPlaces{home.path(), {}, {}}};
  ScriptedPicker picker;
  AgentAuthorizationCoordinator coordinator{access, picker};
  std::optional<bool> outcome;
};

TEST_F(AgentAuthorizationTest, aSequenceAsksOneAfterAnotherAndSaysHowManyAreConnected) {
  connectAll();
  EXPECT_EQ(coordinator.progressText(), "正在连接 Codex（1/3）");
  EXPECT_EQ(picker.requests[0].title, "连接 Codex（1/3）");
  EXPECT_EQ(picker.requests[0].message, "第 1/3 个：已为你定位到 ~/.codex。确认后会自动打开下一个目录。");
  picker.answer(home.path() / ".codex");
  EXPECT_EQ(coordinator.progressText(), "正在连接 Claude Code（2/3）");
  picker.answer(home.path() / ".claude");
  EXPECT_EQ(picker.requests[2].message, "第 3/3 个：已为你定位到 ~/.pi/agent。确认后即完成。");
  EXPECT_FALSE(outcome);
  picker.answer(home.path() / ".pi/agent");
  EXPECT_EQ(outcome, true);
  EXPECT_EQ(coordinator.feedback()->kind, Kind::success);
  EXPECT_EQ(message(), "已连好 3 个来源，正在找可统计的日志。");
  EXPECT_FALSE(coordinator.progressText());
  EXPECT_EQ(coordinator.revision(), 2);
  EXPECT_TRUE(access.location(pi));
}

TEST_F(AgentAuthorizationTest, cancellingStopsTheSequenceAndCountsWhatIsConnected) {
  connectAll();
  picker.answer(std::nullopt);
  EXPECT_EQ(message(), "这次没有选择目录，想继续时再点一次。");
  EXPECT_EQ(coordinator.feedback()->kind, Kind::notice);
  EXPECT_EQ(outcome, false);
  outcome.reset();
  connectAll();
  EXPECT_EQ(message(), "none") << "a new flow clears the last outcome";
  picker.answer(home.path() / ".codex");
  picker.answer(std::nullopt);
  EXPECT_EQ(message(), "已连好 1 个来源，剩下的下次会接着来。");
  EXPECT_EQ(outcome, false);
  EXPECT_EQ(picker.requests.size(), 3U);
}

TEST_F(AgentAuthorizationTest, aWrongFolderStopsTheSequenceWithItsReason) {
  connectAll();
  picker.answer(home.path() / ".codex/sessions");
  EXPECT_EQ(coordinator.feedback()->kind, Kind::error);
  EXPECT_EQ(message(), "请选择 ~/.codex。");
  EXPECT_EQ(outcome, false);
  EXPECT_TRUE(picker.waiting.empty());
  domain.refuseWrites(PreferenceProblem{});
  coordinator.connect(codex);
  picker.answer(home.path() / ".codex");
  EXPECT_EQ(message(), "无法保存文件夹访问权限，请重新选择。");
}

TEST_F(AgentAuthorizationTest, aSingleConnectionHasItsOwnTextsUntilTheGrantIsRemoved) {
  coordinator.connect(claude, [this](bool all) { outcome = all; });
  EXPECT_EQ(picker.requests[0].title, "连接 Claude Code");
  EXPECT_EQ(picker.requests[0].prompt, "连接这个目录");
  EXPECT_EQ(picker.requests[0].startDirectory, home.path() / ".claude");
  coordinator.connect(codex, [](bool all) { EXPECT_FALSE(all); });
  EXPECT_EQ(picker.requests.size(), 1U) << "one flow at a time";
  picker.answer(home.path() / ".claude");
  EXPECT_EQ(outcome, true);
  EXPECT_EQ(message(), "Claude Code 已连好，正在找可统计的日志。");
  ASSERT_TRUE(access.removeAccess(claude));
  EXPECT_EQ(message(), "none");
  EXPECT_FALSE(access.location(claude));
}

TEST_F(AgentAuthorizationTest, nothingToConnectIsASuccess) {
  coordinator.connectInSequence({}, [this](bool all) { outcome = all; });
  EXPECT_EQ(outcome, true);
  EXPECT_EQ(message(), "目录都已连好，正在找可统计的日志。");
  EXPECT_EQ(coordinator.revision(), 2);
}

TEST_F(AgentAuthorizationTest, aPickerThatAnswersLateFindsNobody) {
  {
    AgentAuthorizationCoordinator other(access, picker);
    other.connect(codex);
  }
  picker.answer(home.path() / ".codex");
}

}  // namespace
}  // namespace quillmeter
