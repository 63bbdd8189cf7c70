#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/RunningSummary.h"
#include "Support/MemoryStore.h"
#include "Support/ProcessRows.h"
#include "Support/SampleStates.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing_support::activity;
using testing_support::emptyState;
using testing_support::energyRow;
using testing_support::stateDrawing;
using testing_support::stateOnBattery;
using testing_support::telemetry;

class RunningSummaryTest : public testing::Test {
 protected:
  void ingest(double second, std::optional<double> watts, std::int64_t percent = 80) {
    running.ingest(stateDrawing(instantAt(second), watts, percent), {}, std::nullopt);
  }

  [[nodiscard]] const PowerSessionSummary& summary() { return running.materialize(*session); }

  testing_support::MemoryStore fixture;
  std::shared_ptr<PowerSession> session = fixture.start(1000);
  RunningSummary running;
};

TEST_F(RunningSummaryTest, IsEmptyAtFirst) {
  EXPECT_EQ(running.summary(), PowerSessionSummary::empty());
  EXPECT_EQ(summary(), PowerSessionSummary::empty());
}

TEST_F(RunningSummaryTest, AnEndedSessionWithoutSamplesHasADuration) {
  fixture.store->stop(session, instantAt(1060));
  EXPECT_EQ(summary().durationSeconds, 60);
}

TEST_F(RunningSummaryTest, IntegratesByTheTrapezoidRule) {
  ingest(1000, 10);
  ingest(1060, 20);
  EXPECT_EQ(summary().totalWattHours, 0.25);
  EXPECT_EQ(summary().averageWatts, 15);
  EXPECT_EQ(summary().durationSeconds, 60);
  EXPECT_EQ(summary().minWatts, 10);
  EXPECT_EQ(summary().maxWatts, 20);
}

TEST_F(RunningSummaryTest, ASnapshotWithoutWattsCountsButBreaksNothing) {
  ingest(1000, 10);
  ingest(1030, {});
  ingest(1060, 20);
  EXPECT_EQ(summary().sampleCount, 3);
  EXPECT_EQ(summary().wattSampleCount, 2);
  EXPECT_EQ(running.summary().minWatts, 10);
  ASSERT_THAT(running.summary().powerSegments, SizeIs(3));
}

TEST_F(RunningSummaryTest, OneReadingIsTheAverage) {
  ingest(1030, 12);
  EXPECT_EQ(summary().averageWatts, 12);
  EXPECT_EQ(summary().totalWattHours, std::nullopt);
}

TEST_F(RunningSummaryTest, LastsUntilTheSampleRecordedLast) {
  ingest(1060, 10);
  ingest(1010, 10);
  EXPECT_EQ(summary().durationSeconds, 10) << "the clock was set back";
  EXPECT_EQ(summary().totalWattHours, 0);
  fixture.store->stop(session, instantAt(1005));
  EXPECT_EQ(summary().durationSeconds, 5) << "the end of the session counts alone";
}

TEST_F(RunningSummaryTest, FollowsBatteryAndMaxima) {
  ingest(1000, 10, 81);
  running.ingest(stateOnBattery(instantAt(1010)), {}, std::nullopt);
  ingest(1020, {});
  EXPECT_EQ(summary().batteryPercentStart, 81);
  EXPECT_EQ(summary().batteryPercentEnd, 80);
  EXPECT_EQ(summary().batteryPercentDelta, -1);
  EXPECT_EQ(summary().maxThermalPressure, 2);
  EXPECT_EQ(summary().maxFanRPM, 1300);
  EXPECT_EQ(summary().maxTemperature, 51.25);
}

TEST_F(RunningSummaryTest, MixedSourcesHaveNoCommonAverage) {
  ingest(1000, 10);
  ingest(1060, 10);
  EXPECT_EQ(summary().averageWattsNote, std::nullopt);
  SystemPowerState silicon = emptyState(instantAt(1120));
  silicon.power.emplace().systemPower = 4;
  running.ingest(silicon, {}, std::nullopt);
  EXPECT_EQ(summary().averageWatts, std::nullopt);
  EXPECT_EQ(summary().totalWattHours, std::nullopt);
  EXPECT_EQ(summary().averageWattsNote, PowerSessionSummary::mixedSourcesNote);
  EXPECT_EQ(summary().totalWattHoursNote, PowerSessionSummary::mixedSourcesNote);
}

TEST_F(RunningSummaryTest, SegmentsStayTheSameHoweverOftenTheyAreAskedFor) {
  RunningSummary asked;
  RunningSummary askedOnce;
  for (int second = 0; second < 12; ++second) {
    SystemPowerState state = emptyState(instantAt(1000 + second));
    if (second % 5 < 2) state.battery.emplace().wattage = second % 3 == 0 ? -5 : 0;
    asked.ingest(state, {}, std::nullopt);
    askedOnce.ingest(state, {}, std::nullopt);
    asked.materialize(*session);
    asked.materialize(*session);
  }
  EXPECT_EQ(asked.materialize(*session), askedOnce.materialize(*session));
  EXPECT_GT(asked.summary().powerSegments.size(), 3U);
}

TEST_F(RunningSummaryTest, PicksUpContributorsByName) {
  running.ingest(stateOnBattery(instantAt(1000)), {},
                 telemetry(1000, {energyRow("clang", 3.0), energyRow("clang", 4.0), energyRow("idle", 0.0),
                                  energyRow("less", -1.0)}));
  EXPECT_THAT(summary().topContributors,
              ElementsAre(PowerSessionContributor{"clang", "powermetrics", 7, "derived"}));
  EXPECT_EQ(running.lastProTelemetrySampledAt(), instantAt(1000));
}

TEST_F(RunningSummaryTest, AvailableTelemetryStandsInForProcessActivity) {
  const std::vector activities{activity("make", 2)};
  running.ingest(stateOnBattery(instantAt(1000)), activities, telemetry(1000, {}));
  EXPECT_THAT(summary().topContributors, IsEmpty());
  auto unavailable = telemetry(1001, {energyRow("clang", 3.0)});
  unavailable.isAvailable = false;
  running.ingest(stateOnBattery(instantAt(1001)), activities, unavailable);
  EXPECT_THAT(summary().topContributors,
              ElementsAre(PowerSessionContributor{"make", "proc_pid_rusage", 2, "estimated"}));
  EXPECT_EQ(running.lastProTelemetrySampledAt(), instantAt(1000));
}

TEST_F(RunningSummaryTest, StoredSamplesFollowTheSameRules) {
  auto unavailable = telemetry(1002, {energyRow("clang", 9.0)});
  unavailable.isAvailable = false;
  const std::vector activities{activity("make", 2)};
  fixture.store->appendSample(session, stateOnBattery(instantAt(1000)), activities, std::nullopt);
  fixture.store->appendSample(session, stateOnBattery(instantAt(1001)), activities,
                              telemetry(1001, {energyRow("clang", 3.0)}));
  fixture.store->appendSample(session, stateOnBattery(instantAt(1002)), activities, unavailable);
  fixture.store->appendSample(session, stateOnBattery(instantAt(1003)), activities, telemetry(1003, {}));
  JSONDecoder decoder;
  visitSamples(*fixture.store, session,
               [&](const StoredSample& sample) { running.ingestStored(sample, decoder); });
  EXPECT_THAT(summary().topContributors,
              ElementsAre(PowerSessionContributor{"make", "proc_pid_rusage", 4, "estimated"},
                          PowerSessionContributor{"clang", "powermetrics", 3, "derived"}));
  EXPECT_EQ(running.lastProTelemetrySampledAt(), instantAt(1003));
  EXPECT_EQ(summary().sampleCount, 4);
  EXPECT_EQ(summary().batteryPercentStart, 80);
  EXPECT_EQ(summary().maxFanRPM, 1300);
}

}  // namespace
}  // namespace quellin
