#include "platform/linux/JsonPreferenceDocument.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "platform/linux/Base64.h"

namespace quillmeter {

namespace {

using Json = nlohmann::json;
using Member = std::pair<std::string, std::optional<PreferenceValue>>;

constexpr int maximumDepth = 512;
constexpr const char* dataKey = "data";

// Collects the members of the outermost object in their order. The parser behind it works without recursion.
class MemberCollector final : public nlohmann::json_sax<Json> {
 public:
  std::vector<Member> takeMembers() { return std::move(members_); }

  bool null() override { return store(std::nullopt); }
  bool boolean(bool value) override { return store(value); }
  bool number_integer(std::int64_t value) override { return store(value); }
  bool number_unsigned(std::uint64_t value) override {
    if (value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
      return store(static_cast<std::int64_t>(value));
    return store(static_cast<double>(value));
  }
  bool number_float(double value, const std::string&) override { return store(value); }
  bool string(std::string& value) override {
    if (depth_ != 2 || !inDataObject_) return store(PreferenceValue(std::move(value)));
    if (auto bytes = decodeBase64(value)) members_.back().second = PreferenceData{std::move(*bytes)};
    return true;
  }
  bool binary(Json::binary_t&) override { return false; }

  bool start_object(std::size_t) override {
    inDataObject_ = false;
    return enter();
  }
  bool key(std::string& name) override {
    if (depth_ == 1) {
      members_.emplace_back(std::move(name), std::nullopt);
      keysInObject_ = 0;
    } else if (depth_ == 2 && objectAtDepthTwo_) {
      ++keysInObject_;
      inDataObject_ = keysInObject_ == 1 && name == dataKey;
      if (!inDataObject_) members_.back().second.reset();  // more than the one key: not ours
    }
    return true;
  }
  bool end_object() override { return leave(); }
  bool start_array(std::size_t) override {
    if (depth_ == 0) return false;
    if (depth_ == 1) objectAtDepthTwo_ = false;
    return enter(false);
  }
  bool end_array() override { return leave(); }
  bool parse_error(std::size_t, const std::string&, const Json::exception&) override { return false; }

 private:
  bool store(std::optional<PreferenceValue> value) {
    if (depth_ == 0) return false;
    if (depth_ == 1) members_.back().second = std::move(value);
    return true;
  }
  bool enter(bool object = true) {
    if (depth_ == 1) objectAtDepthTwo_ = object;
    return ++depth_ <= maximumDepth;
  }
  bool leave() {
    --depth_;
    inDataObject_ = false;
    return true;
  }

  std::vector<Member> members_;
  int depth_ = 0;
  int keysInObject_ = 0;
  bool objectAtDepthTwo_ = false;
  bool inDataObject_ = false;
};

// Walks over the text of an object that is known to be valid and cuts out the values of its members.
class ValueSlicer {
 public:
  explicit ValueSlicer(std::string_view text) : text_(text), position_(text.find('{') + 1) {}

  std::string_view next() {
    skipTo('"');
    skipString();
    skipTo(':');
    ++position_;
    while (isSpace(text_[position_])) ++position_;
    const std::size_t start = position_;
    skipValue();
    return text_.substr(start, position_ - start);
  }

 private:
  static bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
  void skipTo(char wanted) { position_ = text_.find(wanted, position_); }
  void skipString() {
    ++position_;
    while (text_[position_] != '"') position_ += text_[position_] == '\\' ? 2 : 1;
    ++position_;
  }
  void skipValue() {
    int depth = 0;
    do {
      const char c = text_[position_];
      if (c == '"') {
        skipString();
        continue;
      }
      if (c == '{' || c == '[') ++depth;
      if (c == '}' || c == ']') --depth;
      ++position_;
    } while (depth > 0 || !endsScalar(text_[position_]));
  }
  static bool endsScalar(char c) { return c == ',' || c == '}' || isSpace(c); }

  std::string_view text_;
  std::size_t position_;
};

// Absent when `text` is not UTF-8.
std::optional<std::string> jsonString(std::string_view text) {
  try {
    return Json(text).dump();
  } catch (const Json::exception&) {
    return std::nullopt;
  }
}

std::optional<std::string> jsonText(const PreferenceValue& value) {
  if (const auto* data = std::get_if<PreferenceData>(&value))
    return R"({"data": ")" + encodeBase64(data->bytes) + "\"}";
  if (const auto* text = std::get_if<std::string>(&value)) return jsonString(*text);
  if (const auto* truth = std::get_if<bool>(&value)) return *truth ? "true" : "false";
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return std::to_string(*integer);
  const double real = std::get<double>(value);
  if (!std::isfinite(real)) return std::nullopt;
  return Json(real).dump();  // always with a point or an exponent, so that it is read back as a real number
}

}  // namespace

std::optional<JsonPreferenceEntry> makeJsonPreferenceEntry(const PreferenceValue& value) {
  auto text = jsonText(value);
  if (!text) return std::nullopt;
  return JsonPreferenceEntry{value, std::move(*text)};
}

bool isJsonPreferenceKey(std::string_view key) {
  return jsonString(key).has_value();
}

std::optional<JsonPreferenceEntries> parseJsonPreferences(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) return std::nullopt;  // the parser would take it for the end
  MemberCollector collector;
  if (!Json::sax_parse(text, &collector)) return std::nullopt;
  JsonPreferenceEntries entries;
  ValueSlicer slicer(text);
  for (auto& [key, value] : collector.takeMembers()) {
    entries.insert_or_assign(std::move(key), JsonPreferenceEntry{std::move(value), std::string(slicer.next())});
  }
  return entries;
}

std::string serializeJsonPreferences(const JsonPreferenceEntries& entries) {
  std::string text = "{";
  for (const auto& [key, entry] : entries) {
    if (text.size() > 1) text += ',';
    text += "\n  ";
    text += jsonString(key).value_or("\"\"");
    text += ": ";
    text += entry.text;
  }
  text += entries.empty() ? "}\n" : "\n}\n";
  return text;
}

}  // namespace quillmeter
