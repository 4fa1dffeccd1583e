#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tl/expected.hpp>

#include "base/Date.h"
#include "platform/PreferenceDomain.h"

namespace quillmeter {

// One object of a JSON document that people write: each value is taken by its key and must be of its type, and a key
// that nobody took by the time the object goes is a mistake. The first mistake of a document is kept, with the place it
// stands at ("battery.percent: not a whole number"); what is wrong leaves the target as it is. A copy reads the same
// object.
class StrictObject {
 public:
  // The document's own object; a text that is no JSON object has its mistake already.
  explicit StrictObject(std::string_view text);

  // Each does nothing where the key is missing.
  void read(std::string_view key, bool& value) const;
  void read(std::string_view key, int& value) const;
  void read(std::string_view key, std::int64_t& value) const;
  void read(std::string_view key, double& value) const;
  void read(std::string_view key, std::string& value) const;
  void read(std::string_view key, Date& value) const;  // ISO 8601
  void read(std::string_view key, std::vector<double>& values) const;
  // For any of the types above.
  template <typename Value>
  void read(std::string_view key, std::optional<Value>& value) const {
    if (isNull(key)) {
      value.reset();
    } else if (has(key)) {
      read(key, value.emplace());
    }
  }
  // As above, but the key has to be there.
  template <typename Value>
  Value required(std::string_view key) const {
    Value value{};
    if (!has(key)) fail(std::string(key), "missing");
    read(key, value);
    return value;
  }
  std::optional<StrictObject> object(std::string_view key) const;
  std::vector<StrictObject> objects(std::string_view key) const;
  // A Boolean, a number or a text.
  std::optional<PreferenceValue> preferenceValue(std::string_view key) const;

  bool has(std::string_view key) const;
  bool isNull(std::string_view key) const;
  // In the order of the alphabet.
  std::vector<std::string> keys() const;
  void fail(std::string_view key, std::string_view what) const;
  // Of the whole document; outlives the object.
  using Mistake = std::shared_ptr<const std::optional<std::string>>;
  Mistake mistake() const;

 private:
  struct Document;
  struct Node;
  explicit StrictObject(std::shared_ptr<const Node> node) : node_(std::move(node)) {}
  template <typename Value, typename Accepts>
  void take(std::string_view key, Value& value, Accepts accepts, std::string_view what) const;

  std::shared_ptr<const Node> node_;
};

}  // namespace quillmeter
