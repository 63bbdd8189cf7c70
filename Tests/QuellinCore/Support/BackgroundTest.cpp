#include <atomic>
#include <future>
#include <limits>
#include <memory>
#include <thread>

#include <gmock/gmock.h>

#include "QuellinCore/Support/Background.h"

namespace quellin {
namespace {

/// The moment at which an alarm set to `instant` rings.
Seconds whenRung(Background& background, Seconds instant) {
  std::promise<Seconds> rung;
  const WakeUp wakeUp = background.wakeAt(instant, [&] { rung.set_value(background.now()); });
  return rung.get_future().get();
}

TEST(BackgroundTest, WorkRunsOnAThreadOfItsOwn) {
  std::promise<std::thread::id> ranOn;
  const auto background = makeBackground();
  background->run([&] { ranOn.set_value(std::this_thread::get_id()); });
  EXPECT_NE(ranOn.get_future().get(), std::this_thread::get_id());
}

TEST(BackgroundTest, TwoThreadsWorkSideBySide) {
  std::promise<void> first;
  std::promise<void> second;
  const auto background = makeBackground(2);
  background->run([&] {
    second.get_future().get();
    first.set_value();
  });
  background->run([&] { second.set_value(); });
  EXPECT_NO_THROW(first.get_future().get());
}

TEST(BackgroundTest, ItsClockIsTheOneThatCountsThroughSleep) {
  const auto background = makeBackground();
  const Seconds before = systemMonotonicClock().now();
  const Seconds now = background->now();
  EXPECT_LE(before, now);
  EXPECT_LE(now, systemMonotonicClock().now());
}

TEST(BackgroundTest, AWakeUpComesOnceTheClockHasReachedItsInstant) {
  const auto background = makeBackground();
  const Seconds past = background->now();
  EXPECT_GE(whenRung(*background, past), past);
  const Seconds instant = background->now() + Seconds{0.02};
  // The timer counts whole nanoseconds.
  EXPECT_GE(whenRung(*background, instant), instant - Seconds{1e-6});
}

TEST(BackgroundTest, AWakeUpThatIsCalledOffDoesNotHappen) {
  const auto background = makeBackground();
  std::shared_ptr<std::atomic<int>> rings;
  Seconds instant{};
  do {  // until it was called off in time
    rings = std::make_shared<std::atomic<int>>(0);
    instant = background->now() + Seconds{0.02};
    WakeUp calledOff = background->wakeAt(instant, [rings] { ++*rings; });
    calledOff.reset();
  } while (background->now() >= instant);
  EXPECT_GE(whenRung(*background, instant + Seconds{0.02}), instant);
  EXPECT_EQ(*rings, 0);
}

TEST(BackgroundTest, AWakeUpBeyondAllClocksNeverComes) {
  std::atomic<int> rings = 0;
  const auto background = makeBackground();
  for (const double instant : {1e10, 1e300, std::numeric_limits<double>::infinity()}) {
    const WakeUp never = background->wakeAt(Seconds{instant}, [&] { ++rings; });
    static_cast<void>(whenRung(*background, background->now() + Seconds{0.01}));
    EXPECT_EQ(rings, 0) << instant;
  }
}

TEST(BackgroundTest, DestructionWaitsForTheWorkThatHasBegun) {
  auto background = makeBackground();
  std::promise<void> begun;
  std::promise<void> mayEnd;
  bool hasEnded = false;
  background->run([&] {
    begun.set_value();
    mayEnd.get_future().get();
    hasEnded = true;
  });
  begun.get_future().get();
  std::thread release([&] { mayEnd.set_value(); });
  background.reset();
  EXPECT_TRUE(hasEnded);
  release.join();
}

TEST(BackgroundTest, WorkIsUsedAndItsUseDestroyedOnTheExecutor) {
  const auto executor = std::make_shared<ThreadExecutor>();
  std::promise<std::thread::id> workedOn;
  std::thread::id destroyedOn;
  int used = 0;
  {
    const auto background = makeBackground();
    std::shared_ptr<void> held(nullptr, [&](void*) { destroyedOn = std::this_thread::get_id(); });
    runThenPost(
        *background, executor,
        [&] {
          workedOn.set_value(std::this_thread::get_id());
          return 7;
        },
        [&used, held = std::move(held)](int value) { used = value; });
    EXPECT_NE(workedOn.get_future().get(), std::this_thread::get_id());
  }  // waits until the result is posted
  EXPECT_EQ(used, 0);
  EXPECT_EQ(destroyedOn, std::thread::id());
  executor->runPosted();
  EXPECT_EQ(used, 7);
  EXPECT_EQ(destroyedOn, std::this_thread::get_id());
}

}  // namespace
}  // namespace quellin
