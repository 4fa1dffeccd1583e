#pragma once

#include <string>
#include <utility>

#include "platform/PreferenceDomain.h"

namespace quillmeter::ctl {

// The user's preference domain, with one value replaced for this run where the command line says so. Everything else is
// the real domain's, writes too; the replaced value is never stored. Replaced before other threads read; apart from
// that safe on every thread, like the domain, which outlives it.
class PreferenceOverride final : public PreferenceDomain {
 public:
  explicit PreferenceOverride(PreferenceDomain& domain) : domain_(domain) {}

  void replace(std::string_view key, PreferenceValue value) {
    key_ = key;
    value_ = std::move(value);
  }

  const std::string& name() const override { return domain_.name(); }
  std::optional<PreferenceValue> get(std::string_view key) override {
    return replaces(key) ? value_ : domain_.get(key);
  }
  bool contains(std::string_view key) override { return replaces(key) || domain_.contains(key); }
  std::optional<PreferenceSnapshot> snapshot() override { return domain_.snapshot(); }
  tl::expected<bool, PreferenceProblem> apply(const PreferenceChanges& changes) override {
    return domain_.apply(changes);
  }
  std::vector<std::string> refresh() override {
    auto changed = domain_.refresh();
    std::erase_if(changed, [this](const std::string& key) { return replaces(key); });
    return changed;
  }
  void setFreshness(PreferenceFreshness freshness) override { domain_.setFreshness(freshness); }
  std::vector<PreferenceProblem> takeProblems() override { return domain_.takeProblems(); }

 private:
  bool replaces(std::string_view key) const { return value_ && key == key_; }

  PreferenceDomain& domain_;
  std::string key_;
  std::optional<PreferenceValue> value_;
};

}  // namespace quillmeter::ctl
