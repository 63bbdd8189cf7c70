#pragma once

#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "QuellinCore/Services/MetricsEngine.h"
#include "Support/ManualBackground.h"
#include "Support/ManualClock.h"

namespace quellin::testing_support {

/// An engine whose reads, time and main executor the test moves by hand. The n-th read is stamped n.
class MetricsEngineFixture : public testing::Test {
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

  /// Starts the engine and lets its first read happen.
  void startAndRead() {
    engine->start();
    settle();
    finishRead();
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

}  // namespace quellin::testing_support
