// The engine with real threads and real time: what the tests with a clock moved by hand cannot show.

#include <atomic>
#include <functional>
#include <future>
#include <mutex>
#include <set>
#include <thread>

#include <gmock/gmock.h>

#include "QuellinCore/Services/MetricsEngine.h"

namespace quellin {
namespace {

using testing::Each;
using testing::Not;

class LiveMetricsEngineTest : public testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<MetricsEngine> makeEngine(std::function<void()> whileReading = [] {}) {
    return std::make_unique<MetricsEngine>(executor, Seconds{0.001}, 1000,
                                           [this, whileReading = std::move(whileReading)] {
                                             ++readsUnderWay;
                                             whileReading();
                                             SystemPowerState state;
                                             state.timestamp = instantAt(++reads);
                                             --readsUnderWay;
                                             return state;
                                           });
  }

  /// Runs the main executor until `isReached`.
  void runUntil(const std::function<bool()>& isReached) const {
    while (!isReached()) {
      executor->runPosted();
      std::this_thread::yield();
    }
  }

  std::shared_ptr<ThreadExecutor> executor = std::make_shared<ThreadExecutor>();
  std::atomic<int> reads = 0;
  std::atomic<int> readsUnderWay = 0;
};

TEST_F(LiveMetricsEngineTest, ReadsOnOtherThreadsAndPublishesOnThisOneInOrder) {
  std::mutex mutex;
  std::set<std::thread::id> readOn;
  const auto engine = makeEngine([&] {
    const std::lock_guard lock(mutex);
    readOn.insert(std::this_thread::get_id());
  });
  std::vector<std::thread::id> toldOn;
  const auto subscription =
      engine->observeCurrentState([&](const auto&) { toldOn.push_back(std::this_thread::get_id()); });
  engine->start();
  runUntil([&] { return engine->history().size() == 20; });
  engine->stop();
  for (std::size_t index = 0; index < 20; ++index) {
    EXPECT_EQ(engine->history()[index].timestamp, instantAt(static_cast<double>(index) + 1));
  }
  EXPECT_THAT(toldOn, Each(std::this_thread::get_id()));
  const std::lock_guard lock(mutex);
  EXPECT_THAT(readOn, Not(testing::Contains(std::this_thread::get_id())));
}

TEST_F(LiveMetricsEngineTest, RestartsWhileReadingLeaveOneLoop) {
  std::atomic<int> atOnce = 0;
  const auto engine = makeEngine([&] { atOnce = std::max<int>(atOnce, readsUnderWay); });
  engine->start();
  for (int restart = 1; restart <= 50; ++restart) {
    engine->setInterval(Seconds{restart % 2 == 0 ? 0.001 : 0.002});
    runUntil([&] { return reads >= 2 * restart; });
  }
  engine->stop();
  // Once a read that was asked for last is back, all before it have begun; then they end.
  bool isBack = false;
  engine->snapshot([&](const SystemPowerState&) { isBack = true; });
  runUntil([&] { return isBack && readsUnderWay == 0; });
  atOnce = 0;
  engine->start();
  runUntil([&, before = engine->history().size()] { return engine->history().size() >= before + 20; });
  EXPECT_EQ(atOnce, 1) << "a loop from before still reads";
}

TEST_F(LiveMetricsEngineTest, DestructionWaitsForTheReadInFlightAndNothingFollows) {
  std::promise<void> begun;
  std::promise<void> mayEnd;
  auto engine = makeEngine([&] {
    begun.set_value();
    mayEnd.get_future().get();
  });
  int told = 0;
  const auto subscription = engine->observeCurrentState([&](const auto&) { ++told; });
  engine->start();
  const auto hasBegun = begun.get_future();
  runUntil([&] { return hasBegun.wait_for(std::chrono::seconds{0}) == std::future_status::ready; });
  mayEnd.set_value();
  engine.reset();
  EXPECT_EQ(readsUnderWay, 0);
  EXPECT_EQ(reads, 1);
  for (int round = 0; round < 20; ++round) executor->runPosted();
  EXPECT_EQ(told, 0);
}

TEST_F(LiveMetricsEngineTest, SnapshotsArriveHereWhileTheEngineRuns) {
  const auto engine = makeEngine();
  engine->start();
  std::vector<std::thread::id> deliveredOn;
  for (int count = 0; count < 20; ++count) {
    engine->snapshot([&](const SystemPowerState&) { deliveredOn.push_back(std::this_thread::get_id()); });
  }
  runUntil([&] { return deliveredOn.size() == 20; });
  EXPECT_THAT(deliveredOn, Each(std::this_thread::get_id()));
}

}  // namespace
}  // namespace quellin
