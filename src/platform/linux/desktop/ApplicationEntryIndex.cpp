#include "platform/linux/desktop/ApplicationEntryIndex.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/FileDescriptor.h"
#include "platform/linux/TextFields.h"

namespace quillmeter {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view entrySuffix = ".desktop";
constexpr int maximumFolderDepth = 4;
constexpr std::size_t maximumAnswers = 4'096;

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

// The escapes of the desktop-entry format: \s \n \t \r \\.
std::string unescaped(std::string_view value) {
  std::string text;
  for (std::size_t index = 0; index < value.size(); ++index) {
    char c = value[index];
    if (c == '\\' && index + 1 < value.size()) {
      c = value[++index];
      if (c == 's') c = ' ';
      if (c == 'n' || c == 't' || c == 'r') c = ' ';  // a name has one line
    }
    text += c;
  }
  return text;
}

// Length of the UTF-8 sequence at the front; 0 when it is none.
std::size_t sequenceLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xf0 && lead < 0xf5 ? 4 : lead >= 0xe0 ? 3 : lead >= 0xc2 ? 2 : 0;
  if (length == 0 || lead >= 0xf5 || text.size() < length) return 0;
  for (std::size_t index = 1; index < length; ++index) {
    if ((static_cast<unsigned char>(text[index]) & 0xc0U) != 0x80U) return 0;
  }
  const auto second = static_cast<unsigned char>(text[1]);
  const bool overlongOrSurrogate = (lead == 0xe0 && second < 0xa0) || (lead == 0xed && second >= 0xa0) ||
                                   (lead == 0xf0 && second < 0x90) || (lead == 0xf4 && second >= 0x90);
  return overlongOrSurrogate ? 0 : length;
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = sequenceLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

std::string latin1ToUtf8(std::string_view text) {
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      result += c;
    } else {
      result += static_cast<char>(0xc0U | (byte >> 6U));
      result += static_cast<char>(0x80U | (byte & 0x3fU));
    }
  }
  return result;
}

std::string cleaned(std::string_view text) {
  text = text.substr(0, ApplicationEntryIndex::maximumClassBytes);
  return isUtf8(text) ? std::string(text) : latin1ToUtf8(text);
}

fs::file_time_type modificationTime(const fs::path& folder) {
  std::error_code error;
  const auto time = fs::last_write_time(folder, error);
  return error ? fs::file_time_type::min() : time;
}

// The time to remember for a folder that is read now. A change within the kernel's clock tick could leave it the same,
// so that a folder which changed just now counts as changed once more.
fs::file_time_type settledTime(const fs::path& folder) {
  constexpr auto settling = std::chrono::milliseconds(100);
  const auto time = modificationTime(folder);
  return time > fs::file_time_type::clock::now() - settling ? fs::file_time_type::max() : time;
}

// A regular file's beginning; empty when it cannot be read. Never waits for a pipe.
std::string readEntryFile(const fs::path& path) {
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  struct stat status {};
  if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  std::string text(std::min(static_cast<std::size_t>(status.st_size), ApplicationEntryIndex::maximumEntryBytes), '\0');
  const ssize_t count = read(file.get(), text.data(), text.size());
  text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return text;
}

// Position of a "Name[locale]" key in the list of wanted ones; its size when it is not wanted, and one more for a
// foreign key.
std::size_t nameRank(std::string_view key, const std::vector<std::string>& locales) {
  if (key == "Name") return locales.size();
  if (!key.starts_with("Name[") || !key.ends_with(']')) return locales.size() + 1;
  const auto found = std::ranges::find(locales, key.substr(5, key.size() - 6));
  return found == locales.end() ? locales.size() + 1 : static_cast<std::size_t>(found - locales.begin());
}

}  // namespace

std::optional<ApplicationEntry> parseApplicationEntry(std::string_view text, const std::vector<std::string>& locales) {
  ApplicationEntry entry;
  bool isInGroup = false;
  bool isApplication = false;
  std::size_t bestRank = locales.size() + 1;
  while (!text.empty()) {
    const std::string_view line = trimmed(takeLine(text));
    if (line.starts_with('[')) {
      if (isInGroup) break;
      isInGroup = line == "[Desktop Entry]";
      continue;
    }
    const std::size_t equals = line.find('=');
    if (!isInGroup || line.starts_with('#') || equals == std::string_view::npos) continue;
    const std::string_view key = trimmed(line.substr(0, equals));
    const std::string_view value = trimmed(line.substr(equals + 1));
    if (key == "Type") isApplication = value == "Application";
    if (key == "StartupWMClass") entry.startupWindowClass = unescaped(value);
    if (key == "Icon") entry.icon = unescaped(value);
    if (key == "Hidden") entry.isHidden = value == "true";
    if (key == "NoDisplay") entry.isShown = value != "true";
    if (const std::size_t rank = nameRank(key, locales); rank < bestRank && !value.empty()) {
      bestRank = rank;
      entry.name = unescaped(value);
    }
  }
  if (!isApplication && !entry.isHidden) return std::nullopt;
  if (!isUtf8(entry.name)) entry.name.clear();
  if (entry.icon.size() > ApplicationEntryIndex::maximumIconBytes) entry.icon.clear();
  return entry;
}

std::vector<std::string> entryLocales(std::string_view posixLocale) {
  const std::string_view modifier = posixLocale.substr(std::min(posixLocale.find('@'), posixLocale.size()));
  const std::string_view country = posixLocale.substr(0, posixLocale.find_first_of(".@"));
  const std::string_view language = country.substr(0, country.find('_'));
  if (language.empty() || language == "C" || language == "POSIX") return {};
  std::vector<std::string> locales;
  const auto add = [&](std::string_view first, std::string_view second) {
    std::string locale = std::string(first) + std::string(second);
    if (std::ranges::find(locales, locale) == locales.end()) locales.push_back(std::move(locale));
  };
  add(country, modifier);
  add(country, "");
  add(language, modifier);
  add(language, "");
  return locales;
}

ApplicationEntryIndex::ApplicationEntryIndex(std::vector<fs::path> dataDirectories, std::vector<std::string> locales)
    : roots_(std::move(dataDirectories)), locales_(std::move(locales)) {}

std::vector<fs::path> ApplicationEntryIndex::withSandboxExports(std::vector<fs::path> dataDirectories,
                                                                const fs::path& dataHome) {
  for (const fs::path& folder : {dataHome / "flatpak" / "exports" / "share", fs::path("/var/lib/flatpak/exports/share"),
                                 fs::path("/var/lib/snapd/desktop")}) {
    if (std::ranges::find(dataDirectories, folder) == dataDirectories.end()) dataDirectories.push_back(folder);
  }
  return dataDirectories;
}

void ApplicationEntryIndex::refresh() {
  const auto isUnchanged = [](const Folder& folder) { return modificationTime(folder.path) == folder.modifiedAt; };
  if (!folders_.empty() && std::ranges::all_of(folders_, isUnchanged)) return;
  folders_.clear();
  entries_.clear();
  answers_.clear();
  for (const fs::path& root : roots_) readFolder(root / "applications", "", 0);
}

void ApplicationEntryIndex::readFolder(const fs::path& folder, const std::string& idPrefix, int depth) {
  folders_.push_back({folder, settledTime(folder)});
  std::error_code error;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    if (entries_.size() >= maximumEntries) return;
    const std::string fileName = it->path().filename().string();
    std::error_code ignored;
    if (fileName.ends_with(entrySuffix)) {
      const std::string id = idPrefix + fileName.substr(0, fileName.size() - entrySuffix.size());
      if (entries_.contains(id) || !isUtf8(id))
        continue;  // what the first folder says of an id holds, also that it is hidden
      auto entry = parseApplicationEntry(readEntryFile(it->path()), locales_);
      if (!entry) continue;
      entry->id = id;
      entries_.emplace(id, std::move(*entry));
    } else if (depth < maximumFolderDepth && it->is_directory(ignored)) {
      readFolder(it->path(), idPrefix + fileName + "-", depth + 1);
    }
  }
}

const ApplicationEntry* ApplicationEntryIndex::find(const std::string& windowClass, const std::string& instance) const {
  // Of several entries that fit, one that menus show is the application and the others are its actions.
  const auto firstWhere = [this](auto fits) -> const ApplicationEntry* {
    const ApplicationEntry* best = nullptr;
    for (const auto& [id, entry] : entries_) {
      if (entry.isHidden || !fits(entry)) continue;
      if (entry.isShown) return &entry;
      if (best == nullptr) best = &entry;
    }
    return best;
  };
  const auto equals = [](const std::string& text, const std::string& wanted) {
    return !wanted.empty() && text == wanted;
  };
  for (const std::string* name : {&windowClass, &instance}) {
    if (const auto* entry = firstWhere([&](const auto& e) { return equals(e.startupWindowClass, *name); }))
      return entry;
  }
  for (const std::string* name : {&windowClass, &instance}) {
    if (const auto* entry = firstWhere([&](const auto& e) { return equals(e.id, *name); })) return entry;
  }
  const std::array lowered{lowerCase(windowClass), lowerCase(instance)};
  for (const std::string& name : lowered) {
    if (const auto* entry = firstWhere([&](const auto& e) { return equals(lowerCase(e.startupWindowClass), name); }))
      return entry;
  }
  for (const std::string& name : lowered) {
    if (const auto* entry = firstWhere([&](const auto& e) { return equals(lowerCase(e.id), name); })) return entry;
  }
  for (const std::string& name : lowered) {
    const auto lastPartFits = [&](const ApplicationEntry& e) {
      return equals(lowerCase(e.id.substr(e.id.find_last_of('.') + 1)), name);
    };
    if (const auto* entry = firstWhere(lastPartFits)) return entry;
  }
  return nullptr;
}

std::optional<RunningApplication> ApplicationEntryIndex::applicationFor(std::string_view windowClass,
                                                                        std::string_view instance) {
  refresh();
  std::pair key{cleaned(windowClass), cleaned(instance)};
  if (key.first.empty()) std::swap(key.first, key.second);
  if (key.first.empty()) return std::nullopt;
  if (const auto known = answers_.find(key); known != answers_.end()) return known->second;
  RunningApplication application;
  const ApplicationEntry* entry = find(key.first, key.second);
  application.identifier = entry != nullptr ? entry->id : key.first;
  application.name = entry != nullptr && !entry->name.empty() ? entry->name : key.first;
  if (answers_.size() >= maximumAnswers) answers_.clear();
  return answers_.emplace(std::move(key), std::move(application)).first->second;
}

const ApplicationEntry* ApplicationEntryIndex::entryOf(std::string_view id) {
  refresh();
  const auto found = entries_.find(id);
  return found == entries_.end() || found->second.isHidden ? nullptr : &found->second;
}

std::size_t ApplicationEntryIndex::entryCount() {
  refresh();
  return entries_.size();
}

}  // namespace quillmeter
