#include "demo/StrictObject.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "base/Iso8601.h"

namespace quillmeter {

using nlohmann::json;

struct StrictObject::Document {
  json root;
  std::optional<std::string> mistake;
};

struct StrictObject::Node {
  Node(std::shared_ptr<Document> owner, const json& content, std::string place)
      : document(std::move(owner)), object(content), path(std::move(place)) {}
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;
  ~Node() {
    for (const auto& [key, value] : object.items()) {
      if (!taken.contains(key)) fail(key, "unknown key");
    }
  }

  const json* find(std::string_view key) const {
    const auto found = object.find(std::string(key));
    if (found == object.end()) return nullptr;
    taken.emplace(key);
    return &*found;
  }
  std::string placeOf(std::string_view key) const {
    return path.empty() ? std::string(key) : path + "." + std::string(key);
  }
  void fail(std::string_view key, std::string_view what) const {
    if (!document->mistake) document->mistake = placeOf(key) + ": " + std::string(what);
  }

  std::shared_ptr<Document> document;
  const json& object;
  const std::string path;
  mutable std::set<std::string, std::less<>> taken;
};

StrictObject::StrictObject(std::string_view text) {
  auto document = std::make_shared<Document>();
  document->root = json::parse(text, nullptr, false, true);
  if (!document->root.is_object()) {
    document->mistake = document->root.is_discarded() ? "not valid JSON" : "not a JSON object";
    document->root = json::object();
  }
  const json& root = document->root;
  node_ = std::make_shared<const Node>(std::move(document), root, std::string());
}

template <typename Value, typename Accepts>
void StrictObject::take(std::string_view key, Value& value, Accepts accepts, std::string_view what) const {
  const json* found = node_->find(key);
  if (found == nullptr) return;
  if (accepts(*found)) {
    value = found->get<Value>();
  } else {
    node_->fail(key, what);
  }
}

void StrictObject::read(std::string_view key, bool& value) const {
  take(
      key, value, [](const json& found) { return found.is_boolean(); }, "neither true nor false");
}

void StrictObject::read(std::string_view key, std::int64_t& value) const {
  take(
      key, value, [](const json& found) { return found.is_number_integer(); }, "not a whole number");
}

void StrictObject::read(std::string_view key, int& value) const {
  const auto fits = [](const json& found) {
    if (!found.is_number_integer()) return false;
    const auto number = found.get<std::int64_t>();
    return number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
  };
  take(key, value, fits, "not a whole number");
}

void StrictObject::read(std::string_view key, double& value) const {
  take(
      key, value, [](const json& found) { return found.is_number(); }, "not a number");
}

void StrictObject::read(std::string_view key, std::string& value) const {
  take(
      key, value, [](const json& found) { return found.is_string(); }, "not a text");
}

void StrictObject::read(std::string_view key, Date& value) const {
  std::string text;
  const json* found = node_->find(key);
  if (found == nullptr) return;
  if (found->is_string()) text = found->get<std::string>();
  const auto date = parseIso8601(text);
  if (date) value = *date;
  if (!date) node_->fail(key, "not a date such as \"2026-03-18T14:26:00+08:00\"");
}

void StrictObject::read(std::string_view key, std::vector<double>& values) const {
  const auto accepts = [](const json& found) {
    return found.is_array() && !found.empty() &&
           std::ranges::all_of(found, [](const json& value) { return value.is_number(); });
  };
  take(key, values, accepts, "not a list of numbers");
}

std::optional<StrictObject> StrictObject::object(std::string_view key) const {
  const json* found = node_->find(key);
  if (found == nullptr) return std::nullopt;
  if (!found->is_object()) {
    node_->fail(key, "not an object");
    return std::nullopt;
  }
  return StrictObject(std::make_shared<const Node>(node_->document, *found, node_->placeOf(key)));
}

std::vector<StrictObject> StrictObject::objects(std::string_view key) const {
  std::vector<StrictObject> result;
  const json* found = node_->find(key);
  if (found == nullptr) return result;
  if (!found->is_array()) node_->fail(key, "not a list");
  for (std::size_t index = 0; found->is_array() && index < found->size(); ++index) {
    const std::string name = std::string(key) + "[" + std::to_string(index) + "]";
    if (!(*found)[index].is_object()) {
      node_->fail(name, "not an object");
      break;
    }
    result.push_back(
        StrictObject(std::make_shared<const Node>(node_->document, (*found)[index], node_->placeOf(name))));
  }
  return result;
}

std::optional<PreferenceValue> StrictObject::preferenceValue(std::string_view key) const {
  const json* found = node_->find(key);
  if (found == nullptr) return std::nullopt;
  if (found->is_boolean()) return found->get<bool>();
  if (found->is_number_integer()) return found->get<std::int64_t>();
  if (found->is_number()) return found->get<double>();
  if (found->is_string()) return found->get<std::string>();
  if (found->is_array()) return PreferenceData{found->dump()};  // a layout
  node_->fail(key, "no value of a setting");
  return std::nullopt;
}

bool StrictObject::has(std::string_view key) const {
  return node_->object.contains(std::string(key));
}

bool StrictObject::isNull(std::string_view key) const {
  return has(key) && node_->find(key)->is_null();
}

std::vector<std::string> StrictObject::keys() const {
  std::vector<std::string> names;
  for (const auto& [key, value] : node_->object.items()) names.push_back(key);
  return names;
}

void StrictObject::fail(std::string_view key, std::string_view what) const {
  node_->fail(key, what);
}

StrictObject::Mistake StrictObject::mistake() const {
  return {node_->document, &node_->document->mistake};
}

}  // namespace quillmeter
