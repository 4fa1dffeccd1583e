#include "platform/linux/DesktopApplicationIndex.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>

#include "base/FileDescriptor.h"

namespace quillmeter {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view entrySuffix = ".desktop";

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// The time of a folder's last change; the least time when it cannot be asked, so that one that appears is noticed.
fs::file_time_type modificationTime(const fs::path& folder) {
  std::error_code error;
  const auto time = fs::last_write_time(folder, error);
  return error ? fs::file_time_type::min() : time;
}

std::string readBeginning(const fs::path& file, std::size_t limit) {
  const FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  std::string text;
  if (!opened) return text;
  text.resize(limit);
  const ssize_t count = ::read(opened.get(), text.data(), text.size());
  text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return text;
}

}  // namespace

std::optional<DesktopEntryName> parseDesktopEntry(std::string_view text) {
  DesktopEntryName entry;
  bool isInGroup = false;
  bool isApplication = false;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.starts_with('[')) {
      if (isInGroup) break;
      isInGroup = line == "[Desktop Entry]";
      continue;
    }
    const std::size_t equals = line.find('=');
    if (!isInGroup || equals == std::string_view::npos) continue;
    const std::string_view key = trimmed(line.substr(0, equals));
    const std::string_view value = trimmed(line.substr(equals + 1));
    if (key == "Type") isApplication = value == "Application";
    if (key == "Name") entry.name = value;
    if (key == "Hidden") entry.isHidden = value == "true";
  }
  if (!isApplication && !entry.isHidden) return std::nullopt;
  return entry;
}

DesktopApplicationIndex::DesktopApplicationIndex(const std::vector<fs::path>& dataDirectories) {
  for (const fs::path& directory : dataDirectories) roots_.push_back(directory / "applications");
}

bool DesktopApplicationIndex::contains(std::string_view name) {
  const std::lock_guard lock(mutex_);
  if (!isCurrent()) readAll();
  return names_.contains(lowerCase(name));
}

bool DesktopApplicationIndex::isCurrent() const {
  return !folders_.empty() && std::ranges::all_of(folders_, [](const Folder& folder) {
    return modificationTime(folder.path) == folder.modifiedAt;
  });
}

void DesktopApplicationIndex::readAll() {
  folders_.clear();
  names_.clear();
  std::set<std::string> seenIds;
  for (const fs::path& root : roots_) readFolder(root, "", seenIds);
}

void DesktopApplicationIndex::readFolder(const fs::path& folder, const std::string& idPrefix,
                                         std::set<std::string>& seenIds) {
  folders_.push_back({folder, modificationTime(folder)});
  std::error_code error;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    if (seenIds.size() >= maximumEntries) return;
    const std::string fileName = it->path().filename().string();
    std::error_code ignored;
    if (fileName.ends_with(entrySuffix)) {
      // One id, one application: what the first folder says of it holds, also that it is hidden.
      if (seenIds.insert(idPrefix + fileName).second) readEntry(it->path());
    } else if (idPrefix.empty() && it->is_directory(ignored)) {
      readFolder(it->path(), fileName + "-", seenIds);
    }
  }
}

void DesktopApplicationIndex::readEntry(const fs::path& file) {
  const auto entry = parseDesktopEntry(readBeginning(file, maximumEntryBytes));
  if (!entry || entry->isHidden) return;
  names_.insert(lowerCase(file.stem().string()));
  if (!entry->name.empty()) names_.insert(lowerCase(entry->name));
}

}  // namespace quillmeter
