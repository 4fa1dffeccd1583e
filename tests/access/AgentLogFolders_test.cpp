#include "access/AgentLogFolders.h"

#include <gmock/gmock.h>

#include "access/AgentLogAccessManager.h"
#include "platform/linux/DesktopApplicationIndex.h"
#include "platform/linux/SystemFolderProbe.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

namespace fs = std::filesystem;
using test::TemporaryDirectory;
using testing::ElementsAre;
using Kind = AgentLogAccessError::Kind;
using Provider = AgentLogProvider;

struct AgentLogFoldersTest : testing::Test {
  void folder(const fs::path& relative) const { fs::create_directories(home.path() / relative); }
  fs::path program(const fs::path& relative, fs::perms permissions = fs::perms::owner_all) const {
    const auto path = home.write(relative, "#!/bin/sh\n");
    fs::permissions(path, permissions);
    return path;
  }

  const TemporaryDirectory home;
  const SystemFolderProbe probe;
};

TEST_F(AgentLogFoldersTest, theScanRootLiesWhereEachAgentKeepsItsLogs) {
  struct Case {
    Provider provider;
    const char* picked;
    const char* content;  // made below the picked folder; a name with a point is a file
    const char* scanned;  // below the picked folder
  };
  const std::vector<Case> cases = {
      {Provider::codex, "1/.codex", "sessions", "sessions"},
      {Provider::claude, "2/.claude", "projects", "projects"},
      {Provider::qwenOffice, "3/.qwenworkcn", "logs/sessions", "logs/sessions"},
      {Provider::workBuddy, "4/.workbuddy", "projects", "projects"},
      {Provider::opencode, "5/any name", "opencode.db", ""},
      {Provider::opencode, "6/opencode", "storage/message", ""},
      {Provider::hermes, "7/whatever", "state.db", ""},
      {Provider::openclaw, "8/whatever", "agents", "agents"},
      {Provider::pi, "9/whatever", "sessions", "sessions"},
  };
  for (const Case& given : cases) {
    const fs::path picked = home.path() / given.picked;
    if (fs::path(given.content).has_extension()) {
      home.write(fs::path(given.picked) / given.content, "");
    } else {
      fs::create_directories(picked / given.content);
    }
    const fs::path expected = *given.scanned == '\0' ? picked : picked / given.scanned;
    EXPECT_EQ(scanRoot(given.provider, picked, probe), expected) << given.picked;
  }
}

TEST_F(AgentLogFoldersTest, aWrongFolderIsRefusedWithTheReason) {
  struct Case {
    Provider provider;
    const char* picked;
    const char* content;
    Kind kind;
    const char* text;
  };
  const std::vector<Case> cases = {
      {Provider::codex, ".codex/sessions", "sessions", Kind::unexpectedFolder, "请选择 ~/.codex。"},
      {Provider::claude, ".Claude", "projects", Kind::unexpectedFolder, "请选择 ~/.claude。"},
      {Provider::workBuddy, "workbuddy", "projects", Kind::unexpectedFolder, "请选择 ~/.workbuddy。"},
      {Provider::qwenOffice, "other", "logs/sessions", Kind::unexpectedFolder, "请选择 ~/.qwenworkcn。"},
      {Provider::codex, "a/.codex", "archived", Kind::missingLogFolder, "所选目录中没有 Codex 日志文件夹。"},
      {Provider::claude, "b/.claude", "projects.txt", Kind::missingLogFolder,
       "所选目录中没有 Claude Code 日志文件夹。"},
      {Provider::qwenOffice, "c/.qwenworkcn", "logs", Kind::missingLogFolder, "所选目录中没有 千问办公 日志文件夹。"},
      {Provider::opencode, "d/opencode", "storage", Kind::missingLogFolder, "所选目录中没有 OpenCode 日志文件夹。"},
      {Provider::hermes, ".hermes", "sessions", Kind::missingLogFolder, "所选目录中没有 Hermes 日志文件夹。"},
      {Provider::openclaw, ".openclaw", "agent", Kind::missingLogFolder, "所选目录中没有 OpenClaw 日志文件夹。"},
      {Provider::pi, "e/agent", "session", Kind::missingLogFolder, "所选目录中没有 Pi 日志文件夹。"},
      {Provider::pi, "nowhere", "", Kind::missingLogFolder, "所选目录中没有 Pi 日志文件夹。"},
  };
  for (const Case& given : cases) {
    if (*given.content != '\0') folder(fs::path(given.picked) / given.content);
    const auto root = scanRoot(given.provider, home.path() / given.picked, probe);
    ASSERT_FALSE(root) << given.picked;
    EXPECT_EQ(root.error().kind, given.kind) << given.picked;
    EXPECT_EQ(root.error().errorDescription(), given.text);
  }
  home.write("f/.codex/sessions", "a file, not a folder");
  EXPECT_EQ(scanRoot(Provider::codex, home.path() / "f/.codex", probe).error(),
            AgentLogAccessError::missingLogFolder(Provider::codex));
  EXPECT_NE(AgentLogAccessError::missingLogFolder(Provider::codex),
            AgentLogAccessError::missingLogFolder(Provider::pi));
  EXPECT_EQ(AgentLogAccessError::selectionCancelled().errorDescription(), std::nullopt);
}

TEST_F(AgentLogFoldersTest, foldersAreTakenAsAUserMayWriteThem) {
  folder("real/deep/.codex/sessions");
  fs::create_directory_symlink(home.path() / "real/deep", home.path() / "link");
  const std::string root = home.path().string();
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"~", root},
      {"~/", root},
      {"~/.codex", root + "/.codex"},
      {"~//.codex///", root + "/.codex"},
      {root + "/./.codex/.", root + "/.codex"},
      {root + "/link/.codex", root + "/link/.codex"},  // the link stays
      {root + "/link/..", root + "/real"},             // as the file system goes, not as the text reads
      {root + "/link/../x/./.codex/", root + "/real/x/.codex"},
      {root + "/link/.codex/sessions/..", root + "/real/deep/.codex"},
      {root + "/missing/../.codex", root + "/.codex"},
      {"/", "/"},
      {"/../..", "/"},
      {"~user/.codex", (fs::canonical(".") / "~user/.codex").string()},
      {".", fs::canonical(".").string()},
      {"a/..", fs::canonical(".").string()},
      {"./.codex", (fs::canonical(".") / ".codex").string()},
  };
  for (const auto& [given, expected] : cases) EXPECT_EQ(normalizedFolder(given, home.path(), probe), expected) << given;
  EXPECT_EQ(normalizedFolder("", home.path(), probe), std::nullopt);
  EXPECT_EQ(normalizedFolder(std::string("/a\0b", 4), home.path(), probe), std::nullopt);
  EXPECT_EQ(normalizedFolder("~/.codex", "", probe), std::nullopt);
}

TEST_F(AgentLogFoldersTest, searchPathEntriesComeBeforeTheUsualFolders) {
  const auto places = AgentSearchPlaces::standard("/home/u", "/usr/bin::relative:~/bin:/opt/x:");
  EXPECT_THAT(places.executableDirectories, ElementsAre("/usr/bin", "/opt/x", "/opt/homebrew/bin", "/usr/local/bin",
                                                        "/home/u/.local/bin", "/home/u/.npm-global/bin"));
  EXPECT_THAT(places.applicationDirectories, ElementsAre("/Applications", "/home/u/Applications"));
}

TEST_F(AgentLogFoldersTest, anAgentIsInstalledByItsFolderItsProgramOrItsApplication) {
  const AgentSearchPlaces places{
      home.path(), {home.path() / "empty", home.path() / "bin"}, {home.path() / "Applications"}};
  DesktopApplicationIndex applications({home.path() / "share"});
  const auto installed = [&] {
    std::vector<Provider> found;
    for (const Provider provider : allAgentLogProviders) {
      if (isInstalled(provider, places, probe, &applications)) found.push_back(provider);
    }
    return found;
  };
  EXPECT_THAT(installed(), ElementsAre());

  program("bin/codex", fs::perms::owner_read);  // not to be run
  folder("bin/claude");                         // a folder
  home.write(".hermes", "a file, not a folder");
  program("bin/qwenOffice");  // no programs are known of these two
  program("bin/workBuddy");
  home.write("Applications/Codex.app", "a file");
  folder("Applications/Claude.app");
  EXPECT_THAT(installed(), ElementsAre());

  program("bin/openclaw");
  program("bin/pi");
  folder("Applications/WorkBuddy.app");
  EXPECT_THAT(installed(), ElementsAre(Provider::workBuddy, Provider::openclaw, Provider::pi));
  home.write("share/applications/codex.desktop", "[Desktop Entry]\nType=Application\nName=Codex\n");
  folder(".qwenworkcn");
  folder(".local/share/opencode");
  EXPECT_THAT(installed(), ElementsAre(Provider::codex, Provider::qwenOffice, Provider::workBuddy, Provider::opencode,
                                       Provider::openclaw, Provider::pi));
}

TEST_F(AgentLogFoldersTest, aFolderNamedOnTheCommandLineIsCheckedLikeAPickedOne) {
  folder(".codex/sessions");
  const auto location = locationFromPickedFolder(Provider::codex, "~/.codex/", home.path(), probe);
  EXPECT_EQ(location, (AgentLogLocation{home.path() / ".codex", home.path() / ".codex/sessions"}));
  EXPECT_EQ(locationFromPickedFolder(Provider::claude, "~/.codex", home.path(), probe).error(),
            AgentLogAccessError::unexpectedFolder(Provider::claude));
  EXPECT_EQ(locationFromPickedFolder(Provider::pi, "", home.path(), probe).error(),
            AgentLogAccessError::missingLogFolder(Provider::pi));
}

TEST(AgentLogProvider, keysAndFoldersFollowTheRawValue) {
  for (const Provider provider : allAgentLogProviders)
    EXPECT_EQ(agentLogProviderFromRawValue(rawValue(provider)), provider);
  EXPECT_EQ(agentLogProviderFromRawValue("Codex"), std::nullopt);
  EXPECT_EQ(bookmarkKey(Provider::qwenOffice), "settings.agentLogs.qwenOffice.bookmark.v2");
  EXPECT_EQ(monitoringSettingsKey(Provider::qwenOffice), "settings.agentTokens.qwenOffice");
  EXPECT_EQ(title(Provider::qwenOffice), "千问办公");
  EXPECT_EQ(expectedFolderPath(Provider::opencode, "/home/u"), "/home/u/.local/share/opencode");
}

}  // namespace
}  // namespace quillmeter
