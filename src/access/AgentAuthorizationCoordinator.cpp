#include "access/AgentAuthorizationCoordinator.h"

#include <cstddef>
#include <utility>

#include "base/L10n.h"

namespace quillmeter {

namespace {

using Feedback = AgentAuthorizationFeedback;

Feedback cancelledFeedback() {
  return {Feedback::Kind::notice, {.format = QM_TR_NOOP("这次没有选择目录，想继续时再点一次。")}};
}

Feedback errorFeedback(const AgentLogAccessError& error) {
  return {Feedback::Kind::error, {.accessError = error}};
}

bool isCancelled(const AgentLogAccessError& error) {
  return error.kind == AgentLogAccessError::Kind::selectionCancelled;
}

}  // namespace

AgentAuthorizationCoordinator::AgentAuthorizationCoordinator(AgentLogAccessManager& accessManager, FolderPicker& picker)
    : accessManager_(accessManager),
      picker_(picker),
      // A success message must not outlive the grant it speaks of.
      accessRemovalObserver_(accessManager.onAccessRemoved([this](std::string_view) { clearFeedback(); })),
      self_(std::make_shared<AgentAuthorizationCoordinator*>(this)) {}

AgentAuthorizationCoordinator::~AgentAuthorizationCoordinator() {
  *self_ = nullptr;
}

void AgentAuthorizationCoordinator::begin(int total) {
  ++revision_;
  feedback_.reset();
  isConnecting_ = true;
  currentProvider_.reset();
  completedCount_ = 0;
  totalCount_ = total;
}

void AgentAuthorizationCoordinator::finish(Feedback feedback, const Completion& completion, bool allConnected) {
  feedback_ = std::move(feedback);
  isConnecting_ = false;
  currentProvider_.reset();
  ++revision_;
  observers_.notify();
  if (completion) completion(allConnected);
}

void AgentAuthorizationCoordinator::clearFeedback() {
  if (!feedback_) return;
  feedback_.reset();
  observers_.notify();
}

void AgentAuthorizationCoordinator::connect(AgentLogProvider provider, Completion completion) {
  if (isConnecting_) {
    if (completion) completion(false);
    return;
  }
  begin(1);
  currentProvider_ = provider;
  observers_.notify();
  accessManager_.requestAccess(
      provider, std::nullopt, picker_,
      [self = std::weak_ptr(self_), provider, completion = std::move(completion)](const Result& result) {
        const auto coordinator = self.lock();
        if (!coordinator || !*coordinator) return;
        if (result) {
          (*coordinator)->completedCount_ = 1;
          (*coordinator)
              ->finish({Feedback::Kind::success,
                        {.format = QM_TR_NOOP("%@ 已连好，正在找可统计的日志。"), .provider = provider}},
                       completion, true);
          return;
        }
        const AgentLogAccessError& error = result.error();
        (*coordinator)->finish(isCancelled(error) ? cancelledFeedback() : errorFeedback(error), completion, false);
      });
}

void AgentAuthorizationCoordinator::connectInSequence(std::vector<AgentLogProvider> providers, Completion completion) {
  if (isConnecting_) {
    if (completion) completion(false);
    return;
  }
  begin(static_cast<int>(providers.size()));
  if (providers.empty()) {
    finish({Feedback::Kind::success, {.format = QM_TR_NOOP("目录都已连好，正在找可统计的日志。")}}, completion, true);
    return;
  }
  requestNext(std::make_shared<const std::vector<AgentLogProvider>>(std::move(providers)), std::move(completion));
}

void AgentAuthorizationCoordinator::requestNext(std::shared_ptr<const std::vector<AgentLogProvider>> providers,
                                                Completion completion) {
  const AgentLogProvider provider = (*providers)[static_cast<std::size_t>(completedCount_)];
  currentProvider_ = provider;
  observers_.notify();
  accessManager_.requestAccess(
      provider, BatchProgress{completedCount_ + 1, totalCount_}, picker_,
      [self = std::weak_ptr(self_), providers, completion = std::move(completion)](const Result& result) mutable {
        const auto locked = self.lock();
        if (!locked || !*locked) return;
        AgentAuthorizationCoordinator& coordinator = **locked;
        if (!result) {
          coordinator.finishSequenceEarly(result.error(), completion);
          return;
        }
        ++coordinator.completedCount_;
        if (coordinator.completedCount_ < coordinator.totalCount_) {
          coordinator.requestNext(std::move(providers), std::move(completion));
          return;
        }
        coordinator.finish(
            {Feedback::Kind::success,
             {.format = QM_TR_NOOP("已连好 %d 个来源，正在找可统计的日志。"), .count = coordinator.completedCount_}},
            completion, true);
      });
}

void AgentAuthorizationCoordinator::finishSequenceEarly(const AgentLogAccessError& error,
                                                        const Completion& completion) {
  if (!isCancelled(error)) {
    finish(errorFeedback(error), completion, false);
  } else if (completedCount_ > 0) {
    finish({Feedback::Kind::notice,
            {.format = QM_TR_NOOP("已连好 %d 个来源，剩下的下次会接着来。"), .count = completedCount_}},
           completion, false);
  } else {
    finish(cancelledFeedback(), completion, false);
  }
}

std::optional<std::string> AgentAuthorizationCoordinator::progressText() const {
  if (!isConnecting_ || !currentProvider_) return std::nullopt;
  return L10n::format(QM_TR("正在连接 %@（%d/%d）"),
                      {title(*currentProvider_), std::to_string(completedCount_ + 1), std::to_string(totalCount_)});
}

}  // namespace quillmeter
