#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <tl/expected.hpp>

namespace quillmeter {

// Bytes stored under a key, not text.
struct PreferenceData {
  std::string bytes;
  friend bool operator==(const PreferenceData&, const PreferenceData&) = default;
};

using PreferenceValue = std::variant<bool, std::int64_t, double, std::string, PreferenceData>;

// What went wrong with a domain. `systemError` is an errno where the system said one, else 0.
struct PreferenceProblem {
  enum class Kind {
    unreadable,   // there, but cannot be read (permission, I/O, no regular file): never overwritten
    unparsable,   // read, but torn or no preference file: values read earlier stay, else there are none
    keptAside,    // an unparsable one was moved to `keptAt` before a new one was written
    unwritable,   // could not be written
    busy,         // another program held the lock for too long
    invalidValue  // a value that cannot be stored (a number that is not finite, text that is not UTF-8)
  };
  Kind kind = Kind::unreadable;
  std::filesystem::path path;
  int systemError = 0;
  std::filesystem::path keptAt;
  friend bool operator==(const PreferenceProblem&, const PreferenceProblem&) = default;
};

// The values that a domain stores. A value of a shape that this program does not write is listed as absent: it is
// there, kept as it is, and read by nobody.
using PreferenceSnapshot = std::map<std::string, std::optional<PreferenceValue>, std::less<>>;
// Keys with their new values; an absent one removes the key.
using PreferenceChanges = std::vector<std::pair<std::string, std::optional<PreferenceValue>>>;

// When reads look whether another program has changed the domain: at each read (one status call), or only at refresh().
enum class PreferenceFreshness { everyRead, whenRefreshed };

// A persistent key-value domain of the user: what was written, never what was registered. Safe on every thread. Other
// programs write it too; what they change is seen at reads or at refresh(), and no write of ours loses what they wrote.
class PreferenceDomain {
 public:
  virtual ~PreferenceDomain() = default;

  // "com.kesto.Quillmeter"
  virtual const std::string& name() const = 0;
  virtual std::optional<PreferenceValue> get(std::string_view key) = 0;
  // Whether anything is stored under `key`, of whatever shape.
  virtual bool contains(std::string_view key) = 0;
  // All that is stored; absent when the domain was never written (or cannot be read).
  virtual std::optional<PreferenceSnapshot> snapshot() = 0;

  // Writes all changes at once or none; gives whether anything was written: a change to what is stored already is none.
  [[nodiscard]] virtual tl::expected<bool, PreferenceProblem> apply(const PreferenceChanges& changes) = 0;
  [[nodiscard]] tl::expected<bool, PreferenceProblem> set(std::string_view key, PreferenceValue value) {
    return apply({{std::string(key), std::move(value)}});
  }
  [[nodiscard]] tl::expected<bool, PreferenceProblem> remove(std::string_view key) {
    return apply({{std::string(key), std::nullopt}});
  }

  // Looks for changes made by others; gives the keys that differ since the last call (whoever noticed it first).
  virtual std::vector<std::string> refresh() = 0;
  virtual void setFreshness(PreferenceFreshness freshness) = 0;
  // Problems noticed since the last call, each once; at most a handful is kept.
  virtual std::vector<PreferenceProblem> takeProblems() = 0;
};

}  // namespace quillmeter
