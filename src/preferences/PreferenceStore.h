#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "base/Observers.h"
#include "platform/PreferenceDomain.h"
#include "preferences/Setting.h"

namespace quillmeter {

class MainExecutor;

// Who changed a setting: this program through its store, or another one that writes the same domain.
enum class PreferenceChangeOrigin { thisProgram, anotherProgram };

// The settings as the program reads them: a persistent domain with a layer of registered defaults under it that is
// never written. A stored value of the wrong type counts as absent, so the registered default shows through, and then
// the default of the setting's own row. The domain must live as long as the store. Safe on every thread; changes are
// told on the thread that made them or called refresh(), unless tellOn() names another.
class PreferenceStore {
 public:
  using ChangeObservers = Observers<const std::vector<std::string>&, PreferenceChangeOrigin>;

  explicit PreferenceStore(PreferenceDomain& domain) : domain_(domain) {}

  // Adds defaults to the registration layer; a later one replaces an earlier one of the same key.
  void registerDefaults(const std::vector<std::pair<std::string, PreferenceValue>>& defaults);

  // The stored value if it has the type, else the registered one if it has. A stored integer is a real, too.
  std::optional<std::string> string(std::string_view key) const;
  std::optional<bool> boolean(std::string_view key) const;
  std::optional<std::int64_t> integer(std::string_view key) const;
  std::optional<double> real(std::string_view key) const;
  std::optional<std::string> data(std::string_view key) const;  // bytes
  // Whether any value is stored or registered, of whatever type.
  bool contains(std::string_view key) const;

  // The value of a row of SettingsKeys; its default when there is none.
  std::string value(const StringSetting& setting) const;
  bool value(const BooleanSetting& setting) const;
  std::int64_t value(const IntegerSetting& setting) const;
  double value(const RealSetting& setting) const;
  std::optional<std::string> value(const DataSetting& setting) const;

  [[nodiscard]] tl::expected<void, PreferenceProblem> set(std::string_view key, PreferenceValue value);
  [[nodiscard]] tl::expected<void, PreferenceProblem> setData(std::string_view key, std::string bytes);
  [[nodiscard]] tl::expected<void, PreferenceProblem> remove(std::string_view key);

  // Notices what other programs changed and tells the observers. Cheap when nothing changed: one status call.
  void refresh();
  [[nodiscard]] Subscription onChange(ChangeObservers::Callback callback) {
    return observers_.add(std::move(callback));
  }
  // Grows whenever a value may have changed; for caches of what was derived from settings. Notices others' changes at
  // refresh().
  std::uint64_t revision() const { return revision_.load(); }

  // From now on changes made on other threads than this one (a grant that a scan finds unusable) are told by the
  // executor, so that views need not mind. The executor outlives the store's use.
  void tellOn(MainExecutor& executor);

  // The user-written values, without the registered ones.
  PreferenceDomain& domain() const { return domain_; }

 private:
  template <typename T>
  std::optional<T> typed(std::string_view key) const;
  void notify(std::vector<std::string> keys, PreferenceChangeOrigin origin);
  tl::expected<void, PreferenceProblem> apply(std::string_view key, std::optional<PreferenceValue> value);

  PreferenceDomain& domain_;
  mutable std::mutex mutex_;  // guards registered_
  std::map<std::string, PreferenceValue, std::less<>> registered_;
  ChangeObservers observers_;
  MainExecutor* executor_ = nullptr;
  std::thread::id toldThread_;
  std::atomic<std::uint64_t> revision_{1};
};

}  // namespace quillmeter
