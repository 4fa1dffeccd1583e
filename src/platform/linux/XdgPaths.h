#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillmeter {

// The home folder of the current user: the password database's field, HOME only when that entry or field is missing.
// Empty when neither is known.
std::filesystem::path userHomeDirectory();

// Where this user's files lie, by the base-directory specification: the XDG variables where they hold an absolute path,
// else their defaults below the home folder.
struct XdgPaths {
  // Gives the value of an environment variable, or null.
  using Environment = std::function<const char*(const char* name)>;

  std::filesystem::path home;
  std::filesystem::path configHome;
  std::filesystem::path dataHome;
  std::filesystem::path stateHome;
  std::optional<std::filesystem::path> runtimeDirectory;  // only one that exists
  std::vector<std::filesystem::path> dataDirectories;     // dataHome first, then XDG_DATA_DIRS

  static XdgPaths resolve(const std::filesystem::path& home, const Environment& environment);
  // Of this process.
  static XdgPaths current();

  // "com.kesto.Quillmeter" -> configHome/quillmeter/com.kesto.Quillmeter.json
  std::filesystem::path standardPreferences(const std::string& domain) const;
  // "group.com.kesto.Quillmeter" -> below the runtime directory, in memory; below the state folder where there is none.
  // Absent when there is neither.
  std::optional<std::filesystem::path> sharedPreferences(const std::string& suite) const;
};

}  // namespace quillmeter
