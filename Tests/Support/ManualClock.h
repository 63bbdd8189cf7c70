#pragma once

#include <functional>
#include <numeric>
#include <vector>

#include "QuellinCore/Support/CPUClock.h"

namespace quellin::testing_support {

/// A monotonic clock that moves only when somebody sleeps on it or advances it by hand.
class ManualMonotonicClock final : public MonotonicClock {
 public:
  std::vector<Seconds> sleeps;                ///< what was slept, in order
  std::function<void(Seconds)> onSleep = {};  ///< called after each sleep has advanced the clock

  [[nodiscard]] Seconds now() const override { return now_; }
  void sleep(Seconds duration) override {
    sleeps.push_back(duration);
    advance(duration);
    if (onSleep) onSleep(duration);
  }
  /// The sum of what was slept.
  [[nodiscard]] Seconds slept() const { return std::accumulate(sleeps.begin(), sleeps.end(), Seconds{0}); }
  void advance(Seconds duration) {
    if (duration.count() > 0) now_ += duration;
  }

 private:
  Seconds now_{1000};
};

/// A wall clock that shows what it was set to.
class ManualWallClock final : public WallClock {
 public:
  explicit ManualWallClock(Instant now) : now_(now) {}
  [[nodiscard]] Instant now() const override { return now_; }
  void set(Instant now) { now_ = now; }

 private:
  Instant now_;
};

/// A clock of CPU time that shows what it was set to.
class ManualCPUClock final : public CPUClock {
 public:
  [[nodiscard]] Seconds now() const override { return now_; }
  void use(Seconds time) { now_ += time; }

 private:
  Seconds now_{7};
};

}  // namespace quellin::testing_support
