#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSessionRecorderFixture.h"
#include "Support/Deaths.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;
using testing::SizeIs;
using testing_support::energyRow;
using testing_support::expectRefusedElsewhere;
using testing_support::stateOnBattery;
using testing_support::telemetry;
using PowerSessionRecorderTest = testing_support::PowerSessionRecorderFixture;

TEST_F(PowerSessionRecorderTest, IsIdleAtFirst) {
  EXPECT_THAT(recorder->activeSession(), IsNull());
  EXPECT_EQ(recorder->activeSummary(), PowerSessionSummary::empty());
  EXPECT_EQ(recorder->lastError(), std::nullopt);
  EXPECT_EQ(recorder->processSampleInterval(), Seconds{10});
  EXPECT_EQ(recorder->store(), fixture.store);
  EXPECT_THAT(recorder->sessions(), IsEmpty());
}

TEST_F(PowerSessionRecorderTest, RecordsNothingWithoutASession) {
  offer(1000);
  EXPECT_THAT(completed, ElementsAre(1000));
  EXPECT_TRUE(background->work.empty());
  EXPECT_EQ(recorder->activeSummary(), PowerSessionSummary::empty());
}

TEST_F(PowerSessionRecorderTest, StartingBeginsASession) {
  const auto session = start();
  ASSERT_THAT(session, NotNull());
  EXPECT_EQ(session->title(), "Test");
  EXPECT_EQ(recorder->activeSession(), session);
  EXPECT_EQ(fixture.store->activeSession(), session);
  EXPECT_EQ(recorder->activeSummary(), PowerSessionSummary::empty());
}

TEST_F(PowerSessionRecorderTest, StoresOneSampleForEachSnapshot) {
  const auto session = start();
  record(1000);
  record(1002);
  EXPECT_THAT(secondsOf(session), ElementsAre(1000, 1002));
  EXPECT_THAT(completed, ElementsAre(1000, 1002));
  EXPECT_EQ(recorder->activeSummary().sampleCount, 2);
  EXPECT_EQ(recorder->activeSummary(), recorder->summary(session));
}

TEST_F(PowerSessionRecorderTest, MeasuresProcessesWhenTheIntervalIsOver) {
  const auto session = start();
  for (int second = 1000; second <= 1020; second += 2) record(second);
  EXPECT_THAT(measurements, ElementsAre(std::pair(5, Seconds{0.35}), std::pair(5, Seconds{0.35}),
                                        std::pair(5, Seconds{0.35})));
  std::vector<double> withActivity;
  for (const auto& sample : fixture.store->samples(session)) {
    if (sample->processActivityData()) withActivity.push_back(sample->elapsedSeconds());
  }
  EXPECT_THAT(withActivity, ElementsAre(0, 10, 20));
  EXPECT_EQ(recorder->lastProcessSampleAt(), instantAt(1020));
  EXPECT_THAT(recorder->activeSummary().topContributors,
              ElementsAre(PowerSessionContributor{"make", "proc_pid_rusage", 6, "estimated"}));
}

TEST_F(PowerSessionRecorderTest, AvailableTelemetryReplacesTheMeasurement) {
  start();
  record(1000, telemetry(999, {energyRow("clang", 3.0)}));
  EXPECT_THAT(measurements, IsEmpty());
  EXPECT_EQ(recorder->lastProcessSampleAt(), std::nullopt);
  record(1002);
  EXPECT_THAT(measurements, SizeIs(1));
  record(1012, telemetry(1000, {}));
  EXPECT_EQ(recorder->lastProcessSampleAt(), instantAt(1002));
}

TEST_F(PowerSessionRecorderTest, StaleTelemetryReplacesTheMeasurementToo) {
  const auto session = start();
  record(1000, telemetry(999, {}));
  record(1020, telemetry(999, {}));
  EXPECT_THAT(measurements, IsEmpty());
  EXPECT_EQ(fixture.store->samples(session).back()->proTelemetryData(), std::nullopt);
}

TEST_F(PowerSessionRecorderTest, UnavailableTelemetryIsAsIfNoneWereThere) {
  const auto session = start();
  auto unavailable = telemetry(999, {energyRow("clang", 3.0)});
  unavailable.isAvailable = false;
  record(1000, unavailable);
  EXPECT_THAT(measurements, SizeIs(1));
  EXPECT_EQ(fixture.store->samples(session).front()->proTelemetryData(), std::nullopt);
  EXPECT_EQ(recorder->lastProTelemetrySampledAt(), std::nullopt);
}

TEST_F(PowerSessionRecorderTest, StoresTheSameTelemetryOnce) {
  const auto session = start();
  record(1000, telemetry(999, {energyRow("clang", 3.0)}));
  record(1002, telemetry(999, {energyRow("clang", 3.0)}));
  record(1004, telemetry(998, {energyRow("clang", 3.0)}));
  record(1006, telemetry(999.5, {energyRow("clang", 4.0)}));
  std::vector<bool> hasTelemetry;
  for (const auto& sample : fixture.store->samples(session)) {
    hasTelemetry.push_back(sample->proTelemetryData().has_value());
  }
  EXPECT_THAT(hasTelemetry, ElementsAre(true, false, false, true));
  EXPECT_EQ(recorder->lastProTelemetrySampledAt(), instantAt(999.5));
  EXPECT_EQ(recorder->activeSummary().topContributors.front().score, 7);
}

TEST_F(PowerSessionRecorderTest, StoppingEndsTheSession) {
  const auto session = start();
  record(1000, telemetry(999, {}));
  record(1002);
  recorder->stop(instantAt(1003));
  EXPECT_EQ(session->status(), PowerSessionStatus::completed);
  EXPECT_EQ(session->endedAt(), instantAt(1003));
  EXPECT_THAT(recorder->activeSession(), IsNull());
  EXPECT_EQ(recorder->activeSummary(), PowerSessionSummary::empty());
  EXPECT_EQ(recorder->lastProcessSampleAt(), std::nullopt);
  EXPECT_EQ(recorder->lastProTelemetrySampledAt(), std::nullopt);
  recorder->stop(instantAt(1009));
  EXPECT_EQ(session->endedAt(), instantAt(1003)) << "there is nothing to stop";
}

TEST_F(PowerSessionRecorderTest, StartingAgainGoesOnWithAnEmptySummaryUntilTheNextRebuild) {
  const auto session = start();
  record(1000, telemetry(999, {}));
  record(1002);
  EXPECT_EQ(start(2000), session);
  EXPECT_EQ(recorder->activeSummary(), PowerSessionSummary::empty());
  EXPECT_EQ(recorder->lastProcessSampleAt(), std::nullopt);
  EXPECT_EQ(recorder->lastProTelemetrySampledAt(), std::nullopt);
  record(1004);
  EXPECT_EQ(recorder->activeSummary().sampleCount, 1);
  recorder->refreshSummary();
  EXPECT_EQ(recorder->activeSummary().sampleCount, 3);
  EXPECT_EQ(recorder->lastProTelemetrySampledAt(), instantAt(999));
}

TEST_F(PowerSessionRecorderTest, GoesOnWithTheSessionThatIsStillActive) {
  const auto session = start();
  record(1000, telemetry(999, {energyRow("clang", 3.0)}));
  record(1002);
  const PowerSessionSummary before = recorder->activeSummary();
  recorder = makeRecorder();
  EXPECT_EQ(recorder->activeSession(), session);
  EXPECT_EQ(recorder->activeSummary(), before);
  EXPECT_EQ(recorder->lastProTelemetrySampledAt(), instantAt(999));
  EXPECT_EQ(recorder->lastProcessSampleAt(), std::nullopt);
  record(1004, telemetry(999, {}));
  EXPECT_EQ(recorder->activeSummary().sampleCount, 3);
  EXPECT_EQ(fixture.store->samples(session).back()->proTelemetryData(), std::nullopt);
}

TEST_F(PowerSessionRecorderTest, RefreshingFollowsTheStore) {
  const auto session = fixture.start(1000);
  fixture.store->appendSample(session, stateOnBattery(instantAt(1000)), {}, std::nullopt);
  recorder->refreshActiveSession();
  EXPECT_EQ(recorder->activeSession(), session);
  EXPECT_EQ(recorder->activeSummary().sampleCount, 1);
  record(1002);
  fixture.store->stop(session, instantAt(1003));
  recorder->refreshActiveSession();
  EXPECT_THAT(recorder->activeSession(), IsNull());
  EXPECT_EQ(recorder->activeSummary(), PowerSessionSummary::empty());
  EXPECT_EQ(recorder->lastProcessSampleAt(), instantAt(1002)) << "a rebuild leaves it alone";
}

TEST_F(PowerSessionRecorderTest, DeletingTheActiveSessionLeavesNone) {
  const auto session = start();
  record(1000, telemetry(999, {}));
  recorder->remove(session);
  EXPECT_THAT(recorder->activeSession(), IsNull());
  EXPECT_THAT(recorder->sessions(), IsEmpty());
  EXPECT_EQ(recorder->activeSummary(), PowerSessionSummary::empty());
  EXPECT_EQ(recorder->lastProTelemetrySampledAt(), std::nullopt);
}

TEST_F(PowerSessionRecorderTest, DeletingAnotherSessionKeepsTheActiveOne) {
  const auto first = start();
  recorder->stop(instantAt(1100));
  const auto second = start(2000);
  record(2000);
  recorder->remove(first);
  EXPECT_EQ(recorder->activeSession(), second);
  EXPECT_EQ(recorder->activeSummary().sampleCount, 1);
  EXPECT_THAT(recorder->sessions(), ElementsAre(second));
}

TEST_F(PowerSessionRecorderTest, AFailureIsToldUntilTheNextSuccess) {
  start();
  record(1000);
  const PowerSessionSummary before = recorder->activeSummary();
  recorder->record(stateThatCannotBeStored(1002), std::nullopt);
  ASSERT_TRUE(recorder->lastError().has_value());
  EXPECT_THAT(*recorder->lastError(), HasSubstr("sensors[0].temperature"));
  EXPECT_EQ(recorder->activeSummary(), before);
  record(1004);
  EXPECT_EQ(recorder->lastError(), std::nullopt);
  EXPECT_EQ(recorder->activeSummary().sampleCount, 2);
}

TEST_F(PowerSessionRecorderTest, StartAndStopClearTheErrorToo) {
  start();
  recorder->record(stateThatCannotBeStored(1002), telemetry(1, {}));
  start();
  EXPECT_EQ(recorder->lastError(), std::nullopt);
  recorder->record(stateThatCannotBeStored(1002), telemetry(2, {}));
  EXPECT_TRUE(recorder->lastError().has_value());
  recorder->stop(instantAt(1100));
  EXPECT_EQ(recorder->lastError(), std::nullopt);
}

TEST_F(PowerSessionRecorderTest, WhatASnapshotBroughtCountsAsTakenWhenItCannotBeStored) {
  const auto session = start();
  recorder->record(stateThatCannotBeStored(1000), std::nullopt);
  finishMeasurement();
  EXPECT_TRUE(recorder->lastError().has_value());
  EXPECT_EQ(recorder->lastProcessSampleAt(), instantAt(1000));
  recorder->record(stateThatCannotBeStored(1002), telemetry(1001, {}));
  EXPECT_EQ(recorder->lastProTelemetrySampledAt(), instantAt(1001));
  record(1004, telemetry(1001, {}));
  EXPECT_EQ(fixture.store->samples(session).back()->proTelemetryData(), std::nullopt);
}

TEST_F(PowerSessionRecorderTest, AClockSetBackPutsTheNextMeasurementOff) {
  start();
  record(1000);
  record(500);
  EXPECT_THAT(measurements, SizeIs(1));
}

TEST_F(PowerSessionRecorderTest, RefreshingTheSummaryKeepsTheSession) {
  const auto session = start();
  record(1000);
  fixture.store->stop(session, instantAt(1060));
  recorder->refreshSummary();
  EXPECT_EQ(recorder->activeSession(), session);
  EXPECT_EQ(recorder->activeSummary().durationSeconds, 60);
}

TEST_F(PowerSessionRecorderTest, ExportsWithThePresentTime) {
  const auto session = start();
  record(1000);
  fixture.clock.set(instantAt(1741089600));
  EXPECT_EQ(recorder->exportJSONL(session), fixture.store->exportJSONL(session, instantAt(1741089600)));
}

TEST(PowerSessionRecorderDeathTest, OnlyTheMainExecutorMayCallIt) {
  const testing_support::MemoryStore fixture;
  PowerSessionRecorder recorder(fixture.executor, fixture.store, Seconds{10});
  expectRefusedElsewhere([&] { recorder.stop(instantAt(0)); });
  expectRefusedElsewhere([&] { recorder.record({}, std::nullopt); });
  expectRefusedElsewhere([&] { (void)recorder.activeSession(); });
}

}  // namespace
}  // namespace quellin
