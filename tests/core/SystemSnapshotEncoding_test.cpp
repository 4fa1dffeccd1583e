#include "core/model/SystemSnapshotEncoding.h"

#include <cmath>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace quillmeter {
namespace {

TEST(SystemSnapshotEncoding, whatIsAbsentOrNotFiniteIsLeftOut) {
  SystemSnapshot snapshot;
  snapshot.uploadBytesPerSecond = std::nan("");
  snapshot.updatedAt = Date{1'763'715'600'250'000};
  const auto json = nlohmann::json::parse(encodeSystemSnapshot(snapshot));
  for (const char* key : {"batteryLevel", "batteryFullChargeCapacity", "batteryDesignCapacity", "batteryHealth",
                          "fanRPM", "sensorTemperature", "uploadBytesPerSecond"}) {
    EXPECT_FALSE(json.contains(key)) << key;
  }
  EXPECT_EQ(json["updatedAt"], "2025-11-21T09:00:00.25Z");
  EXPECT_EQ(json["batteryIsCharging"], false);
  EXPECT_EQ(json["cpuUsage"], 0.0);
}

TEST(SystemSnapshotEncoding, aFullRecordHasItsThirtyFields) {
  SystemSnapshot snapshot;
  snapshot.batteryLevel = 0.5;
  snapshot.batteryFullChargeCapacity = 4000;
  snapshot.batteryDesignCapacity = 5000;
  snapshot.batteryHealth = 80;
  snapshot.fanRPM = 1200;
  snapshot.sensorTemperature = 41.5;
  const auto json = nlohmann::json::parse(encodeSystemSnapshot(snapshot));
  EXPECT_EQ(json.size(), 30U);
  EXPECT_EQ(json["batteryFullChargeCapacity"], 4000);
  EXPECT_EQ(json["sensorTemperature"], 41.5);
}

TEST(SystemSnapshotEncoding, textThatIsNoUtf8BreaksNothing) {
  SystemSnapshot snapshot;
  snapshot.networkIP = "\xff";
  EXPECT_EQ(nlohmann::json::parse(encodeSystemSnapshot(snapshot))["networkIP"], "\xEF\xBF\xBD");
}

}  // namespace
}  // namespace quillmeter
