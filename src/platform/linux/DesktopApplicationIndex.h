#pragma once

#include <filesystem>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/InstalledApplications.h"

namespace quillmeter {

// What a desktop entry says of its application.
struct DesktopEntryName {
  std::string name;       // Name=, not localised
  bool isHidden = false;  // Hidden=true: the user removed it
  friend bool operator==(const DesktopEntryName&, const DesktopEntryName&) = default;
};

// Reads the group [Desktop Entry]; absent when there is none or it describes no application.
std::optional<DesktopEntryName> parseDesktopEntry(std::string_view text);

// Installed applications by the desktop entries in "applications" below the data folders, the first folder that has an
// entry winning. An application is known by its entry's file name without ".desktop" and by its Name. The entries are
// read again only when a folder has changed; until then a question costs one status call a folder.
class DesktopApplicationIndex final : public InstalledApplications {
 public:
  static constexpr std::size_t maximumEntries = 8192;
  static constexpr std::size_t maximumEntryBytes = 65'536;  // of an entry that is longer only the beginning is read

  explicit DesktopApplicationIndex(const std::vector<std::filesystem::path>& dataDirectories);

  bool contains(std::string_view name) override;

 private:
  struct Folder {
    std::filesystem::path path;
    std::filesystem::file_time_type modifiedAt;
  };
  bool isCurrent() const;
  void readAll();
  void readFolder(const std::filesystem::path& folder, const std::string& idPrefix, std::set<std::string>& seenIds);
  void readEntry(const std::filesystem::path& file);

  std::vector<std::filesystem::path> roots_;
  std::mutex mutex_;  // guards the rest
  std::vector<Folder> folders_;
  std::set<std::string, std::less<>> names_;  // lower case
};

}  // namespace quillmeter
