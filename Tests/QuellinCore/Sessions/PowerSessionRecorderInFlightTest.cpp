#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSessionRecorderFixture.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::energyRow;
using testing_support::telemetry;
using PowerSessionRecorderInFlightTest = testing_support::PowerSessionRecorderFixture;

TEST_F(PowerSessionRecorderInFlightTest, TheMainExecutorStaysFreeWhileProcessesAreMeasured) {
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

TEST_F(PowerSessionRecorderInFlightTest, SnapshotsMayOvertakeOneThatIsBeingMeasured) {
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

TEST_F(PowerSessionRecorderInFlightTest, BeforeTheFirstMeasurementHasEndedAnotherIsDue) {
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

TEST_F(PowerSessionRecorderInFlightTest, ASnapshotWhoseSessionWasStoppedMeanwhileIsDropped) {
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

TEST_F(PowerSessionRecorderInFlightTest, ASnapshotOfOneSessionIsNotStoredInTheNext) {
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

TEST_F(PowerSessionRecorderInFlightTest, StartingAgainDoesNotDropTheSnapshotOfTheSameSession) {
  const auto session = start();
  offer(1000);
  EXPECT_EQ(start(1001), session);
  finishMeasurement();
  EXPECT_THAT(secondsOf(session), ElementsAre(1000));
  EXPECT_EQ(recorder->activeSummary().sampleCount, 1);
}

TEST_F(PowerSessionRecorderInFlightTest, ASnapshotWhoseSessionWasDeletedMeanwhileIsDropped) {
  const auto session = start();
  offer(1000);
  recorder->remove(session);
  finishMeasurement();
  EXPECT_THAT(completed, ElementsAre(1000));
  EXPECT_EQ(recorder->lastError(), std::nullopt);
  EXPECT_EQ(recorder->activeSummary(), PowerSessionSummary::empty());
}

TEST_F(PowerSessionRecorderInFlightTest, ARefreshDuringAMeasurementDropsNothing) {
  const auto session = start();
  offer(1000);
  recorder->refreshActiveSession();
  finishMeasurement();
  EXPECT_THAT(secondsOf(session), ElementsAre(1000));
}

TEST_F(PowerSessionRecorderInFlightTest, DestroyingTheRecorderDropsTheSnapshotInFlight) {
  const auto session = start();
  offer(1000);
  recorder.reset();
  EXPECT_TRUE(background->work.empty());
  fixture.executor->runPosted();
  EXPECT_THAT(secondsOf(session), IsEmpty());
  EXPECT_THAT(completed, IsEmpty());
}

TEST_F(PowerSessionRecorderInFlightTest, AResultThatArrivesAfterTheRecorderIsDropped) {
  const auto session = start();
  offer(1000);
  ASSERT_TRUE(background->runOne());
  recorder.reset();
  fixture.executor->runPosted();
  EXPECT_THAT(secondsOf(session), IsEmpty());
  EXPECT_THAT(completed, IsEmpty());
}

}  // namespace
}  // namespace quellin
