#include "platform/linux/XdgPaths.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <system_error>

namespace quillmeter {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view programFolder = "quillmeter";
constexpr std::size_t maximumPasswordEntryBytes = 1'048'576;

// Empty when the entry or its field is missing.
fs::path homeFromPasswordDatabase() {
  std::string buffer(1024, '\0');
  for (;;) {
    passwd entry{};
    passwd* found = nullptr;
    const int error = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
    if (error == EINTR) continue;
    if (error == ERANGE && buffer.size() < maximumPasswordEntryBytes) {
      buffer.resize(buffer.size() * 2);
      continue;
    }
    if (found == nullptr || found->pw_dir == nullptr) return {};
    return found->pw_dir;
  }
}

std::optional<fs::path> absoluteValue(const XdgPaths::Environment& environment, const char* name) {
  const char* value = environment(name);
  if (value == nullptr || value[0] != '/') return std::nullopt;
  return fs::path(value);
}

bool isDirectory(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

std::vector<fs::path> absoluteEntries(std::string_view list) {
  std::vector<fs::path> entries;
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(':'), list.size());
    if (end > 0 && list.front() == '/') entries.emplace_back(list.substr(0, end));
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return entries;
}

}  // namespace

fs::path userHomeDirectory() {
  if (fs::path home = homeFromPasswordDatabase(); !home.empty()) return home;
  const char* home = std::getenv("HOME");
  return home != nullptr ? fs::path(home) : fs::path();
}

XdgPaths XdgPaths::resolve(const fs::path& home, const Environment& environment) {
  XdgPaths paths;
  paths.home = home;
  paths.configHome = absoluteValue(environment, "XDG_CONFIG_HOME").value_or(home / ".config");
  paths.dataHome = absoluteValue(environment, "XDG_DATA_HOME").value_or(home / ".local/share");
  paths.stateHome = absoluteValue(environment, "XDG_STATE_HOME").value_or(home / ".local/state");
  const auto runtime = absoluteValue(environment, "XDG_RUNTIME_DIR");
  if (runtime && isDirectory(*runtime)) paths.runtimeDirectory = runtime;
  const char* dataDirectories = environment("XDG_DATA_DIRS");
  paths.dataDirectories = absoluteEntries(dataDirectories != nullptr ? dataDirectories : "");
  if (paths.dataDirectories.empty()) paths.dataDirectories = {"/usr/local/share", "/usr/share"};
  paths.dataDirectories.insert(paths.dataDirectories.begin(), paths.dataHome);
  return paths;
}

XdgPaths XdgPaths::current() {
  return resolve(userHomeDirectory(), [](const char* name) -> const char* { return std::getenv(name); });
}

fs::path XdgPaths::standardPreferences(const std::string& domain) const {
  return configHome / programFolder / (domain + ".json");
}

std::optional<fs::path> XdgPaths::sharedPreferences(const std::string& suite) const {
  const fs::path file = fs::path(programFolder) / (suite + ".json");
  if (runtimeDirectory) return *runtimeDirectory / file;
  // A default below a home that is not there is no state folder; a folder that the user names is made.
  if (stateHome != home / ".local/state" || isDirectory(home)) return stateHome / file;
  return std::nullopt;
}

}  // namespace quillmeter
