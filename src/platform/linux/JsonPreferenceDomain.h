#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "base/Clock.h"
#include "platform/PreferenceDomain.h"

namespace quillmeter {

struct JsonPreferenceOptions {
  bool synchronize = true;  // fsync when writing; off for files in memory
  std::chrono::milliseconds lockPatience{2000};
};

// A preference domain in one JSON file: key to value; data as {"data": "<base64>"}. Values of other shapes stay as they
// were written, byte for byte. Written atomically under a lock file beside it ("<file>.lock"), reread and merged by key
// under that lock, so that programs writing at once lose nothing. A file that cannot be parsed is moved aside
// ("<file>.unreadable-<time>") before a new one is written; one that cannot be read is left alone and writing fails.
// Created files are 0600, folders 0700.
class JsonPreferenceDomain final : public PreferenceDomain {
 public:
  static constexpr std::size_t maximumFileBytes = 16'777'216;
  static constexpr int maximumKeptAside =
      32;  // with so many unparsable files kept, writing fails instead of adding one more

  // `clock` names files kept aside; it must live as long as the domain.
  JsonPreferenceDomain(std::string name, std::filesystem::path file, const Clock& clock,
                       JsonPreferenceOptions options = {});
  ~JsonPreferenceDomain() override;

  const std::string& name() const override;
  std::optional<PreferenceValue> get(std::string_view key) override;
  bool contains(std::string_view key) override;
  std::optional<PreferenceSnapshot> snapshot() override;
  [[nodiscard]] tl::expected<bool, PreferenceProblem> apply(const PreferenceChanges& changes) override;
  std::vector<std::string> refresh() override;
  void setFreshness(PreferenceFreshness freshness) override;
  std::vector<PreferenceProblem> takeProblems() override;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quillmeter
