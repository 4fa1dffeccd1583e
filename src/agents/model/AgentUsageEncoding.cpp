#include "agents/model/AgentUsageEncoding.h"

#include <array>
#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

#include "base/Iso8601.h"

namespace quillmeter {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::array<std::pair<AgentScanStatus::Kind, const char*>, 5> statusKeys = {{
    {AgentScanStatus::Kind::reading, "reading"},
    {AgentScanStatus::Kind::monitoringDisabled, "monitoringDisabled"},
    {AgentScanStatus::Kind::missingAuthorization, "missingAuthorization"},
    {AgentScanStatus::Kind::incompleteLogs, "incompleteLogs"},
    {AgentScanStatus::Kind::noLogs, "noLogs"},
}};

bool carriesNames(AgentScanStatus::Kind kind) {
  return kind == AgentScanStatus::Kind::missingAuthorization || kind == AgentScanStatus::Kind::incompleteLogs;
}

// Each record is described once, by a function that hands every field with its key to a writer or a reader.
template <typename Metrics, typename Visitor>
void visitMetrics(Metrics& metrics, Visitor& visitor) {
  visitor.field("totalTokens", metrics.totalTokens);
  visitor.field("inputTokens", metrics.inputTokens);
  visitor.field("outputTokens", metrics.outputTokens);
  visitor.field("cachedTokens", metrics.cachedTokens);
  visitor.field("sessionCount", metrics.sessionCount);
}

template <typename Bucket, typename Visitor>
void visitBucket(Bucket& bucket, Visitor& visitor) {
  visitor.field("start", bucket.start);
  visitor.field("metrics", bucket.metrics);
}

template <typename Provider, typename Visitor>
void visitProvider(Provider& provider, Visitor& visitor) {
  visitor.field("id", provider.id);
  visitor.field("name", provider.name);
  visitor.field("symbol", provider.symbol);
  visitor.field("todayMetrics", provider.todayMetrics);
  visitor.field("weekMetrics", provider.weekMetrics);
  visitor.field("monthMetrics", provider.monthMetrics);
  visitor.field("currentSessionMetrics", provider.currentSessionMetrics);
  visitor.field("isDetected", provider.isDetected);
  visitor.field("lastActivity", provider.lastActivity);
  visitor.field("unreadableSourceCount", provider.unreadableSourceCount);
}

template <typename Session, typename Visitor>
void visitSession(Session& session, Visitor& visitor) {
  visitor.field("id", session.id);
  visitor.field("providerID", session.providerID);
  visitor.field("sessionID", session.sessionID);
  visitor.field("lastActivity", session.lastActivity);
  visitor.field("totalTokens", session.totalTokens);
}

template <typename Snapshot, typename Visitor>
void visitSnapshot(Snapshot& snapshot, Visitor& visitor) {
  visitor.field("todayMetrics", snapshot.todayMetrics);
  visitor.field("weekMetrics", snapshot.weekMetrics);
  visitor.field("monthMetrics", snapshot.monthMetrics);
  visitor.field("currentSessionMetrics", snapshot.currentSessionMetrics);
  visitor.field("hourlyUsage", snapshot.hourlyUsage);
  visitor.field("weeklyUsage", snapshot.weeklyUsage);
  visitor.field("monthlyUsage", snapshot.monthlyUsage);
  visitor.field("providers", snapshot.providers);
  visitor.field("primaryLimitUsed", snapshot.primaryLimitUsed);
  visitor.field("weeklyLimitUsed", snapshot.weeklyLimitUsed);
  visitor.field("primaryResetAt", snapshot.primaryResetAt);
  visitor.field("weeklyResetAt", snapshot.weeklyResetAt);
  visitor.field("lastUpdated", snapshot.lastUpdated);
  visitor.field("scanStatus", snapshot.scanStatus);
  visitor.field("recentSessions", snapshot.recentSessions);
}

// ---- writing

class Writer {
 public:
  template <typename Value>
  void field(const char* key, const Value& value) {
    object_[key] = encode(value);
  }
  template <typename Value>
  void field(const char* key, const std::optional<Value>& value) {
    if (value) object_[key] = encode(*value);
  }
  Json take() { return std::move(object_); }

  static Json encode(bool value) { return value; }
  static Json encode(std::int64_t value) { return value; }
  static Json encode(double value) { return value; }
  static Json encode(const std::string& value) { return value; }
  static Json encode(Date date) { return formatIso8601(date); }
  static Json encode(const AgentTokenMetrics& metrics) {
    return record(metrics, visitMetrics<const AgentTokenMetrics, Writer>);
  }
  static Json encode(const AgentUsageBucket& bucket) {
    return record(bucket, visitBucket<const AgentUsageBucket, Writer>);
  }
  static Json encode(const AgentProviderUsage& usage) {
    return record(usage, visitProvider<const AgentProviderUsage, Writer>);
  }
  static Json encode(const AgentActivitySession& session) {
    return record(session, visitSession<const AgentActivitySession, Writer>);
  }
  static Json encode(const AgentUsageSnapshot& snapshot) {
    return record(snapshot, visitSnapshot<const AgentUsageSnapshot, Writer>);
  }
  static Json encode(const AgentScanStatus& status) {
    Json payload = Json::object();
    if (carriesNames(status.kind)) payload["_0"] = status.names;
    for (const auto& [kind, key] : statusKeys) {
      if (kind == status.kind) return Json{{key, std::move(payload)}};
    }
    return Json::object();
  }
  template <typename Element>
  static Json encode(const std::vector<Element>& elements) {
    Json array = Json::array();
    for (const Element& element : elements) array.push_back(encode(element));
    return array;
  }

 private:
  template <typename Record>
  static Json record(const Record& value, void (*visit)(const Record&, Writer&)) {
    Writer writer;
    visit(value, writer);
    return writer.take();
  }

  Json object_ = Json::object();
};

// A path in an id need not be UTF-8; such bytes are shown as the replacement character instead of failing.
std::string dump(const Json& json, int indent) {
  return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

// ---- reading

class Reader {
 public:
  explicit Reader(const Json& object) : object_(object), valid_(object.is_object()) {}

  template <typename Value>
  void field(const char* key, Value& value) {
    const Json* found = find(key);
    valid_ = valid_ && found != nullptr && decode(*found, value);
  }
  template <typename Value>
  void field(const char* key, std::optional<Value>& value) {
    const Json* found = find(key);
    if (found == nullptr || found->is_null()) return;
    valid_ = valid_ && decode(*found, value.emplace());
  }
  bool valid() const { return valid_; }

  static bool decode(const Json& json, bool& value) { return json.is_boolean() && (value = json.get<bool>(), true); }
  static bool decode(const Json& json, std::int64_t& value) {
    if (!json.is_number_integer()) return false;
    if (json.is_number_unsigned() && json.get<std::uint64_t>() > std::uint64_t{INT64_MAX}) return false;
    value = json.get<std::int64_t>();
    return true;
  }
  static bool decode(const Json& json, double& value) { return json.is_number() && (value = json.get<double>(), true); }
  static bool decode(const Json& json, std::string& value) {
    return json.is_string() && (value = json.get<std::string>(), true);
  }
  static bool decode(const Json& json, Date& date) {
    if (!json.is_string()) return false;
    const std::optional<Date> parsed = parseIso8601(json.get_ref<const std::string&>());
    if (parsed) date = *parsed;
    return parsed.has_value();
  }
  static bool decode(const Json& json, AgentTokenMetrics& metrics) {
    return record(json, metrics, visitMetrics<AgentTokenMetrics, Reader>);
  }
  static bool decode(const Json& json, AgentUsageBucket& bucket) {
    return record(json, bucket, visitBucket<AgentUsageBucket, Reader>);
  }
  static bool decode(const Json& json, AgentProviderUsage& usage) {
    return record(json, usage, visitProvider<AgentProviderUsage, Reader>);
  }
  static bool decode(const Json& json, AgentActivitySession& session) {
    return record(json, session, visitSession<AgentActivitySession, Reader>);
  }
  static bool decode(const Json& json, AgentUsageSnapshot& snapshot) {
    return record(json, snapshot, visitSnapshot<AgentUsageSnapshot, Reader>);
  }
  static bool decode(const Json& json, AgentScanStatus& status) {
    if (!json.is_object() || json.size() != 1) return false;
    for (const auto& [kind, key] : statusKeys) {
      const auto payload = json.find(key);
      if (payload == json.end()) continue;
      if (!payload->is_object()) return false;
      status = {kind, {}};
      if (!carriesNames(kind)) return true;
      const auto names = payload->find("_0");
      return names != payload->end() && decode(*names, status.names);
    }
    return false;
  }
  template <typename Element>
  static bool decode(const Json& json, std::vector<Element>& elements) {
    if (!json.is_array()) return false;
    elements.clear();
    for (const Json& element : json) {
      if (!decode(element, elements.emplace_back())) return false;
    }
    return true;
  }

 private:
  template <typename Record>
  static bool record(const Json& json, Record& value, void (*visit)(Record&, Reader&)) {
    Reader reader(json);
    if (reader.valid()) visit(value, reader);
    return reader.valid();
  }

  const Json* find(const char* key) const {
    const auto found = object_.find(key);
    return found == object_.end() ? nullptr : &*found;
  }

  const Json& object_;
  bool valid_;
};

template <typename Value>
std::optional<Value> decodeText(std::string_view text) {
  const Json json = Json::parse(text, nullptr, false);
  Value value;
  if (json.is_discarded() || !Reader::decode(json, value)) return std::nullopt;
  return value;
}

}  // namespace

std::string encodeAgentUsageSnapshot(const AgentUsageSnapshot& snapshot, int indent) {
  return dump(Writer::encode(snapshot), indent);
}

std::string encodeAgentScanStatus(const AgentScanStatus& status) {
  return dump(Writer::encode(status), -1);
}

std::optional<AgentUsageSnapshot> decodeAgentUsageSnapshot(std::string_view json) {
  return decodeText<AgentUsageSnapshot>(json);
}

std::optional<AgentScanStatus> decodeAgentScanStatus(std::string_view json) {
  return decodeText<AgentScanStatus>(json);
}

}  // namespace quillmeter
