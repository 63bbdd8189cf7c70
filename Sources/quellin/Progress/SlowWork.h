#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "QuellinCore/Support/Clock.h"
#include "quellin/Progress/LiveLine.h"

namespace quellin::cli {

/// Tells on standard error what is being done and for how long, while the thread that does it is busy.
class SlowWork {
 public:
  /// What is over within the first of these is not told; then the line changes after each.
  static constexpr Seconds usualPeriod{1};

  /// Begins to wait. `what` as in "summing up the session". `invocation` must outlive it.
  SlowWork(const Invocation& invocation, std::string what, Seconds period = usualPeriod);
  /// As `end`.
  ~SlowWork();
  SlowWork(const SlowWork&) = delete;
  SlowWork& operator=(const SlowWork&) = delete;
  SlowWork(SlowWork&&) = delete;
  SlowWork& operator=(SlowWork&&) = delete;

  /// From now on this is being done.
  void now(std::string what);

  /// Tells no more; what is said next stands on a line of its own.
  void end();

 private:
  void tell();

  LiveLine live_;
  std::string what_;
  Seconds period_;
  Seconds startedAt_;
  bool isOver_ = false;
  std::mutex mutex_;  // of what_ and isOver_
  std::condition_variable over_;
  std::thread thread_;
};

}  // namespace quellin::cli
