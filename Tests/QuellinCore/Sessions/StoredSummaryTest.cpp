#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/PowerSessionMetrics.h"
#include "QuellinCore/Sessions/Storage/Database.h"
#include "Support/MemoryStore.h"
#include "Support/ProcessRows.h"
#include "Support/SampleStates.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using testing_support::activity;
using testing_support::emptyState;
using testing_support::energyRow;
using testing_support::stateDrawing;
using testing_support::stateOnBattery;
using testing_support::telemetry;

/// Summaries by both ways: over the objects, and by the store's own walk. They must not differ.
class StoredSummaryTest : public testing::Test {
 protected:
  void append(double second, std::optional<double> watts, std::int64_t percent = 80) {
    fixture.store->appendSample(session, stateDrawing(instantAt(second), watts, percent), {}, std::nullopt);
  }

  void appendSilicon(double second, double watts) {
    SystemPowerState state = emptyState(instantAt(second));
    state.power.emplace().systemPower = watts;
    fixture.store->appendSample(session, state, {}, std::nullopt);
  }

  [[nodiscard]] PowerSessionSummary summary() {
    JSONDecoder decoder;
    auto samples = fixture.store->samples(session);
    std::ranges::reverse(samples);  // of equal times, any order is as good as another here
    const auto overObjects = PowerSessionMetrics::summary(*session, samples, decoder);
    EXPECT_EQ(fixture.store->summary(session), overObjects);
    return overObjects;
  }

  testing_support::MemoryStore fixture;
  std::shared_ptr<PowerSession> session = fixture.start(1000);
};

TEST_F(StoredSummaryTest, ASessionWithoutSamplesIsEmpty) {
  EXPECT_EQ(summary(), PowerSessionSummary::empty());
  fixture.store->stop(session, instantAt(5000));
  EXPECT_EQ(summary(), PowerSessionSummary::empty()) << "also when it has lasted";
}

TEST_F(StoredSummaryTest, FiguresOfOneSourceAreOfTheWholeSession) {
  append(1000, 10, 80);
  append(1060, 20, 79);
  append(1120, {});
  const auto result = summary();
  EXPECT_EQ(result.durationSeconds, 120);
  EXPECT_EQ(result.sampleCount, 3);
  EXPECT_EQ(result.wattSampleCount, 2);
  EXPECT_EQ(result.minWatts, 10);
  EXPECT_EQ(result.maxWatts, 20);
  EXPECT_EQ(result.batteryPercentStart, 80);
  EXPECT_EQ(result.batteryPercentEnd, 79);
  EXPECT_EQ(result.batteryPercentDelta, -1);
}

TEST_F(StoredSummaryTest, TheAverageIsWeightedByTheDurationOfTheSession) {
  append(1060, 10);
  append(1120, 20);
  const auto result = summary();
  EXPECT_EQ(result.totalWattHours, 0.25);
  EXPECT_EQ(result.durationSeconds, 120);
  EXPECT_EQ(result.averageWatts, 7.5);
  EXPECT_EQ(result.averageWattsNote, std::nullopt);
  EXPECT_EQ(result.totalWattHoursNote, std::nullopt);
}

TEST_F(StoredSummaryTest, WithoutTimeTheReadingsCountAlike) {
  append(900, 10);
  append(900, 20);
  const auto result = summary();
  EXPECT_EQ(result.durationSeconds, 0) << "the samples lie before the start";
  EXPECT_EQ(result.averageWatts, 15);
  EXPECT_EQ(result.totalWattHours, 0);
}

TEST_F(StoredSummaryTest, OneReadingIsTheAverage) {
  append(1060, 12);
  EXPECT_EQ(summary().averageWatts, 12);
  EXPECT_EQ(summary().totalWattHours, std::nullopt);
}

TEST_F(StoredSummaryTest, TheSessionLastsUntilTheLaterOfItsEndAndItsLastSample) {
  append(1060, 12);
  append(1010, 12);
  EXPECT_EQ(summary().durationSeconds, 60);
  fixture.store->stop(session, instantAt(1030));
  EXPECT_EQ(summary().durationSeconds, 60);
  fixture.store->stop(session, instantAt(1090));
  EXPECT_EQ(summary().durationSeconds, 90);
  fixture.store->stop(session, instantAt(10));
  EXPECT_EQ(summary().durationSeconds, 60);
}

TEST_F(StoredSummaryTest, MixedSourcesHaveNoCommonAverage) {
  append(1000, 10);
  append(1060, 10);
  appendSilicon(1120, 4);
  const auto result = summary();
  EXPECT_EQ(result.averageWatts, std::nullopt);
  EXPECT_EQ(result.totalWattHours, std::nullopt);
  EXPECT_EQ(result.averageWattsNote, "Mixed power sources; use powerSegments for per-source averages.");
  EXPECT_EQ(result.totalWattHoursNote, result.averageWattsNote);
  ASSERT_THAT(result.powerSegments, SizeIs(2));
  EXPECT_EQ(result.powerSegments[0].averageWatts, 10);
  EXPECT_EQ(result.powerSegments[1].averageWatts, 4);
  EXPECT_EQ(result.minWatts, 4);
  EXPECT_EQ(result.maxWatts, 10);
}

TEST_F(StoredSummaryTest, SegmentsOfOneKindAreNoMixture) {
  SystemPowerState state = emptyState(instantAt(1000));
  state.battery.emplace().wattage = 0;
  state.power.emplace().systemPower = 4;
  fixture.store->appendSample(session, state, {}, std::nullopt);
  state.battery->acConnected = true;
  state.timestamp = instantAt(1060);
  fixture.store->appendSample(session, state, {}, std::nullopt);
  const auto result = summary();
  EXPECT_THAT(result.powerSegments, SizeIs(2));
  EXPECT_EQ(result.averageWatts, 4);
  EXPECT_EQ(result.averageWattsNote, std::nullopt);
}

TEST_F(StoredSummaryTest, MaximaAreThoseOfTheColumns) {
  append(1000, 10);
  fixture.store->appendSample(session, stateOnBattery(instantAt(1010)), {}, std::nullopt);
  append(1020, 10);
  const auto result = summary();
  EXPECT_EQ(result.maxThermalPressure, 2);
  EXPECT_EQ(result.maxTemperature, 51.25);
  EXPECT_EQ(result.maxFanRPM, 1300);
}

TEST_F(StoredSummaryTest, BothKindsOfProcessDataOfASampleCount) {
  fixture.store->appendSample(session, stateOnBattery(instantAt(1000)), {activity("make", 2)},
                              telemetry(1000, {energyRow("clang", 3.0), energyRow("clang", 4.0)}));
  auto unavailable = telemetry(1001, {energyRow("clang", 1.0)});
  unavailable.isAvailable = false;
  fixture.store->appendSample(session, stateOnBattery(instantAt(1001)), {activity("make", 3)}, unavailable);
  const std::vector<PowerSessionContributor> wanted{{"clang", "powermetrics", 8, "derived"},
                                                    {"make", "proc_pid_rusage", 5, "estimated"}};
  EXPECT_EQ(summary().topContributors, wanted);
  JSONDecoder decoder;
  EXPECT_EQ(PowerSessionMetrics::topContributors(fixture.store->samples(session), decoder), wanted);
}

TEST_F(StoredSummaryTest, ADamagedRowIsLeftOut) {
  for (const double second : {1000, 1060, 1120}) append(second, 30);
  fixture.store->container().database().execute(
      "DROP TRIGGER editedSample; UPDATE PowerSessionSample SET totalWatts = 99 WHERE timestamp = 1060");
  const auto result = summary();
  EXPECT_EQ(result.sampleCount, 2);
  EXPECT_EQ(result.totalWattHours, 1);
  EXPECT_EQ(fixture.store->coverage(session), (SessionCoverage{120, 0, 1, 120})) << "2 seconds asked for";
  const std::string document = fixture.store->exportJSONL(session, instantAt(0));
  EXPECT_EQ(std::ranges::count(document, '\n'), 3);
}

TEST_F(StoredSummaryTest, ACorruptSnapshotCountsByItsColumns) {
  append(1000, 10);
  append(1060, 20);
  fixture.store->samples(session).back()->setSnapshotData("no JSON");
  const auto result = summary();
  EXPECT_EQ(result.totalWattHours, 0.25);
  ASSERT_THAT(result.powerSegments, SizeIs(1));
}

}  // namespace
}  // namespace quellin
