#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tl/expected.hpp>

#include "access/AgentLogAccessError.h"
#include "access/AgentLogFolders.h"
#include "access/model/AgentLogLocation.h"
#include "access/model/AgentLogProvider.h"
#include "base/Observers.h"
#include "platform/FolderPicker.h"
#include "preferences/PreferenceStore.h"

namespace quillmeter {

// Position within a sequence of pickers, from 1.
struct BatchProgress {
  int step = 1;
  int total = 1;
};

// Keeps the folders that the user granted. A grant is the absolute path of the picked folder, stored as data under the
// provider's bookmark key. A grant that turns out unusable is forgotten, and its provider is declined for the rest of
// the run. What the constructor takes must live as long as the manager; `applications` may be null. The queries may be
// called on every thread; requestAccess on the main thread. Looking at a folder may take long (a share that does not
// answer): what only reads or changes grants never waits for it.
class AgentLogAccessManager {
 public:
  // Posted with the provider's raw value when a grant was removed, here or by another program.
  static constexpr std::string_view accessRemoved = "com.kesto.Quillmeter.agentLogAccessRemoved";
  using Result = tl::expected<AgentLogLocation, AgentLogAccessError>;

  AgentLogAccessManager(PreferenceStore& defaults, const FolderProbe& probe, AgentSearchPlaces places,
                        InstalledApplications* applications = nullptr);

  // The agents that have a usable location or look installed, in catalogue order.
  std::vector<AgentLogProvider> detectedProviders();
  // The usable location, or nothing; then the stored grant, if there was one, is gone.
  std::optional<AgentLogLocation> location(AgentLogProvider provider);
  // The stored grant as it is, without a look at the folder: what may be shown where nothing may block.
  std::optional<std::filesystem::path> grantedFolder(AgentLogProvider provider) const;
  // Whether its grant turned out unusable in this run and was forgotten.
  bool isDeclined(AgentLogProvider provider) const { return (declined_.load() & bit(provider)) != 0; }
  // Whether the agent looks installed, granted or not.
  bool looksInstalled(AgentLogProvider provider) const;

  // Shows the picker, then grantAccess on what was picked. The result comes on the main thread; not at all when the
  // manager is gone by then.
  void requestAccess(AgentLogProvider provider, std::optional<BatchProgress> batchProgress, FolderPicker& picker,
                     std::function<void(const Result&)> completion);
  // Checks and stores a folder as the user named it.
  Result grantAccess(AgentLogProvider provider, const std::filesystem::path& picked);
  // An error only when the grant could not be taken out of the settings; it is not used any more in this run either
  // way.
  tl::expected<void, PreferenceProblem> removeAccess(AgentLogProvider provider);

  [[nodiscard]] Subscription onAccessRemoved(std::function<void(std::string_view providerRawValue)> callback) {
    return accessRemovedObservers_.add(std::move(callback));
  }

  const AgentSearchPlaces& places() const { return places_; }
  const FolderProbe& probe() const { return probe_; }

 private:
  static constexpr unsigned bit(AgentLogProvider provider) { return 1U << static_cast<unsigned>(provider); }
  std::optional<AgentLogLocation> resolve(AgentLogProvider provider, const std::string& stored) const;
  void forgetUnavailableBookmark(AgentLogProvider provider);
  void forgetWhatIsKnown(AgentLogProvider provider);
  void grantsChanged(const std::vector<std::string>& keys, PreferenceChangeOrigin origin);

  PreferenceStore& defaults_;
  const FolderProbe& probe_;
  const AgentSearchPlaces places_;
  InstalledApplications* const applications_;
  std::mutex mutex_;  // guards the two below and every change of a grant
  std::map<AgentLogProvider, AgentLogLocation> cachedLocations_;
  std::uint64_t generation_ = 0;       // grows when a grant is changed: what was seen of the one before counts no more
  std::atomic<unsigned> declined_{0};  // a bit for each provider
  Observers<std::string_view> accessRemovedObservers_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
  Subscription grantChanges_;
};

}  // namespace quillmeter
