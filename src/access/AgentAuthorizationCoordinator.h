#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "access/AgentAuthorizationFeedback.h"
#include "access/AgentLogAccessManager.h"
#include "access/model/AgentLogProvider.h"
#include "base/Observers.h"
#include "platform/FolderPicker.h"

namespace quillmeter {

// Leads the user through granting one folder or several in a row, and keeps what to show meanwhile and afterwards. Main
// thread; one flow at a time: who shows it disables its buttons while isConnecting(). A flow asked for during another
// is refused (its completion gets false at once).
class AgentAuthorizationCoordinator {
 public:
  using Completion = std::function<void(bool allConnected)>;

  // Both outlive the coordinator.
  AgentAuthorizationCoordinator(AgentLogAccessManager& accessManager, FolderPicker& picker);
  ~AgentAuthorizationCoordinator();
  AgentAuthorizationCoordinator(const AgentAuthorizationCoordinator&) = delete;
  AgentAuthorizationCoordinator& operator=(const AgentAuthorizationCoordinator&) = delete;

  void connect(AgentLogProvider provider, Completion completion = {});
  // One after another in the given order; ends at the first that is cancelled or fails.
  void connectInSequence(std::vector<AgentLogProvider> providers, Completion completion = {});
  void clearFeedback();

  bool isConnecting() const { return isConnecting_; }
  std::optional<AgentLogProvider> currentProvider() const { return currentProvider_; }
  int completedCount() const { return completedCount_; }
  int totalCount() const { return totalCount_; }
  // Grows at the start and the end of each flow, so that views read the grants again.
  int revision() const { return revision_; }
  const std::optional<AgentAuthorizationFeedback>& feedback() const { return feedback_; }
  // "正在连接 Codex（2/3）" while a picker is open.
  std::optional<std::string> progressText() const;

  // Told on the main thread after any change of the above.
  [[nodiscard]] Subscription onChange(std::function<void()> changed) { return observers_.add(std::move(changed)); }

 private:
  using Result = AgentLogAccessManager::Result;
  void begin(int total);
  void finish(AgentAuthorizationFeedback feedback, const Completion& completion, bool allConnected);
  void requestNext(std::shared_ptr<const std::vector<AgentLogProvider>> providers, Completion completion);
  void finishSequenceEarly(const AgentLogAccessError& error, const Completion& completion);

  AgentLogAccessManager& accessManager_;
  FolderPicker& picker_;
  bool isConnecting_ = false;
  std::optional<AgentLogProvider> currentProvider_;
  int completedCount_ = 0;
  int totalCount_ = 0;
  int revision_ = 0;
  std::optional<AgentAuthorizationFeedback> feedback_;
  Observers<> observers_;
  Subscription accessRemovalObserver_;
  // A picker's answer finds the coordinator by this, and nothing once it is gone.
  std::shared_ptr<AgentAuthorizationCoordinator*> self_;
};

}  // namespace quillmeter
