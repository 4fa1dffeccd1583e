#include "access/AgentLogAccessManager.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <future>
#include <thread>

#include "platform/fake/InMemoryPreferenceDomain.h"
#include "platform/linux/SystemFolderProbe.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

namespace fs = std::filesystem;
using test::TemporaryDirectory;
using testing::ElementsAre;
using testing::IsEmpty;
using Provider = AgentLogProvider;

constexpr const char* codexKey = "settings.agentLogs.codex.bookmark.v2";

// The file system, but one folder may not be read, which root cannot bring about otherwise.
class ForbiddingProbe final : public FolderProbe {
 public:
  bool exists(const fs::path& path) const override { return system_.exists(path); }
  bool isDirectory(const fs::path& path) const override {
    if (path == hanging) {
      asked.set_value();
      answer.get_future().wait();
      return false;
    }
    return system_.isDirectory(path);
  }
  bool isReadable(const fs::path& path) const override { return path != forbidden && system_.isReadable(path); }
  bool isExecutableFile(const fs::path& path) const override { return system_.isExecutableFile(path); }
  std::optional<fs::path> canonical(const fs::path& path) const override { return system_.canonical(path); }

  fs::path forbidden;
  fs::path hanging;  // asked once, answers with "no" when `answer` is set
  mutable std::promise<void> asked;
  mutable std::promise<void> answer;

 private:
  SystemFolderProbe system_;
};

// Keeps what it was asked and answers when it is told to.
class ScriptedPicker final : public FolderPicker {
 public:
  void pick(const FolderPickRequest& asked, Completion whenDone) override {
    request = asked;
    completion = std::move(whenDone);
  }
  FolderPickRequest request;
  Completion completion;
};

class AgentLogAccessManagerTest : public testing::Test {
 protected:
  AgentLogAccessManagerTest() { fs::create_directories(codex / "sessions"); }

  AgentLogAccessManager::Result request(const std::optional<fs::path>& answer,
                                        std::optional<BatchProgress> progress = {}) {
    AgentLogAccessManager::Result result;
    manager.requestAccess(Provider::codex, progress, picker,
                          [&](const AgentLogAccessManager::Result& given) { result = given; });
    picker.completion(answer);
    return result;
  }
  std::optional<std::string> stored() const { return store.data(codexKey); }
  void storeFromElsewhere(const std::string& path) { domain.changeByAnotherProgram(codexKey, PreferenceData{path}); }

  const TemporaryDirectory home;
  const fs::path codex = home.path() / ".codex";
  const AgentLogLocation codexLocation{codex, codex / "sessions"};
  InMemoryPreferenceDomain domain;
  PreferenceStore store{domain};
  ForbiddingProbe probe;
  ScriptedPicker picker;
  AgentLogAccessManager manager{store, probe, AgentSearchPlaces{home.path(), {}, {}}};
};

TEST_F(AgentLogAccessManagerTest, aGrantIsTheStoredPathAndOutlivesTheProgram) {
  EXPECT_EQ(manager.location(Provider::codex), std::nullopt);
  EXPECT_EQ(manager.grantAccess(Provider::codex, codex / ""), codexLocation);
  EXPECT_EQ(stored(), codex.string());
  AgentLogAccessManager next(store, probe, AgentSearchPlaces{home.path(), {}, {}});
  EXPECT_EQ(next.location(Provider::codex), codexLocation);
}

TEST_F(AgentLogAccessManagerTest, aFolderThatFailsItsCheckChangesNothing) {
  ASSERT_TRUE(manager.grantAccess(Provider::codex, codex));
  EXPECT_EQ(manager.grantAccess(Provider::codex, codex / "sessions").error(),
            AgentLogAccessError::unexpectedFolder(Provider::codex));
  EXPECT_EQ(manager.grantAccess(Provider::codex, "").error(), AgentLogAccessError::missingLogFolder(Provider::codex));
  EXPECT_EQ(stored(), codex.string());
  EXPECT_EQ(manager.location(Provider::codex), codexLocation);
}

TEST_F(AgentLogAccessManagerTest, aFolderThatDisappearedIsForgottenForTheRestOfTheRun) {
  storeFromElsewhere(codex.string());
  fs::remove_all(codex);
  EXPECT_EQ(manager.location(Provider::codex), std::nullopt);
  EXPECT_EQ(stored(), std::nullopt);
  fs::create_directories(codex / "sessions");
  domain.changeByAnotherProgram(codexKey, PreferenceData{codex.string()});
  EXPECT_EQ(manager.location(Provider::codex), std::nullopt) << "declined until it is granted again";
  EXPECT_EQ(manager.grantAccess(Provider::codex, codex), codexLocation);
}

TEST_F(AgentLogAccessManagerTest, everyUnusableGrantIsForgottenWithoutATrace) {
  home.write("file", "");
  fs::create_directories(home.path() / "other/.codex");
  for (const std::string& unusable :
       {std::string(), std::string(".codex"), std::string("~other/.codex"), std::string("/a\0b", 4),
        (home.path() / "file").string(), (home.path() / "other/.codex").string(), (codex / "sessions").string()}) {
    AgentLogAccessManager fresh(store, probe, AgentSearchPlaces{home.path(), {}, {}});
    storeFromElsewhere(unusable);
    EXPECT_EQ(fresh.location(Provider::codex), std::nullopt) << unusable;
    EXPECT_EQ(stored(), std::nullopt) << unusable;
  }
  probe.forbidden = codex / "sessions";
  storeFromElsewhere(codex.string());
  EXPECT_EQ(manager.location(Provider::codex), std::nullopt);
  EXPECT_EQ(stored(), std::nullopt);
}

TEST_F(AgentLogAccessManagerTest, aValueThatIsNoGrantIsLeftAlone) {
  domain.changeByAnotherProgram(codexKey, codex.string());  // text, not data
  EXPECT_EQ(manager.location(Provider::codex), std::nullopt);
  EXPECT_TRUE(domain.contains(codexKey));
}

TEST_F(AgentLogAccessManagerTest, aLocationOnceFoundIsNotAskedForAgain) {
  storeFromElsewhere(codex.string());
  ASSERT_EQ(manager.location(Provider::codex), codexLocation);
  fs::remove_all(codex);
  EXPECT_EQ(manager.location(Provider::codex), codexLocation);
  EXPECT_EQ(stored(), codex.string());
}

TEST_F(AgentLogAccessManagerTest, aStaleGrantIsRewrittenAndWorksAlsoWhereItCannotBe) {
  for (const std::string& stale : {std::string("~/.codex"), codex.string() + "//", (codex / "sessions/..").string()}) {
    AgentLogAccessManager fresh(store, probe, AgentSearchPlaces{home.path(), {}, {}});
    storeFromElsewhere(stale);
    const auto location = fresh.location(Provider::codex);
    const fs::path rewritten = stored().value_or("");
    EXPECT_EQ(location, (AgentLogLocation{rewritten, rewritten / "sessions"})) << stale;
    EXPECT_EQ(fs::canonical(*stored()), fs::canonical(codex));
    EXPECT_FALSE(stored()->ends_with('/') || stored()->starts_with('~') || stored()->ends_with("..")) << *stored();
  }
  domain.refuseWrites(PreferenceProblem{PreferenceProblem::Kind::unwritable, {}, EROFS, {}});
  AgentLogAccessManager fresh(store, probe, AgentSearchPlaces{home.path(), {}, {}});
  storeFromElsewhere("~/.codex");
  EXPECT_EQ(fresh.location(Provider::codex), codexLocation);
}

TEST_F(AgentLogAccessManagerTest, aGrantThroughALinkFollowsTheLink) {
  const fs::path real = home.path() / "dotfiles/codex";
  fs::create_directories(real / "sessions");
  fs::remove_all(codex);
  fs::create_directory_symlink(real, codex);
  EXPECT_EQ(manager.grantAccess(Provider::codex, codex), codexLocation) << "the name is the one that was picked";
  fs::remove(codex);
  AgentLogAccessManager next(store, probe, AgentSearchPlaces{home.path(), {}, {}});
  EXPECT_EQ(next.location(Provider::codex), std::nullopt);
}

TEST_F(AgentLogAccessManagerTest, aGrantThatCannotBeStoredOrUsedIsAnError) {
  const PreferenceProblem readOnly{PreferenceProblem::Kind::unwritable, {}, EROFS, {}};
  domain.refuseWrites(readOnly);
  EXPECT_EQ(manager.grantAccess(Provider::codex, codex).error(), AgentLogAccessError::bookmarkCreationFailed(readOnly));
  domain.refuseWrites(std::nullopt);
  probe.forbidden = codex / "sessions";
  const auto refused = manager.grantAccess(Provider::codex, codex);
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().errorDescription(), "无法保存文件夹访问权限，请重新选择。");
  EXPECT_EQ(stored(), std::nullopt);
}

TEST_F(AgentLogAccessManagerTest, thePickerSaysWhatToDoAndItsAnswerIsChecked) {
  EXPECT_EQ(request(codex), codexLocation);
  EXPECT_EQ(picker.request, (FolderPickRequest{"连接 Codex", "已为你定位到 ~/.codex。确认无误后点“连接这个目录”。",
                                               "连接这个目录", codex}));
  EXPECT_EQ(request(std::nullopt, BatchProgress{1, 3}).error(), AgentLogAccessError::selectionCancelled());
  EXPECT_EQ(picker.request.title, "连接 Codex（1/3）");
  EXPECT_EQ(picker.request.message, "第 1/3 个：已为你定位到 ~/.codex。确认后会自动打开下一个目录。");
  EXPECT_EQ(request(home.path(), BatchProgress{3, 3}).error(), AgentLogAccessError::unexpectedFolder(Provider::codex));
  EXPECT_EQ(picker.request.message, "第 3/3 个：已为你定位到 ~/.codex。确认后即完成。");
}

TEST_F(AgentLogAccessManagerTest, aPickerThatAnswersLateFindsNoManager) {
  bool isAnswered = false;
  {
    AgentLogAccessManager shortLived(store, probe, AgentSearchPlaces{home.path(), {}, {}});
    shortLived.requestAccess(Provider::codex, std::nullopt, picker,
                             [&](const AgentLogAccessManager::Result&) { isAnswered = true; });
  }
  picker.completion(codex);
  EXPECT_FALSE(isAnswered);
  EXPECT_EQ(stored(), std::nullopt);
}

TEST_F(AgentLogAccessManagerTest, removingAccessForgetsItTellsOfItAndAllowsANewGrant) {
  std::vector<std::string> removed;
  const auto subscription = manager.onAccessRemoved([&](std::string_view provider) { removed.emplace_back(provider); });
  ASSERT_TRUE(manager.grantAccess(Provider::codex, codex));
  EXPECT_TRUE(manager.removeAccess(Provider::codex));
  EXPECT_THAT(removed, ElementsAre("codex"));
  EXPECT_EQ(stored(), std::nullopt);
  EXPECT_EQ(manager.location(Provider::codex), std::nullopt);
  EXPECT_EQ(manager.grantAccess(Provider::codex, codex), codexLocation);
}

TEST_F(AgentLogAccessManagerTest, whatAnotherProgramConnectsOrDisconnectsHolds) {
  std::vector<std::string> removed;
  const auto subscription = manager.onAccessRemoved([&](std::string_view provider) { removed.emplace_back(provider); });
  ASSERT_TRUE(manager.grantAccess(Provider::codex, codex));
  domain.changeByAnotherProgram(codexKey, std::nullopt);
  store.refresh();
  EXPECT_EQ(manager.location(Provider::codex), std::nullopt);
  EXPECT_THAT(removed, ElementsAre("codex"));

  storeFromElsewhere((home.path() / "gone").string());
  store.refresh();
  EXPECT_EQ(manager.location(Provider::codex), std::nullopt);  // declined
  storeFromElsewhere(codex.string());
  store.refresh();
  EXPECT_EQ(manager.location(Provider::codex), codexLocation) << "a new grant of the other program was ignored";
  EXPECT_EQ(removed.size(), 1u);
}

TEST_F(AgentLogAccessManagerTest, detectedAreTheConnectedAndTheInstalledInTheirOrder) {
  EXPECT_THAT(manager.detectedProviders(), ElementsAre(Provider::codex));
  fs::create_directories(home.path() / "elsewhere/sessions");
  ASSERT_TRUE(manager.grantAccess(Provider::pi, home.path() / "elsewhere"));
  fs::create_directories(home.path() / ".claude");
  EXPECT_THAT(manager.detectedProviders(), ElementsAre(Provider::codex, Provider::claude, Provider::pi));
  fs::remove_all(codex);
  EXPECT_THAT(manager.detectedProviders(), ElementsAre(Provider::claude, Provider::pi));
}

TEST_F(AgentLogAccessManagerTest, theScanMayAskWhileTheMainThreadGrantsAndRemoves) {
  std::thread scan([&] {
    for (int i = 0; i < 200; ++i) manager.detectedProviders();
  });
  for (int i = 0; i < 200; ++i) {
    EXPECT_TRUE(manager.grantAccess(Provider::codex, codex));
    EXPECT_TRUE(manager.removeAccess(Provider::codex));
  }
  scan.join();
  EXPECT_EQ(manager.location(Provider::codex), std::nullopt);
}

TEST_F(AgentLogAccessManagerTest, aFolderThatDoesNotAnswerHoldsNobodyUpAndItsLateAnswerSpoilsNoNewGrant) {
  const fs::path share = home.path() / "share" / ".codex";
  ASSERT_TRUE(store.setData(codexKey, share.native()));
  probe.hanging = share;
  std::thread scan([&] { EXPECT_EQ(manager.location(Provider::codex), codexLocation); });
  probe.asked.get_future().wait();

  EXPECT_EQ(manager.grantedFolder(Provider::codex), share);
  EXPECT_FALSE(manager.isDeclined(Provider::codex));
  EXPECT_TRUE(manager.removeAccess(Provider::codex));
  EXPECT_EQ(manager.grantedFolder(Provider::codex), std::nullopt);
  EXPECT_TRUE(manager.grantAccess(Provider::codex, codex));
  probe.answer.set_value();
  scan.join();
  EXPECT_EQ(stored(), codex.native());
}

TEST_F(AgentLogAccessManagerTest, anUnusableGrantCountsAsDeclinedUntilItIsGivenAnew) {
  storeFromElsewhere(home.path() / "nowhere" / ".codex");
  EXPECT_EQ(manager.location(Provider::codex), std::nullopt);
  EXPECT_TRUE(manager.isDeclined(Provider::codex));
  EXPECT_FALSE(manager.isDeclined(Provider::claude));
  EXPECT_TRUE(manager.grantAccess(Provider::codex, codex));
  EXPECT_FALSE(manager.isDeclined(Provider::codex));
}

}  // namespace
}  // namespace quillmeter
