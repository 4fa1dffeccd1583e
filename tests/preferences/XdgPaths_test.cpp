#include "platform/linux/XdgPaths.h"

#include <gmock/gmock.h>
#include <pwd.h>
#include <unistd.h>

#include <map>

#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

namespace fs = std::filesystem;
using test::TemporaryDirectory;
using testing::ElementsAre;

const std::string suite = "group.com.kesto.Quillmeter";

XdgPaths resolve(const fs::path& home, const std::map<std::string, std::string>& variables) {
  return XdgPaths::resolve(home, [&](const char* name) -> const char* {
    const auto found = variables.find(name);
    return found == variables.end() ? nullptr : found->second.c_str();
  });
}

TEST(XdgPaths, onlyAbsoluteValuesCount) {
  for (const char* useless : {"", "relative/path", "~/config", "./x"}) {
    const XdgPaths paths = resolve("/home/u", {{"XDG_CONFIG_HOME", useless},
                                               {"XDG_DATA_HOME", useless},
                                               {"XDG_STATE_HOME", useless},
                                               {"XDG_RUNTIME_DIR", useless},
                                               {"XDG_DATA_DIRS", useless}});
    EXPECT_EQ(paths.standardPreferences("com.kesto.Quillmeter"),
              "/home/u/.config/quillmeter/com.kesto.Quillmeter.json");
    EXPECT_EQ(paths.dataHome, "/home/u/.local/share");
    EXPECT_EQ(paths.stateHome, "/home/u/.local/state");
    EXPECT_FALSE(paths.runtimeDirectory);
    EXPECT_THAT(paths.dataDirectories, ElementsAre("/home/u/.local/share", "/usr/local/share", "/usr/share"));
  }
  const XdgPaths paths = resolve("/home/u", {{"XDG_CONFIG_HOME", "/c"}, {"XDG_DATA_DIRS", "/a::rel:/b:"}});
  EXPECT_EQ(paths.standardPreferences("d"), "/c/quillmeter/d.json");
  EXPECT_THAT(paths.dataDirectories, ElementsAre("/home/u/.local/share", "/a", "/b"));
}

TEST(XdgPaths, theSharedSuiteLiesInMemoryElseInTheStateFolder) {
  const TemporaryDirectory home;
  const std::string runtime = (home.path() / "run").string();
  const fs::path file = fs::path("quillmeter") / (suite + ".json");
  EXPECT_EQ(resolve(home.path(), {{"XDG_RUNTIME_DIR", runtime}}).sharedPreferences(suite),
            home.path() / ".local/state" / file)
      << "a runtime folder that is not there was taken";
  fs::create_directory(runtime);
  EXPECT_EQ(resolve(home.path(), {{"XDG_RUNTIME_DIR", runtime}}).sharedPreferences(suite), runtime / file);
  EXPECT_EQ(resolve("/nowhere", {{"XDG_STATE_HOME", "/s"}}).sharedPreferences(suite), "/s" / file);
  EXPECT_FALSE(resolve("/nowhere", {}).sharedPreferences(suite));
}

TEST(XdgPaths, homeIsThePasswordDatabasesWhateverTheEnvironmentSays) {
  const passwd* entry = getpwuid(getuid());
  if (entry == nullptr) GTEST_SKIP() << "this user has no entry in the password database";
  const std::string expected = entry->pw_dir;
  const char* before = std::getenv("HOME");
  const std::string saved = before != nullptr ? before : "";
  setenv("HOME", "/somewhere/else", 1);
  EXPECT_EQ(userHomeDirectory(), expected);
  setenv("HOME", saved.c_str(), 1);
}

}  // namespace
}  // namespace quillmeter
