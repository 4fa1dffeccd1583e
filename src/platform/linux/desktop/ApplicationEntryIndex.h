#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/ForegroundApplication.h"

namespace quillmeter {

// One application as its desktop entry describes it.
struct ApplicationEntry {
  std::string id;                  // the entry's file name without ".desktop", folders joined by '-'
  std::string name;                // localised
  std::string startupWindowClass;  // StartupWMClass=, empty when absent
  std::string icon;                // Icon=: a name or an absolute path, empty when absent
  bool isHidden = false;           // Hidden=true: the user removed it
  bool isShown = true;             // not NoDisplay=true
  friend bool operator==(const ApplicationEntry&, const ApplicationEntry&) = default;
};

// Reads the group [Desktop Entry] (id stays empty); absent when it is no application. `locales` are the wanted name
// suffixes, best first ("zh_CN", "zh").
std::optional<ApplicationEntry> parseApplicationEntry(std::string_view text, const std::vector<std::string>& locales);

// The name suffixes for a POSIX locale: "zh_CN.UTF-8@mod" gives zh_CN@mod, zh_CN, zh@mod, zh. None for "C".
std::vector<std::string> entryLocales(std::string_view posixLocale);

// Tells which installed application a window belongs to, from the desktop entries of this user: those of the data
// folders and those that Flatpak and Snap export. The entries are read again only when a folder has changed; otherwise
// a question costs one status call a folder, and a class that was asked before not even a search. Main thread.
class ApplicationEntryIndex {
 public:
  static constexpr std::size_t maximumEntries = 8'192;
  static constexpr std::size_t maximumEntryBytes = 262'144;  // entries in sixty languages get long
  static constexpr std::size_t maximumClassBytes = 256;
  static constexpr std::size_t maximumIconBytes = 1'024;

  // `dataDirectories` best first; below each of them lies "applications".
  ApplicationEntryIndex(std::vector<std::filesystem::path> dataDirectories, std::vector<std::string> locales);
  // `dataDirectories` with the folders of Flatpak and Snap behind them, where they are not among them.
  static std::vector<std::filesystem::path> withSandboxExports(std::vector<std::filesystem::path> dataDirectories,
                                                               const std::filesystem::path& dataHome);

  // The application of a window by its class and, where the window system has one, its instance name. Without an entry
  // the class is id and name. Absent when both are empty. Bytes that are no UTF-8 are taken for Latin-1.
  std::optional<RunningApplication> applicationFor(std::string_view windowClass, std::string_view instance);
  // The entry of exactly this id, unless the user removed it. Valid until the next question.
  const ApplicationEntry* entryOf(std::string_view id);
  std::size_t entryCount();

 private:
  struct Folder {
    std::filesystem::path path;
    std::filesystem::file_time_type modifiedAt;
  };
  void refresh();
  void readFolder(const std::filesystem::path& folder, const std::string& idPrefix, int depth);
  const ApplicationEntry* find(const std::string& windowClass, const std::string& instance) const;

  std::vector<std::filesystem::path> roots_;
  std::vector<std::string> locales_;
  std::vector<Folder> folders_;
  std::map<std::string, ApplicationEntry, std::less<>> entries_;  // by id
  std::map<std::pair<std::string, std::string>, RunningApplication> answers_;
};

}  // namespace quillmeter
