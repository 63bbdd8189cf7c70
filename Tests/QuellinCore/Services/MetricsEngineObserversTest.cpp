#include <string>

#include <gmock/gmock.h>

#include "QuellinCore/Services/MetricsEngineFixture.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using MetricsEngineObserversTest = testing_support::MetricsEngineFixture;

TEST_F(MetricsEngineObserversTest, TellsObserversOfEveryPublishedProperty) {
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
  startAndRead();
  engine->stop();
  engine->stop();
  EXPECT_THAT(told, ElementsAre("interval 3", "on", "state 1", "history 1", "off"));
}

TEST_F(MetricsEngineObserversTest, AnObserverMayUnsubscribeInItsCall) {
  int calls = 0;
  Subscription subscription;
  subscription = engine->observeCurrentState([&](const SystemPowerState&) {
    ++calls;
    subscription.reset();
  });
  startAndRead();
  pollOnce();
  EXPECT_EQ(calls, 1);
}

TEST_F(MetricsEngineObserversTest, AnObserverMayStopTheEngineInItsCall) {
  const auto subscription = engine->observeCurrentState([&](const SystemPowerState&) { engine->stop(); });
  startAndRead();
  EXPECT_THAT(background->pendingAlarms(), IsEmpty());
  EXPECT_FALSE(engine->isRunning());
}

TEST_F(MetricsEngineObserversTest, AnObserverOfAStateMayDestroyTheEngine) {
  int historyCalls = 0;
  const auto onHistory = engine->observeHistory([&](const auto&) { ++historyCalls; });
  double seen = 0;
  const auto onState = engine->observeCurrentState([&](const SystemPowerState& state) {
    engine.reset();
    seen = state.timestamp.time_since_epoch().count();
  });
  startAndRead();
  EXPECT_EQ(seen, 1) << "the state outlives the engine for the length of the call";
  EXPECT_EQ(historyCalls, 0);
  EXPECT_THAT(background->pendingAlarms(), IsEmpty());
}

TEST_F(MetricsEngineObserversTest, AnObserverOfTheIntervalMayDestroyTheEngine) {
  startAndRead();
  const auto subscription = engine->observeInterval([&](Seconds) { engine.reset(); });
  engine->setInterval(Seconds{9});
  settle();
  EXPECT_EQ(engine, nullptr);
  EXPECT_TRUE(background->work.empty());
  EXPECT_THAT(background->pendingAlarms(), IsEmpty());
}

TEST_F(MetricsEngineObserversTest, AnObserverOfTheRunningStateMayDestroyTheEngine) {
  const auto subscription = engine->observeIsRunning([&](bool) { engine.reset(); });
  engine->start();
  settle();
  EXPECT_EQ(engine, nullptr);
  EXPECT_TRUE(background->work.empty());
}

TEST_F(MetricsEngineObserversTest, AnObserverOfTheHistoryMayDestroyTheEngine) {
  std::vector<double> seen;
  const auto subscription = engine->observeHistory([&](const std::vector<SystemPowerState>& history) {
    engine.reset();
    seen = stampsOf(history);
  });
  startAndRead();
  EXPECT_THAT(seen, ElementsAre(1)) << "the history outlives the engine for the length of the call";
  EXPECT_THAT(background->pendingAlarms(), IsEmpty());
}

TEST_F(MetricsEngineObserversTest, AnObserverOfTheEndMayDestroyTheEngine) {
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

TEST_F(MetricsEngineObserversTest, AnObserverOfTheEndMayStartAgainAndThereIsOneLoop) {
  const auto subscription = engine->observeIsRunning([&](bool isRunning) {
    if (!isRunning) engine->start();
  });
  startAndRead();
  engine->setInterval(Seconds{9});
  settle();
  EXPECT_TRUE(engine->isRunning());
  EXPECT_EQ(background->work.size(), 1U);
  finishRead();
  EXPECT_THAT(background->pendingAlarms(), ElementsAre(background->now + Seconds{9}));
}

}  // namespace
}  // namespace quellin
