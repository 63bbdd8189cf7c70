#include "quellin/Progress/SlowWork.h"

#include <utility>

#include "quellin/Presentation/FigureText.h"

namespace quellin::cli {

SlowWork::SlowWork(const Invocation& invocation, std::string what, Seconds period)
    : live_(invocation),
      what_(std::move(what)),
      period_(period),
      startedAt_(systemMonotonicClock().now()),
      thread_([this] { tell(); }) {}

SlowWork::~SlowWork() { end(); }

void SlowWork::now(std::string what) {
  const std::lock_guard lock{mutex_};
  what_ = std::move(what);
}

void SlowWork::end() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock{mutex_};
    isOver_ = true;
  }
  over_.notify_all();
  thread_.join();
  live_.end();
}

void SlowWork::tell() {
  std::unique_lock lock{mutex_};
  while (!over_.wait_for(lock, period_, [this] { return isOver_; })) {
    live_.show(what_ + ", " + durationText(systemMonotonicClock().now() - startedAt_));
  }
}

}  // namespace quellin::cli
