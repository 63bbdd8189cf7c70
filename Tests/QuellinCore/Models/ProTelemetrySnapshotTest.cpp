#include <gtest/gtest.h>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"

namespace quellin {
namespace {

constexpr Seconds window = ProTelemetrySnapshot::defaultFreshnessWindow;

ProTelemetrySnapshot snapshotAt(double seconds) {
  ProTelemetrySnapshot snapshot;
  snapshot.isAvailable = true;
  snapshot.source = "tool";
  snapshot.sampledAt = instantAt(seconds);
  snapshot.sampleIntervalMilliseconds = 1000;
  return snapshot;
}

TEST(ProTelemetrySnapshotTest, SumsThePowersThatArePresentWhileItIsFresh) {
  ProTelemetrySnapshot snapshot = snapshotAt(1000);
  snapshot.cpuPowerWatts = 1.5;
  snapshot.anePowerWatts = 0.25;
  EXPECT_EQ(snapshot.freshPowerTotal(instantAt(1015), window), 1.75);
  EXPECT_EQ(snapshot.freshPowerTotal(instantAt(1015.001), window), std::nullopt);
  EXPECT_EQ(snapshot.freshPowerTotal(instantAt(900), window), 1.75);
  snapshot.gpuPowerWatts = 4;
  EXPECT_EQ(snapshot.freshPowerTotal(instantAt(1000), Seconds{0}), 5.75);
}

TEST(ProTelemetrySnapshotTest, HasNoTotalWithoutAnyPower) {
  EXPECT_EQ(snapshotAt(1000).freshPowerTotal(instantAt(1000), window), std::nullopt);
  ProTelemetrySnapshot snapshot = snapshotAt(1000);
  snapshot.gpuPowerWatts = 0;
  EXPECT_EQ(snapshot.freshPowerTotal(instantAt(1000), window), 0);
}

TEST(ProTelemetrySnapshotTest, HasNoTotalWhenItIsNotAvailable) {
  ProTelemetrySnapshot snapshot = snapshotAt(1000);
  snapshot.cpuPowerWatts = 1;
  snapshot.isAvailable = false;
  EXPECT_EQ(snapshot.freshPowerTotal(instantAt(1000), window), std::nullopt);
}

TEST(ProTelemetrySnapshotTest, IsFreshForFifteenSecondsByDefault) { EXPECT_EQ(window, Seconds{15}); }

TEST(ProTelemetrySnapshotTest, TellsProcessesApartByTheirIdentifier) {
  ProProcessEnergy process;
  process.pid = 42;
  EXPECT_EQ(process.id(), 42);
}

TEST(ProTelemetrySnapshotTest, EncodesWithoutItsAbsentFields) {
  ProTelemetrySnapshot snapshot = snapshotAt(1740821412.9);
  EXPECT_EQ(encodeJSON(snapshot), R"({"isAvailable":true,"source":"tool","sampledAt":"2025-03-01T09:30:12Z",)"
                                  R"("sampleIntervalMilliseconds":1000,"processes":[]})");
}

TEST(ProTelemetrySnapshotTest, EncodesEveryFieldInDeclarationOrder) {
  ProTelemetrySnapshot snapshot = snapshotAt(0);
  snapshot.processes.push_back({1, "launchd", 12.0, 0.5, 1e-5, 1e16});
  snapshot.cpuPowerWatts = 1;
  snapshot.gpuPowerWatts = 2;
  snapshot.anePowerWatts = 3;
  snapshot.rawSampleSummary = "one/two";
  snapshot.error = "three";
  EXPECT_EQ(encodeJSON(snapshot),
            R"({"isAvailable":true,"source":"tool","sampledAt":"1970-01-01T00:00:00Z",)"
            R"("sampleIntervalMilliseconds":1000,"processes":[{"pid":1,"name":"launchd","energyImpact":12,)"
            R"("cpuTimePercent":0.5,"wakeupsPerSecond":1e-05,"diskBytesPerSecond":1e+16}],"cpuPowerWatts":1,)"
            R"("gpuPowerWatts":2,"anePowerWatts":3,"rawSampleSummary":"one\/two","error":"three"})");
}

}  // namespace
}  // namespace quellin
