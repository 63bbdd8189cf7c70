#include <limits>
#include <memory>
#include <thread>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/PowerSessionRecorder.h"
#include "Support/Deaths.h"
#include "Support/ManualBackground.h"
#include "Support/MemoryStore.h"
#include "Support/ProcessRows.h"
#include "Support/SampleStates.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;
using testing::SizeIs;
using testing_support::activity;
using testing_support::energyRow;
using testing_support::expectRefusedElsewhere;
using testing_support::ManualBackground;
using testing_support::stateOnBattery;
using testing_support::telemetry;

/// A recorder over a store in memory, whose measurements the test lets happen one by one.
class PowerSessionRecorderTest : public testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<PowerSessionRecorder> makeRecorder(Seconds interval = Seconds{10}) {
    return std::make_unique<PowerSessionRecorder>(
        fixture.executor, fixture.store, interval,
        [this](int limit, Seconds duration) {
          measurements.emplace_back(limit, duration);
          return std::vector{activity("make", 2)};
        },
        std::make_unique<ManualBackground>(background), fixture.clock);
  }

  std::shared_ptr<PowerSession> start(double second = 1000) {
    return recorder->start("Test", PowerSessionSource::app, 2, instantAt(second));
  }

  /// Records a snapshot of `second`, without letting a measurement happen.
  void offer(double second, const std::optional<ProTelemetrySnapshot>& proTelemetry = {}) {
    recorder->record(stateOnBattery(instantAt(second)), proTelemetry,
                     [this, second] { completed.push_back(second); });
  }

  /// Lets the oldest measurement happen and its result arrive.
  void finishMeasurement() {
    ASSERT_TRUE(background->runOne()) << "nothing is being measured";
    fixture.executor->runPosted();
  }

  /// Records a snapshot to the end.
  void record(double second, const std::optional<ProTelemetrySnapshot>& proTelemetry = {}) {
    offer(second, proTelemetry);
    while (background->runOne()) fixture.executor->runPosted();
  }

  /// When the samples of a session were taken.
  [[nodiscard]] std::vector<double> secondsOf(const std::shared_ptr<PowerSession>& session) const {
    std::vector<double> seconds;
    for (const auto& sample : fixture.store->samples(session)) {
      seconds.push_back(sample->timestamp().time_since_epoch().count());
    }
    return seconds;
  }

  /// A snapshot that has no JSON form.
  [[nodiscard]] static SystemPowerState stateThatCannotBeStored(double second) {
    SystemPowerState state = stateOnBattery(instantAt(second));
    state.sensors.front().temperature = std::numeric_limits<double>::quiet_NaN();
    return state;
  }

  testing_support::MemoryStore fixture;
  std::shared_ptr<ManualBackground::Controls> background = std::make_shared<ManualBackground::Controls>();
  std::vector<std::pair<int, Seconds>> measurements;
  std::vector<double> completed;
  std::unique_ptr<PowerSessionRecorder> recorder = makeRecorder();
};

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

TEST_F(PowerSessionRecorderTest, TheMainExecutorStaysFreeWhileProcessesAreMeasured) {
  const auto session = start();
  offer(1000);
  EXPECT_THAT(secondsOf(session), IsEmpty());
  EXPECT_THAT(completed, IsEmpty());
  EXPECT_EQ(recorder->lastProcessSampleAt(), std::nullopt);
  finishMeasurement();
  EXPECT_THAT(secondsOf(session), ElementsAre(1000));
  EXPECT_THAT(completed, ElementsAre(1000));
  EXPECT_EQ(recorder->lastProcessSampleAt(), instantAt(1000));
}

TEST_F(PowerSessionRecorderTest, SnapshotsMayOvertakeOneThatIsBeingMeasured) {
  const auto session = start();
  offer(1000);
  offer(1002, telemetry(1001, {energyRow("clang", 3.0)}));
  EXPECT_THAT(completed, ElementsAre(1002));
  EXPECT_EQ(recorder->activeSummary().sampleCount, 1);
  finishMeasurement();
  EXPECT_THAT(completed, ElementsAre(1002, 1000));
  EXPECT_THAT(secondsOf(session), ElementsAre(1000, 1002)) << "read by timestamp";
  EXPECT_EQ(recorder->activeSummary().sampleCount, 2);
  EXPECT_EQ(recorder->activeSummary().durationSeconds, 0) << "until the sample recorded last";
  recorder->refreshSummary();
  EXPECT_EQ(recorder->activeSummary().durationSeconds, 2);
}

TEST_F(PowerSessionRecorderTest, BeforeTheFirstMeasurementHasEndedAnotherIsDue) {
  const auto session = start();
  offer(1000);
  offer(1002);
  EXPECT_EQ(background->work.size(), 2U);
  finishMeasurement();
  EXPECT_EQ(recorder->lastProcessSampleAt(), instantAt(1000));
  finishMeasurement();
  EXPECT_EQ(recorder->lastProcessSampleAt(), instantAt(1002));
  EXPECT_THAT(secondsOf(session), ElementsAre(1000, 1002));
}

TEST_F(PowerSessionRecorderTest, ASnapshotWhoseSessionWasStoppedMeanwhileIsDropped) {
  const auto session = start();
  offer(1000);
  recorder->stop(instantAt(1001));
  finishMeasurement();
  EXPECT_THAT(secondsOf(session), IsEmpty());
  EXPECT_THAT(completed, ElementsAre(1000));
  EXPECT_EQ(recorder->activeSummary(), PowerSessionSummary::empty());
  EXPECT_EQ(recorder->lastProcessSampleAt(), std::nullopt);
  EXPECT_EQ(recorder->lastError(), std::nullopt);
}

TEST_F(PowerSessionRecorderTest, ASnapshotOfOneSessionIsNotStoredInTheNext) {
  const auto first = start();
  offer(1000);
  recorder->stop(instantAt(1001));
  const auto second = start(1001);
  finishMeasurement();
  EXPECT_THAT(secondsOf(first), IsEmpty());
  EXPECT_THAT(secondsOf(second), IsEmpty());
  EXPECT_EQ(recorder->lastProcessSampleAt(), std::nullopt);
  record(1002);
  EXPECT_THAT(secondsOf(second), ElementsAre(1002));
}

TEST_F(PowerSessionRecorderTest, StartingAgainDoesNotDropTheSnapshotOfTheSameSession) {
  const auto session = start();
  offer(1000);
  EXPECT_EQ(start(1001), session);
  finishMeasurement();
  EXPECT_THAT(secondsOf(session), ElementsAre(1000));
  EXPECT_EQ(recorder->activeSummary().sampleCount, 1);
}

TEST_F(PowerSessionRecorderTest, ASnapshotWhoseSessionWasDeletedMeanwhileIsDropped) {
  const auto session = start();
  offer(1000);
  recorder->remove(session);
  finishMeasurement();
  EXPECT_THAT(completed, ElementsAre(1000));
  EXPECT_EQ(recorder->lastError(), std::nullopt);
  EXPECT_EQ(recorder->activeSummary(), PowerSessionSummary::empty());
}

TEST_F(PowerSessionRecorderTest, ARefreshDuringAMeasurementDropsNothing) {
  const auto session = start();
  offer(1000);
  recorder->refreshActiveSession();
  finishMeasurement();
  EXPECT_THAT(secondsOf(session), ElementsAre(1000));
}

TEST_F(PowerSessionRecorderTest, DestroyingTheRecorderDropsTheSnapshotInFlight) {
  const auto session = start();
  offer(1000);
  recorder.reset();
  EXPECT_TRUE(background->work.empty());
  fixture.executor->runPosted();
  EXPECT_THAT(secondsOf(session), IsEmpty());
  EXPECT_THAT(completed, IsEmpty());
}

TEST_F(PowerSessionRecorderTest, AResultThatArrivesAfterTheRecorderIsDropped) {
  const auto session = start();
  offer(1000);
  ASSERT_TRUE(background->runOne());
  recorder.reset();
  fixture.executor->runPosted();
  EXPECT_THAT(secondsOf(session), IsEmpty());
  EXPECT_THAT(completed, IsEmpty());
}

TEST_F(PowerSessionRecorderTest, ObserversHearOfChanges) {
  std::vector<std::string> heard;
  const auto session = recorder->observeActiveSession(
      [&](const auto& value) { heard.emplace_back(value ? "session" : "no session"); });
  const auto summary = recorder->observeActiveSummary(
      [&](const auto& value) { heard.push_back("summary " + std::to_string(value.sampleCount)); });
  const auto error = recorder->observeLastError(
      [&](const auto& value) { heard.emplace_back(value ? "error" : "no error"); });
  start();
  EXPECT_THAT(heard, ElementsAre("session", "summary 0", "no error"));
  heard.clear();
  record(1000);
  EXPECT_THAT(heard, ElementsAre("summary 1"));
  heard.clear();
  recorder->record(stateThatCannotBeStored(1002), std::nullopt);
  record(1004);
  EXPECT_THAT(heard, ElementsAre("error", "summary 2", "no error"));
  heard.clear();
  recorder->stop(instantAt(1010));
  EXPECT_THAT(heard, ElementsAre("no session", "summary 0", "no error"));
}

TEST_F(PowerSessionRecorderTest, ObserversOfTheInstantsHearOfDifferencesOnly) {
  std::vector<std::optional<Instant>> processes;
  std::vector<std::optional<Instant>> telemetries;
  const auto one = recorder->observeLastProcessSampleAt([&](const auto& at) { processes.push_back(at); });
  const auto two =
      recorder->observeLastProTelemetrySampledAt([&](const auto& at) { telemetries.push_back(at); });
  start();
  recorder->refreshActiveSession();
  record(1000);
  record(1000, telemetry(999, {}));
  recorder->refreshSummary();
  recorder->stop(instantAt(1001));
  recorder->stop(instantAt(1001));
  EXPECT_THAT(processes, ElementsAre(instantAt(1000), std::nullopt));
  EXPECT_THAT(telemetries, ElementsAre(instantAt(999), std::nullopt));
}

TEST_F(PowerSessionRecorderTest, AnObserverMayStopTheRecorder) {
  const auto session = start();
  const auto subscription = recorder->observeActiveSummary([&](const auto& summary) {
    if (summary.sampleCount == 1) recorder->stop(instantAt(1001));
  });
  record(1000);
  EXPECT_THAT(recorder->activeSession(), IsNull());
  EXPECT_EQ(recorder->activeSummary(), PowerSessionSummary::empty());
  EXPECT_THAT(secondsOf(session), ElementsAre(1000));
}

TEST_F(PowerSessionRecorderTest, AnObserverOfTheSessionMayStopTheRecorder) {
  const auto session = start();
  bool isStopping = false;
  const auto subscription = session->onChange([&] {
    if (!std::exchange(isStopping, true)) recorder->stop(instantAt(1001));
  });
  record(1000, telemetry(999, {}));
  EXPECT_THAT(recorder->activeSession(), IsNull());
  EXPECT_EQ(recorder->activeSummary(), PowerSessionSummary::empty());
}

TEST_F(PowerSessionRecorderTest, AnObserverMayDestroyTheRecorder) {
  const auto session = start();
  const auto subscription = recorder->observeActiveSummary([&](const auto&) { recorder.reset(); });
  offer(1000, telemetry(999, {}));
  EXPECT_EQ(recorder, nullptr);
  EXPECT_THAT(completed, IsEmpty());
  EXPECT_THAT(secondsOf(session), ElementsAre(1000));
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
