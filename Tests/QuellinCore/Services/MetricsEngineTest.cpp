#include <limits>
#include <stdexcept>

#include <gmock/gmock.h>

#include "QuellinCore/Services/MetricsEngineFixture.h"
#include "Support/Deaths.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::expectRefusedElsewhere;
using MetricsEngineTest = testing_support::MetricsEngineFixture;

TEST_F(MetricsEngineTest, BeginsStoppedWithAnEmptyStateOfNow) {
  EXPECT_FALSE(engine->isRunning());
  EXPECT_THAT(engine->history(), IsEmpty());
  EXPECT_EQ(engine->interval(), Seconds{2});
  EXPECT_EQ(engine->historyLimit(), 10);
  SystemPowerState empty;
  empty.timestamp = instantAt(77);
  EXPECT_EQ(engine->currentState(), empty);
  EXPECT_EQ(engine->currentState().thermal, (ThermalInfo{ThermalState::nominal, 0, false}));
  settle();
  EXPECT_FALSE(background->runOne()) << "nothing is read before start";
}

TEST_F(MetricsEngineTest, ReadsAtOnceAndThenOncePerInterval) {
  startAndRead();
  EXPECT_THAT(stampsOf(engine->history()), ElementsAre(1));
  background->advance(Seconds{1.999});
  settle();
  EXPECT_TRUE(background->work.empty()) << "the interval is not over";
  background->advance(Seconds{0.001});
  settle();
  finishRead();
  EXPECT_THAT(stampsOf(engine->history()), ElementsAre(1, 2));
  EXPECT_EQ(engine->currentState(), engine->history().back());
}

TEST_F(MetricsEngineTest, TheIntervalCountsFromTheEndOfARead) {
  engine->start();
  settle();
  background->advance(Seconds{1.5});  // the read takes its time
  finishRead();
  EXPECT_THAT(background->pendingAlarms(), ElementsAre(background->now + Seconds{2}));
}

TEST_F(MetricsEngineTest, KeepsTheLatestSnapshotsOnly) {
  engine = makeEngine(2, 3);
  startAndRead();
  for (int poll = 0; poll < 4; ++poll) pollOnce();
  EXPECT_THAT(stampsOf(engine->history()), ElementsAre(3, 4, 5));
  EXPECT_EQ(engine->currentState().timestamp, instantAt(5));
}

TEST_F(MetricsEngineTest, AHistoryLimitOfZeroKeepsNothing) {
  engine = makeEngine(2, 0);
  startAndRead();
  EXPECT_THAT(engine->history(), IsEmpty());
  EXPECT_EQ(engine->currentState().timestamp, instantAt(1));
}

TEST_F(MetricsEngineTest, StartingTwiceMakesOneLoop) {
  engine->start();
  engine->start();
  settle();
  EXPECT_EQ(background->work.size(), 1U);
  finishRead();
  EXPECT_EQ(background->pendingAlarms().size(), 1U);
}

TEST_F(MetricsEngineTest, StartingWhileRunningChangesNothing) {
  startAndRead();
  const auto alarms = background->pendingAlarms();
  background->now += Seconds{1};
  engine->start();
  settle();
  EXPECT_TRUE(background->work.empty()) << "the loop began anew";
  EXPECT_EQ(background->pendingAlarms(), alarms);
}

TEST_F(MetricsEngineTest, StoppingWhileAsleepEndsTheLoop) {
  startAndRead();
  engine->stop();
  EXPECT_FALSE(engine->isRunning());
  settle();
  EXPECT_THAT(background->pendingAlarms(), IsEmpty());
  background->advance(Seconds{100});
  settle();
  EXPECT_EQ(reads, 1);
}

TEST_F(MetricsEngineTest, AWakeUpThatIsUnderWayWhenStoppedReadsNothing) {
  startAndRead();
  background->advance(Seconds{2});  // has rung, but the main executor has not heard it yet
  engine->stop();
  settle();
  EXPECT_TRUE(background->work.empty());
}

TEST_F(MetricsEngineTest, AWakeUpThatIsUnderWayAtARestartLeavesOneLoopAtWork) {
  startAndRead();
  background->advance(Seconds{2});
  engine->stop();
  engine->start();
  settle();
  EXPECT_EQ(background->work.size(), 1U);
  finishRead();
  EXPECT_EQ(background->pendingAlarms().size(), 1U);
}

TEST_F(MetricsEngineTest, AWakeUpThatIsUnderWayWhenTheEngineGoesReadsNothing) {
  startAndRead();
  background->advance(Seconds{2});
  engine.reset();
  settle();
  EXPECT_TRUE(background->work.empty());
}

TEST_F(MetricsEngineTest, AReadInFlightWhenStoppedIsStillPublishedAndIsTheLast) {
  engine->start();
  settle();
  engine->stop();
  finishRead();
  EXPECT_THAT(stampsOf(engine->history()), ElementsAre(1));
  background->advance(Seconds{100});
  settle();
  EXPECT_TRUE(background->work.empty());
  EXPECT_THAT(background->pendingAlarms(), IsEmpty());
}

TEST_F(MetricsEngineTest, RestartingDuringAReadLeavesOneLoopAtWork) {
  engine->start();
  settle();
  engine->stop();
  engine->start();
  settle();
  EXPECT_EQ(background->work.size(), 2U) << "the read in flight, and the first of the new loop";
  finishRead();
  finishRead();
  EXPECT_THAT(stampsOf(engine->history()), ElementsAre(1, 2));
  EXPECT_EQ(background->pendingAlarms().size(), 1U);
  pollOnce();
  EXPECT_THAT(stampsOf(engine->history()), ElementsAre(1, 2, 3));
}

TEST_F(MetricsEngineTest, ANewIntervalTakesEffectAtOnce) {
  startAndRead();
  engine->setInterval(Seconds{30});
  EXPECT_TRUE(engine->isRunning());
  settle();
  finishRead();
  EXPECT_EQ(reads, 2) << "the engine started over";
  EXPECT_THAT(background->pendingAlarms(), ElementsAre(background->now + Seconds{30}));
}

TEST_F(MetricsEngineTest, SettingThePresentIntervalDoesNotStartOver) {
  startAndRead();
  const auto alarms = background->pendingAlarms();
  engine->setInterval(Seconds{2});
  settle();
  EXPECT_EQ(background->pendingAlarms(), alarms);
  EXPECT_TRUE(background->work.empty());
}

TEST_F(MetricsEngineTest, ANewIntervalDoesNotStartAStoppedEngine) {
  engine->setInterval(Seconds{5});
  settle();
  EXPECT_EQ(engine->interval(), Seconds{5});
  EXPECT_FALSE(engine->isRunning());
  EXPECT_TRUE(background->work.empty());
}

TEST_F(MetricsEngineTest, RefusesAnIntervalThatIsNone) {
  for (const double interval :
       {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    EXPECT_THROW(makeEngine(interval), std::invalid_argument) << interval;
    EXPECT_THROW(engine->setInterval(Seconds{interval}), std::invalid_argument) << interval;
  }
  EXPECT_EQ(engine->interval(), Seconds{2});
  EXPECT_THROW(makeEngine(1, -1), std::invalid_argument);
}

TEST_F(MetricsEngineTest, ASnapshotLeavesStateAndHistoryAlone) {
  std::vector<SystemPowerState> snapshots;
  engine->snapshot([&](const SystemPowerState& state) { snapshots.push_back(state); });
  EXPECT_THAT(snapshots, IsEmpty());
  finishRead();
  EXPECT_THAT(stampsOf(snapshots), ElementsAre(1));
  EXPECT_THAT(engine->history(), IsEmpty());
  EXPECT_EQ(engine->currentState().timestamp, instantAt(77));
}

TEST_F(MetricsEngineTest, WhatASnapshotsCompletionHoldsIsLetGoOnTheMainExecutorOnly) {
  const auto held = std::make_shared<int>(1);
  engine->snapshot([held](const SystemPowerState&) {});
  const auto piece = std::move(background->work.front());
  background->work.pop_front();
  piece();
  settle();
  EXPECT_EQ(held.use_count(), 1) << "the worker still holds it";
}

TEST_F(MetricsEngineTest, ASnapshotOfAnEngineThatIsGoneIsNotDelivered) {
  bool delivered = false;
  engine->snapshot([&](const SystemPowerState&) { delivered = true; });
  const auto work = background->work;  // as if the read were already under way
  engine.reset();
  for (const auto& piece : work) piece();
  settle();
  EXPECT_FALSE(delivered);
}

TEST_F(MetricsEngineTest, DestroyingTheEngineWhileItReadsEndsTheLoop) {
  engine->start();
  settle();
  const auto work = background->work;
  engine.reset();
  for (const auto& piece : work) piece();
  settle();
  EXPECT_THAT(background->pendingAlarms(), IsEmpty());
  EXPECT_TRUE(background->work.empty());
}

TEST_F(MetricsEngineTest, DestroyingTheEngineWhileItSleepsEndsTheLoop) {
  startAndRead();
  engine.reset();
  settle();
  EXPECT_THAT(background->pendingAlarms(), IsEmpty());
}

TEST_F(MetricsEngineTest, OperationsElsewhereThanOnTheMainExecutorEndTheProcess) {
  expectRefusedElsewhere([&] { engine->start(); });
  expectRefusedElsewhere([&] { engine->stop(); });
  expectRefusedElsewhere([&] { engine->setInterval(Seconds{1}); });
  expectRefusedElsewhere([&] { engine->snapshot([](const auto&) {}); });
  expectRefusedElsewhere([&] { static_cast<void>(engine->currentState()); });
  expectRefusedElsewhere([&] { static_cast<void>(engine->history()); });
  expectRefusedElsewhere([&] { static_cast<void>(engine->isRunning()); });
  expectRefusedElsewhere([&] { static_cast<void>(engine->interval()); });
  expectRefusedElsewhere([&] { static_cast<void>(engine->observeHistory([](const auto&) {})); });
}

}  // namespace
}  // namespace quellin
