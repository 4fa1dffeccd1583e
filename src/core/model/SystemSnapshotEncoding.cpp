#include "core/model/SystemSnapshotEncoding.h"

#include <cmath>

#include <nlohmann/json.hpp>

#include "base/Iso8601.h"

namespace quillmeter {

namespace {

using Json = nlohmann::ordered_json;

class Writer {
 public:
  void field(const char* key, const std::string& value) { json_[key] = value; }
  void field(const char* key, bool value) { json_[key] = value; }
  void field(const char* key, double value) {
    if (std::isfinite(value)) json_[key] = value;
  }
  void field(const char* key, std::int64_t value) { json_[key] = value; }
  void field(const char* key, Date value) { json_[key] = formatIso8601(value); }
  template <typename Value>
  void field(const char* key, const std::optional<Value>& value) {
    if (value) field(key, *value);
  }
  const Json& json() const { return json_; }

 private:
  Json json_ = Json::object();
};

void writeMachine(Writer& writer, const SystemSnapshot& snapshot) {
  writer.field("cpuUsage", snapshot.cpuUsage);
  writer.field("cpuUser", snapshot.cpuUser);
  writer.field("cpuSystem", snapshot.cpuSystem);
  writer.field("memoryUsage", snapshot.memoryUsage);
  writer.field("memoryApp", snapshot.memoryApp);
  writer.field("memoryWired", snapshot.memoryWired);
  writer.field("memoryCompressed", snapshot.memoryCompressed);
  writer.field("diskUsage", snapshot.diskUsage);
  writer.field("diskUsed", snapshot.diskUsed);
  writer.field("diskFree", snapshot.diskFree);
  writer.field("diskTotal", snapshot.diskTotal);
}

void writeBattery(Writer& writer, const SystemSnapshot& snapshot) {
  writer.field("batteryLevel", snapshot.batteryLevel);
  writer.field("batteryTime", snapshot.batteryTime);
  writer.field("batteryCycles", snapshot.batteryCycles);
  writer.field("batteryTemperature", snapshot.batteryTemperature);
  writer.field("batteryState", snapshot.batteryState);
  writer.field("batteryIsCharging", snapshot.batteryIsCharging);
  writer.field("batteryACPowered", snapshot.batteryACPowered);
  writer.field("batteryFullChargeCapacity", snapshot.batteryFullChargeCapacity);
  writer.field("batteryDesignCapacity", snapshot.batteryDesignCapacity);
  writer.field("batteryHealth", snapshot.batteryHealth);
}

}  // namespace

std::string encodeSystemSnapshot(const SystemSnapshot& snapshot, int indent) {
  Writer writer;
  writeMachine(writer, snapshot);
  writeBattery(writer, snapshot);
  writer.field("uploadSpeed", snapshot.uploadSpeed);
  writer.field("downloadSpeed", snapshot.downloadSpeed);
  writer.field("networkIP", snapshot.networkIP);
  writer.field("uploadBytesPerSecond", snapshot.uploadBytesPerSecond);
  writer.field("downloadBytesPerSecond", snapshot.downloadBytesPerSecond);
  writer.field("fanRPM", snapshot.fanRPM);
  writer.field("thermalState", snapshot.thermalState);
  writer.field("sensorTemperature", snapshot.sensorTemperature);
  writer.field("updatedAt", snapshot.updatedAt);
  // Texts come from the kernel and the bus in part: what is no UTF-8 is replaced.
  return writer.json().dump(indent, ' ', false, Json::error_handler_t::replace);
}

}  // namespace quillmeter
