#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include <gtest/gtest.h>

#include "QuellinCore/Services/MetricsEngine.h"
#include "Support/ManualBackground.h"
#include "Support/ManualClock.h"
#include "Support/ProcessResources.h"

namespace quellin::testing_support {

/// A running engine that polls when it is told to, on this thread and with a clock moved by hand.
class PolledEngine {
 public:
  explicit PolledEngine(MetricsEngine::Reader reader)
      : engine_(executor_, Seconds{2}, 120, std::move(reader),
                std::make_unique<ManualBackground>(background_)) {
    engine_.start();
    finishPoll();
  }

  /// Lets an interval pass and the poll that is then due happen.
  void poll() {
    background_->advance(Seconds{2});
    finishPoll();
  }

  /// The same so many times.
  void poll(int times) {
    for (int done = 0; done < times; ++done) poll();
  }

  [[nodiscard]] const MetricsEngine& engine() const { return engine_; }

 private:
  void finishPoll() {
    while (!background_->runOne()) executor_->runPosted();
    while (background_->pendingAlarms().empty()) executor_->runPosted();
  }

  std::shared_ptr<ThreadExecutor> executor_ = std::make_shared<ThreadExecutor>();
  std::shared_ptr<ManualBackground::Controls> background_ = std::make_shared<ManualBackground::Controls>();
  MetricsEngine engine_;
};

/// What a process has taken of its host.
struct TakenResources {
  std::int64_t heap = heapBytesInUse();
  std::size_t descriptors = openDescriptors();
};

/// Expects that `work` leaves no descriptor open and no memory behind, but for the blocks in which the queues
/// of the tests allocate: less than a byte for every tenth of 100,000 polls.
template <class Work>
void expectNothingLeftBehind(Work work) {
  constexpr std::int64_t mostHeap = 8 * 1024;
  const TakenResources before;
  work();
  const TakenResources after;
  EXPECT_EQ(after.descriptors, before.descriptors);
  EXPECT_LE(after.heap, before.heap + mostHeap);
}

}  // namespace quellin::testing_support
