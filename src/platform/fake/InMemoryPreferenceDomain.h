#pragma once

#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/PreferenceDomain.h"

namespace quillmeter {

// A preference domain without a file. It records what was written and can refuse to write.
class InMemoryPreferenceDomain final : public PreferenceDomain {
 public:
  explicit InMemoryPreferenceDomain(std::string name = "com.kesto.Quillmeter") : name_(std::move(name)) {}

  const std::string& name() const override { return name_; }

  std::optional<PreferenceValue> get(std::string_view key) override {
    const std::lock_guard lock(mutex_);
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : found->second;
  }
  bool contains(std::string_view key) override {
    const std::lock_guard lock(mutex_);
    return values_.contains(key);
  }
  // As of a domain that was never written, as long as it is empty.
  std::optional<PreferenceSnapshot> snapshot() override {
    const std::lock_guard lock(mutex_);
    if (values_.empty()) return std::nullopt;
    return values_;
  }
  tl::expected<bool, PreferenceProblem> apply(const PreferenceChanges& changes) override {
    const std::lock_guard lock(mutex_);
    if (refusal_) return tl::unexpected(*refusal_);
    bool isChange = false;
    for (const auto& [key, value] : changes) isChange = change(key, value) || isChange;
    if (isChange) writes_.push_back(changes);
    return isChange;
  }
  std::vector<std::string> refresh() override {
    const std::lock_guard lock(mutex_);
    const auto keys = std::exchange(changedByOthers_, {});
    return {keys.begin(), keys.end()};
  }
  void setFreshness(PreferenceFreshness) override {}
  std::vector<PreferenceProblem> takeProblems() override { return {}; }

  // What another program would do: not recorded as a write of this one.
  void changeByAnotherProgram(const std::string& key, std::optional<PreferenceValue> value) {
    const std::lock_guard lock(mutex_);
    if (change(key, value)) changedByOthers_.insert(key);
  }
  // A value of a shape that nobody reads.
  void putUnknownShape(const std::string& key) {
    const std::lock_guard lock(mutex_);
    values_.insert_or_assign(key, std::nullopt);
  }
  // Writing fails from now on; an absent problem lets it succeed again.
  void refuseWrites(std::optional<PreferenceProblem> problem) {
    const std::lock_guard lock(mutex_);
    refusal_ = std::move(problem);
  }
  // What was written so far, write by write.
  std::vector<PreferenceChanges> writes() const {
    const std::lock_guard lock(mutex_);
    return writes_;
  }

 private:
  bool change(const std::string& key, const std::optional<PreferenceValue>& value) {
    if (!value) return values_.erase(key) > 0;
    const auto found = values_.find(key);
    if (found != values_.end() && found->second == value) return false;
    values_.insert_or_assign(key, value);
    return true;
  }

  const std::string name_;
  mutable std::mutex mutex_;
  PreferenceSnapshot values_;
  std::set<std::string> changedByOthers_;
  std::vector<PreferenceChanges> writes_;
  std::optional<PreferenceProblem> refusal_;
};

}  // namespace quillmeter
