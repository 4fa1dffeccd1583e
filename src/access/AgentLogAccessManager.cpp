#include "access/AgentLogAccessManager.h"

#include <algorithm>
#include <string>
#include <utility>

#include "base/L10n.h"

namespace quillmeter {

namespace {

namespace fs = std::filesystem;

FolderPickRequest pickRequest(AgentLogProvider provider, const std::optional<BatchProgress>& progress,
                              const fs::path& home) {
  const std::string name = title(provider);
  const std::string_view folder = expectedFolder(provider);
  FolderPickRequest request;
  request.prompt = QM_TR("连接这个目录");
  request.startDirectory = expectedFolderPath(provider, home);
  if (!progress) {
    request.title = L10n::format(QM_TR("连接 %@"), {name});
    request.message = L10n::format(QM_TR("已为你定位到 %@。确认无误后点“连接这个目录”。"), {folder});
    return request;
  }
  const std::string step = std::to_string(progress->step);
  const std::string total = std::to_string(progress->total);
  request.title = L10n::format(QM_TR("连接 %@（%d/%d）"), {name, step, total});
  const std::string message = progress->step < progress->total
                                  ? QM_TR("第 %d/%d 个：已为你定位到 %@。确认后会自动打开下一个目录。")
                                  : QM_TR("第 %d/%d 个：已为你定位到 %@。确认后即完成。");
  request.message = L10n::format(message, {step, total, folder});
  return request;
}

}  // namespace

AgentLogAccessManager::AgentLogAccessManager(PreferenceStore& defaults, const FolderProbe& probe,
                                             AgentSearchPlaces places, InstalledApplications* applications)
    : defaults_(defaults), probe_(probe), places_(std::move(places)), applications_(applications) {
  grantChanges_ = defaults_.onChange(
      [this](const std::vector<std::string>& keys, PreferenceChangeOrigin origin) { grantsChanged(keys, origin); });
}

std::vector<AgentLogProvider> AgentLogAccessManager::detectedProviders() {
  std::vector<AgentLogProvider> detected;
  for (const AgentLogProvider provider : allAgentLogProviders) {
    if (location(provider) || looksInstalled(provider)) detected.push_back(provider);
  }
  return detected;
}

bool AgentLogAccessManager::looksInstalled(AgentLogProvider provider) const {
  return isInstalled(provider, places_, probe_, applications_);
}

std::optional<AgentLogLocation> AgentLogAccessManager::location(AgentLogProvider provider) {
  const std::lock_guard lock(mutex_);
  return locationLocked(provider);
}

std::optional<AgentLogLocation> AgentLogAccessManager::locationLocked(AgentLogProvider provider) {
  if (const auto cached = cachedLocations_.find(provider); cached != cachedLocations_.end()) return cached->second;
  if (declinedProviders_.contains(provider)) return std::nullopt;
  const std::string key = bookmarkKey(provider);
  const auto stored = defaults_.data(key);
  if (!stored) return std::nullopt;

  // A relative path means another folder in each program that reads it.
  const bool isAbsolute = stored->starts_with('/') || *stored == "~" || stored->starts_with("~/");
  const auto folder = isAbsolute ? normalizedFolder(*stored, places_.homeDirectory, probe_) : std::nullopt;
  if (!folder || !probe_.isDirectory(*folder)) {
    forgetUnavailableBookmark(provider);
    return std::nullopt;
  }
  auto root = scanRoot(provider, *folder, probe_);
  if (!root || !probe_.isReadable(*root)) {
    forgetUnavailableBookmark(provider);
    return std::nullopt;
  }
  // A grant is stale when it is not written as this program writes it ("~", "..", a slash at the end); where it cannot
  // be rewritten it works as it is. Links in it stay: their names are the user's, and the name is checked each time.
  if (folder->native() != *stored) (void)defaults_.setData(key, folder->native());
  return cachedLocations_.insert_or_assign(provider, AgentLogLocation{*folder, std::move(*root)}).first->second;
}

void AgentLogAccessManager::forgetUnavailableBookmark(AgentLogProvider provider) {
  (void)defaults_.remove(bookmarkKey(provider));
  cachedLocations_.erase(provider);
  declinedProviders_.insert(provider);
}

void AgentLogAccessManager::requestAccess(AgentLogProvider provider, std::optional<BatchProgress> batchProgress,
                                          FolderPicker& picker, std::function<void(const Result&)> completion) {
  picker.pick(pickRequest(provider, batchProgress, places_.homeDirectory),
              [this, provider, completion = std::move(completion),
               alive = std::weak_ptr(alive_)](const std::optional<fs::path>& picked) {
                if (alive.expired()) return;
                if (!picked) return completion(tl::unexpected(AgentLogAccessError::selectionCancelled()));
                completion(grantAccess(provider, *picked));
              });
}

AgentLogAccessManager::Result AgentLogAccessManager::grantAccess(AgentLogProvider provider, const fs::path& picked) {
  const auto folder = normalizedFolder(picked, places_.homeDirectory, probe_);
  if (!folder) return tl::unexpected(AgentLogAccessError::missingLogFolder(provider));
  if (const auto root = scanRoot(provider, *folder, probe_); !root) return tl::unexpected(root.error());
  const std::lock_guard lock(mutex_);
  if (!defaults_.setData(bookmarkKey(provider), folder->native())) {
    return tl::unexpected(AgentLogAccessError::bookmarkCreationFailed());
  }
  cachedLocations_.erase(provider);
  declinedProviders_.erase(provider);
  auto location = locationLocked(provider);
  if (!location) return tl::unexpected(AgentLogAccessError::bookmarkCreationFailed());
  return std::move(*location);
}

tl::expected<void, PreferenceProblem> AgentLogAccessManager::removeAccess(AgentLogProvider provider) {
  tl::expected<void, PreferenceProblem> removed;
  {
    const std::lock_guard lock(mutex_);
    removed = defaults_.remove(bookmarkKey(provider));
    cachedLocations_.erase(provider);
    declinedProviders_.erase(provider);
  }
  accessRemovedObservers_.notify(rawValue(provider));
  return removed;
}

// Another program connected or disconnected agents: what this one remembers of them does not hold any more.
void AgentLogAccessManager::grantsChanged(const std::vector<std::string>& keys, PreferenceChangeOrigin origin) {
  if (origin != PreferenceChangeOrigin::anotherProgram) return;
  for (const AgentLogProvider provider : allAgentLogProviders) {
    const std::string key = bookmarkKey(provider);
    if (std::ranges::find(keys, key) == keys.end()) continue;
    {
      const std::lock_guard lock(mutex_);
      cachedLocations_.erase(provider);
      declinedProviders_.erase(provider);
    }
    if (!defaults_.data(key)) accessRemovedObservers_.notify(rawValue(provider));
  }
}

}  // namespace quillmeter
