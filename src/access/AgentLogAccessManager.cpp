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

std::optional<fs::path> AgentLogAccessManager::grantedFolder(AgentLogProvider provider) const {
  const auto stored = defaults_.data(bookmarkKey(provider));
  return stored ? std::optional(fs::path(*stored)) : std::nullopt;
}

std::optional<AgentLogLocation> AgentLogAccessManager::location(AgentLogProvider provider) {
  const std::string key = bookmarkKey(provider);
  for (;;) {
    std::unique_lock lock(mutex_);
    if (const auto cached = cachedLocations_.find(provider); cached != cachedLocations_.end()) return cached->second;
    if (isDeclined(provider)) return std::nullopt;
    const auto stored = defaults_.data(key);
    if (!stored) return std::nullopt;
    const std::uint64_t generation = generation_;
    lock.unlock();
    auto found = resolve(provider, *stored);
    lock.lock();
    if (generation != generation_) continue;
    if (!found) {
      forgetUnavailableBookmark(provider);
      return std::nullopt;
    }
    // A grant is stale when it is not written as this program writes it ("~", "..", a slash at the end); where it
    // cannot be rewritten it works as it is. Links in it stay: their names are the user's, and the name is checked each
    // time.
    if (found->selectedURL.native() != *stored) (void)defaults_.setData(key, found->selectedURL.native());
    return cachedLocations_.insert_or_assign(provider, std::move(*found)).first->second;
  }
}

// Absent for a grant that cannot be used.
std::optional<AgentLogLocation> AgentLogAccessManager::resolve(AgentLogProvider provider,
                                                               const std::string& stored) const {
  // A relative path means another folder in each program that reads it.
  const bool isAbsolute = stored.starts_with('/') || stored == "~" || stored.starts_with("~/");
  const auto folder = isAbsolute ? normalizedFolder(stored, places_.homeDirectory, probe_) : std::nullopt;
  if (!folder || !probe_.isDirectory(*folder)) return std::nullopt;
  auto root = scanRoot(provider, *folder, probe_);
  if (!root || !probe_.isReadable(*root)) return std::nullopt;
  return AgentLogLocation{*folder, std::move(*root)};
}

void AgentLogAccessManager::forgetUnavailableBookmark(AgentLogProvider provider) {
  declined_ |= bit(provider);
  cachedLocations_.erase(provider);
  (void)defaults_.remove(bookmarkKey(provider));
}

void AgentLogAccessManager::forgetWhatIsKnown(AgentLogProvider provider) {
  ++generation_;
  cachedLocations_.erase(provider);
  declined_ &= ~bit(provider);
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
  {
    const std::lock_guard lock(mutex_);
    if (const auto stored = defaults_.setData(bookmarkKey(provider), folder->native()); !stored) {
      return tl::unexpected(AgentLogAccessError::bookmarkCreationFailed(stored.error()));
    }
    forgetWhatIsKnown(provider);
  }
  auto granted = location(provider);
  if (!granted) return tl::unexpected(AgentLogAccessError::bookmarkCreationFailed());
  return std::move(*granted);
}

tl::expected<void, PreferenceProblem> AgentLogAccessManager::removeAccess(AgentLogProvider provider) {
  tl::expected<void, PreferenceProblem> removed;
  {
    const std::lock_guard lock(mutex_);
    removed = defaults_.remove(bookmarkKey(provider));
    forgetWhatIsKnown(provider);
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
      forgetWhatIsKnown(provider);
    }
    if (!defaults_.data(key)) accessRemovedObservers_.notify(rawValue(provider));
  }
}

}  // namespace quillmeter
