#include <limits>
#include <stdexcept>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Services/MetricsEngine.h"
#include "Support/Deaths.h"
#include "Support/ManualBackground.h"
#include "Support/ManualClock.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::expectRefusedElsewhere;
using testing_support::ManualBackground;
using testing_support::ManualWallClock;

/// An engine whose reads, time and main executor the test moves by hand. The n-th read is stamped n.
class MetricsEngineTest : public testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<MetricsEngine> makeEngine(double interval = 2,
                                                          std::int64_t historyLimit = 10) {
    return std::make_unique<MetricsEngine>(
        executor, Seconds{interval}, historyLimit, [this] { return read(); },
        std::make_unique<ManualBackground>(background), wallClock);
  }

  SystemPowerState read() {
    SystemPowerState state;
    state.timestamp = instantAt(++reads);
    return state;
  }

  /// Lets the main executor run until it has nothing left to do.
  void settle() {
    for (int round = 0; round < 20; ++round) executor->runPosted();
  }

  /// Finishes the read in flight and lets its result arrive.
  void finishRead() {
    ASSERT_TRUE(background->runOne()) << "no read is in flight";
    settle();
  }

  /// One interval passes, one read is made.
  void pollOnce(double interval = 2) {
    background->advance(Seconds{interval});
    settle();
    finishRead();
  }

  [[nodiscard]] static std::vector<double> stampsOf(const std::vector<SystemPowerState>& states) {
    std::vector<double> stamps;
    for (const auto& state : states) stamps.push_back(state.timestamp.time_since_epoch().count());
    return stamps;
  }

  int reads = 0;
  std::shared_ptr<ThreadExecutor> executor = std::make_shared<ThreadExecutor>();
  std::shared_ptr<ManualBackground::Controls> background = std::make_shared<ManualBackground::Controls>();
  ManualWallClock wallClock{instantAt(77)};
  std::unique_ptr<MetricsEngine> engine = makeEngine();
};

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
  engine->start();
  settle();
  finishRead();
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
  engine->start();
  settle();
  finishRead();
  for (int poll = 0; poll < 4; ++poll) pollOnce();
  EXPECT_THAT(stampsOf(engine->history()), ElementsAre(3, 4, 5));
  EXPECT_EQ(engine->currentState().timestamp, instantAt(5));
}

TEST_F(MetricsEngineTest, AHistoryLimitOfZeroKeepsNothing) {
  engine = makeEngine(2, 0);
  engine->start();
  settle();
  finishRead();
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
  engine->start();
  settle();
  finishRead();
  const auto alarms = background->pendingAlarms();
  background->now += Seconds{1};
  engine->start();
  settle();
  EXPECT_TRUE(background->work.empty()) << "the loop began anew";
  EXPECT_EQ(background->pendingAlarms(), alarms);
}

TEST_F(MetricsEngineTest, StoppingWhileAsleepEndsTheLoop) {
  engine->start();
  settle();
  finishRead();
  engine->stop();
  EXPECT_FALSE(engine->isRunning());
  settle();
  EXPECT_THAT(background->pendingAlarms(), IsEmpty());
  background->advance(Seconds{100});
  settle();
  EXPECT_EQ(reads, 1);
}

TEST_F(MetricsEngineTest, AWakeUpThatIsUnderWayWhenStoppedReadsNothing) {
  engine->start();
  settle();
  finishRead();
  background->advance(Seconds{2});  // has rung, but the main executor has not heard it yet
  engine->stop();
  settle();
  EXPECT_TRUE(background->work.empty());
}

TEST_F(MetricsEngineTest, AWakeUpThatIsUnderWayAtARestartLeavesOneLoopAtWork) {
  engine->start();
  settle();
  finishRead();
  background->advance(Seconds{2});
  engine->stop();
  engine->start();
  settle();
  EXPECT_EQ(background->work.size(), 1U);
  finishRead();
  EXPECT_EQ(background->pendingAlarms().size(), 1U);
}

TEST_F(MetricsEngineTest, AWakeUpThatIsUnderWayWhenTheEngineGoesReadsNothing) {
  engine->start();
  settle();
  finishRead();
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
  engine->start();
  settle();
  finishRead();
  engine->setInterval(Seconds{30});
  EXPECT_TRUE(engine->isRunning());
  settle();
  finishRead();
  EXPECT_EQ(reads, 2) << "the engine started over";
  EXPECT_THAT(background->pendingAlarms(), ElementsAre(background->now + Seconds{30}));
}

TEST_F(MetricsEngineTest, SettingThePresentIntervalDoesNotStartOver) {
  engine->start();
  settle();
  finishRead();
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
  engine->start();
  settle();
  finishRead();
  engine.reset();
  settle();
  EXPECT_THAT(background->pendingAlarms(), IsEmpty());
}

TEST_F(MetricsEngineTest, TellsObserversOfEveryPublishedProperty) {
  std::vector<std::string> told;
  const auto onState = engine->observeCurrentState([&](const SystemPowerState& state) {
    told.push_back("state " + std::to_string(state.timestamp.time_since_epoch().count()).substr(0, 1));
  });
  const auto onHistory = engine->observeHistory(
      [&](const auto& history) { told.push_back("history " + std::to_string(history.size())); });
  const auto onRunning =
      engine->observeIsRunning([&](bool isRunning) { told.push_back(isRunning ? "on" : "off"); });
  const auto onInterval = engine->observeInterval([&](Seconds interval) {
    told.push_back("interval " + std::to_string(static_cast<int>(interval.count())));
  });
  engine->setInterval(Seconds{3});
  engine->setInterval(Seconds{3});
  engine->start();
  engine->start();
  settle();
  finishRead();
  engine->stop();
  engine->stop();
  EXPECT_THAT(told, ElementsAre("interval 3", "on", "state 1", "history 1", "off"));
}

TEST_F(MetricsEngineTest, AnObserverMayUnsubscribeInItsCall) {
  int calls = 0;
  Subscription subscription;
  subscription = engine->observeCurrentState([&](const SystemPowerState&) {
    ++calls;
    subscription.reset();
  });
  engine->start();
  settle();
  finishRead();
  pollOnce();
  EXPECT_EQ(calls, 1);
}

TEST_F(MetricsEngineTest, AnObserverMayStopTheEngineInItsCall) {
  const auto subscription = engine->observeCurrentState([&](const SystemPowerState&) { engine->stop(); });
  engine->start();
  settle();
  finishRead();
  EXPECT_THAT(background->pendingAlarms(), IsEmpty());
  EXPECT_FALSE(engine->isRunning());
}

TEST_F(MetricsEngineTest, AnObserverOfAStateMayDestroyTheEngine) {
  int historyCalls = 0;
  const auto onHistory = engine->observeHistory([&](const auto&) { ++historyCalls; });
  double seen = 0;
  const auto onState = engine->observeCurrentState([&](const SystemPowerState& state) {
    engine.reset();
    seen = state.timestamp.time_since_epoch().count();
  });
  engine->start();
  settle();
  finishRead();
  EXPECT_EQ(seen, 1) << "the state outlives the engine for the length of the call";
  EXPECT_EQ(historyCalls, 0);
  EXPECT_THAT(background->pendingAlarms(), IsEmpty());
}

TEST_F(MetricsEngineTest, AnObserverOfTheIntervalMayDestroyTheEngine) {
  engine->start();
  settle();
  finishRead();
  const auto subscription = engine->observeInterval([&](Seconds) { engine.reset(); });
  engine->setInterval(Seconds{9});
  settle();
  EXPECT_EQ(engine, nullptr);
  EXPECT_TRUE(background->work.empty());
  EXPECT_THAT(background->pendingAlarms(), IsEmpty());
}

TEST_F(MetricsEngineTest, AnObserverOfTheRunningStateMayDestroyTheEngine) {
  const auto subscription = engine->observeIsRunning([&](bool) { engine.reset(); });
  engine->start();
  settle();
  EXPECT_EQ(engine, nullptr);
  EXPECT_TRUE(background->work.empty());
}

TEST_F(MetricsEngineTest, AnObserverOfTheHistoryMayDestroyTheEngine) {
  std::vector<double> seen;
  const auto subscription = engine->observeHistory([&](const std::vector<SystemPowerState>& history) {
    engine.reset();
    seen = stampsOf(history);
  });
  engine->start();
  settle();
  finishRead();
  EXPECT_THAT(seen, ElementsAre(1)) << "the history outlives the engine for the length of the call";
  EXPECT_THAT(background->pendingAlarms(), IsEmpty());
}

TEST_F(MetricsEngineTest, AnObserverOfTheEndMayDestroyTheEngine) {
  const auto destroyAtEnd = [&] {
    return engine->observeIsRunning([&](bool isRunning) {
      if (!isRunning) engine.reset();
    });
  };
  const auto whenStopped = destroyAtEnd();
  engine->start();
  engine->stop();
  EXPECT_EQ(engine, nullptr);

  engine = makeEngine();
  const auto whenRestarted = destroyAtEnd();
  engine->start();
  engine->setInterval(Seconds{9});
  settle();
  EXPECT_EQ(engine, nullptr);
  EXPECT_TRUE(background->work.empty());
}

TEST_F(MetricsEngineTest, AnObserverOfTheEndMayStartAgainAndThereIsOneLoop) {
  const auto subscription = engine->observeIsRunning([&](bool isRunning) {
    if (!isRunning) engine->start();
  });
  engine->start();
  settle();
  finishRead();
  engine->setInterval(Seconds{9});
  settle();
  EXPECT_TRUE(engine->isRunning());
  EXPECT_EQ(background->work.size(), 1U);
  finishRead();
  EXPECT_THAT(background->pendingAlarms(), ElementsAre(background->now + Seconds{9}));
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
