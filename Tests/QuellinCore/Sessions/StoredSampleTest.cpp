#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/PowerSessionCoders.h"
#include "QuellinCore/Sessions/PowerSessionMetrics.h"
#include "QuellinCore/Sessions/Storage/Database.h"
#include "QuellinCore/Sessions/StoredSample.h"
#include "Support/MemoryStore.h"
#include "Support/ProcessRows.h"
#include "Support/SampleStates.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::activity;
using testing_support::energyRow;
using testing_support::stateOnBattery;
using testing_support::telemetry;

class StoredSampleTest : public testing::Test {
 protected:
  /// The point of a stored sample with these blob bytes and columns.
  [[nodiscard]] PowerSamplePoint pointOf(std::string snapshotData, std::optional<bool> acConnected) {
    return PowerSessionMetrics::storedPowerPoint(
        *PowerSessionSample::make({.id = {},
                                   .timestamp = instantAt(100.5),
                                   .snapshotData = std::move(snapshotData),
                                   .processActivityData = {},
                                   .proTelemetryData = {},
                                   .totalWatts = 9.5,
                                   .batteryPercent = 44,
                                   .acConnected = acConnected,
                                   .thermalPressure = 0,
                                   .maxFanRPM = {},
                                   .maxTemperature = {},
                                   .session = nullptr}),
        decoder);
  }

  [[nodiscard]] static std::string encoded(const SystemPowerStateDTO& snapshot) {
    return PowerSessionCoders::encoder.encode(snapshot).value();
  }

  [[nodiscard]] static SystemPowerStateDTO pluggedInAndDraining() {
    SystemPowerState state = stateOnBattery(instantAt(100));
    state.battery->acConnected = true;
    state.battery->wattage = -2;
    return SystemPowerStateDTO(state);
  }

  testing_support::MemoryStore fixture;
  JSONDecoder decoder;
};

TEST_F(StoredSampleTest, ThePointFollowsTheSnapshot) {
  EXPECT_EQ(pointOf(encoded(pluggedInAndDraining()), false),
            (PowerSamplePoint{instantAt(100.5), 9.5, "batterySupplement", "Battery supplement", true, 80}))
      << "watts and time are those of the columns";
}

TEST_F(StoredSampleTest, ASnapshotWithoutBatteryLeavesTheColumnsToSpeak) {
  SystemPowerStateDTO snapshot(testing_support::emptyState(instantAt(100)));
  EXPECT_EQ(pointOf(encoded(snapshot), true),
            (PowerSamplePoint{instantAt(100.5), 9.5, "unavailable", "Unavailable", true, 44}));
}

TEST_F(StoredSampleTest, AnOldSnapshotWithoutSourceIsInferred) {
  SystemPowerStateDTO snapshot = pluggedInAndDraining();
  snapshot.powerSourceKind.reset();
  snapshot.powerSourceLabel.reset();
  const auto point = pointOf(encoded(snapshot), {});
  EXPECT_EQ(point.sourceKind, "batterySupplement");
  EXPECT_EQ(point.sourceLabel, "Battery supplement");
}

TEST_F(StoredSampleTest, KindAndLabelAreInferredEachForItself) {
  SystemPowerStateDTO snapshot = pluggedInAndDraining();
  snapshot.powerSourceKind = "anotherKind";
  snapshot.powerSourceLabel.reset();
  EXPECT_EQ(pointOf(encoded(snapshot), {}).sourceKind, "anotherKind");
  EXPECT_EQ(pointOf(encoded(snapshot), {}).sourceLabel, "Battery supplement");
  snapshot.powerSourceKind.reset();
  snapshot.powerSourceLabel = "Another label";
  EXPECT_EQ(pointOf(encoded(snapshot), {}).sourceKind, "batterySupplement");
  EXPECT_EQ(pointOf(encoded(snapshot), {}).sourceLabel, "Another label");
}

TEST_F(StoredSampleTest, AStoredSourceIsUsedAsItIs) {
  SystemPowerStateDTO snapshot = pluggedInAndDraining();
  snapshot.powerSourceKind = "anotherKind";
  snapshot.powerSourceLabel = "Another label";
  const auto point = pointOf(encoded(snapshot), {});
  EXPECT_EQ(point.sourceKind, "anotherKind");
  EXPECT_EQ(point.sourceLabel, "Another label");
}

TEST_F(StoredSampleTest, ACorruptSnapshotLeavesTheColumnsAlone) {
  for (const std::string bytes : {"", "{", "[]", "{\"battery\":7}"}) {
    EXPECT_EQ(pointOf(bytes, false),
              (PowerSamplePoint{instantAt(100.5), 9.5, "batteryDischarge", "Battery draw", false, 44}));
    EXPECT_EQ(pointOf(bytes, true),
              (PowerSamplePoint{instantAt(100.5), 9.5, "unavailable", "Unavailable", true, 44}));
    EXPECT_EQ(pointOf(bytes, {}),
              (PowerSamplePoint{instantAt(100.5), 9.5, "unavailable", "Unavailable", std::nullopt, 44}));
  }
}

TEST_F(StoredSampleTest, FactsAndBlobsTellTheSame) {
  const auto session = fixture.start(0);
  SystemPowerState idle = testing_support::emptyState(instantAt(2));
  idle.battery.emplace().acConnected = true;
  fixture.store->appendSample(session, stateOnBattery(instantAt(1)), {activity("a", 2), activity("b", 0)},
                              telemetry(1.75, {energyRow("c", 3.0), energyRow("d", {})}));
  fixture.store->appendSample(session, idle, {}, std::nullopt);
  auto unavailable = telemetry(2.5, {energyRow("c", 3.0)});
  unavailable.isAvailable = false;
  fixture.store->appendSample(session, testing_support::emptyState(instantAt(3)), {}, unavailable);
  fixture.store->appendSample(session, testing_support::emptyState(instantAt(4)), {}, telemetry(3, {}));
  int visited = 0;
  visitSamples(*fixture.store, session, [&](const StoredSample& sample) {
    ++visited;
    ASSERT_TRUE(sample.facts.has_value());
    StoredSample withoutFacts{sample.columns, std::nullopt, sample.blobs};
    EXPECT_EQ(powerPoint(sample, decoder), powerPoint(withoutFacts, decoder));
    EXPECT_EQ(processData(sample, decoder), processData(withoutFacts, decoder));
  });
  EXPECT_EQ(visited, 4);
}

TEST_F(StoredSampleTest, UndecodableProcessDataContributesNothing) {
  const auto session = fixture.start(0);
  const auto sample = fixture.store->appendSample(session, stateOnBattery(instantAt(1)), {activity("a", 2)},
                                                  telemetry(1, {energyRow("c", 3.0)}));
  sample->setProTelemetryData("{}");
  EXPECT_THAT(processData(storedSample(*sample), decoder).contributions,
              ElementsAre(Contribution{"a", false, 2}));
  EXPECT_EQ(processData(storedSample(*sample), decoder).telemetrySampledAt, std::nullopt);
  sample->setProcessActivityData("[1]");
  EXPECT_THAT(processData(storedSample(*sample), decoder).contributions, IsEmpty());
}

TEST_F(StoredSampleTest, WhatTheStoreCannotReadIsEmpty) {
  const auto session = fixture.start(0);
  const auto sample =
      fixture.store->appendSample(session, stateOnBattery(instantAt(1)), {activity("a", 2)}, std::nullopt);
  fixture.store->container().database().execute("DROP TABLE SampleBlobs");
  EXPECT_THROW(std::ignore = sample->blobs(), StoreError);
  EXPECT_EQ(storedSample(*sample).blobs(), SampleBlobs());
  const auto summary = PowerSessionMetrics::summary(*session, {sample}, decoder);
  EXPECT_EQ(summary.averageWatts, 12.5) << "the columns speak";
  EXPECT_THAT(summary.topContributors, IsEmpty());
}

TEST_F(StoredSampleTest, AWalkShowsSamplesByTimestampSavedOrNot) {
  const auto session = fixture.start(0);
  for (const double second : {5.0, 3.0, 4.0}) {
    fixture.store->appendSample(session, stateOnBattery(instantAt(second)), {}, std::nullopt);
  }
  const auto seconds = [&] {
    std::vector<double> result;
    visitSamples(*fixture.store, session, [&](const StoredSample& sample) {
      result.push_back(sample.columns.timestamp.time_since_epoch().count());
    });
    return result;
  };
  EXPECT_THAT(seconds(), ElementsAre(3, 4, 5));
  const auto sample = fixture.store->samples(session).front();
  SampleColumns columns = sample->columns();
  columns.timestamp = instantAt(9);
  sample->setColumns(columns);
  EXPECT_THAT(seconds(), ElementsAre(4, 5, 9)) << "what is not saved yet counts, too";
}

TEST_F(StoredSampleTest, BlobsThatCannotBeReadAreAnErrorOfTheWalkSavedOrNot) {
  const auto session = fixture.start(0);
  fixture.store->appendSample(session, stateOnBattery(instantAt(1)), {}, std::nullopt);
  fixture.store->container().database().execute("DROP TABLE SampleBlobs");
  const auto readBlobs = [&] {
    visitSamples(*fixture.store, session, [](const StoredSample& sample) { (void)sample.blobs(); });
  };
  EXPECT_THROW(readBlobs(), StoreError);
  session->setTitle("changed");
  EXPECT_THROW(readBlobs(), StoreError);
}

}  // namespace
}  // namespace quellin
