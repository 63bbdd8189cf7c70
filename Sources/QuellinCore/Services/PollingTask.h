#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "QuellinCore/Support/Background.h"
#include "QuellinCore/Support/MainExecutor.h"

namespace quellin {

/// One polling loop as seen by whoever may end it: its cancellation and the sleep it may be in. Main executor
/// only.
class PollingTask : public std::enable_shared_from_this<PollingTask> {
 public:
  PollingTask(const std::shared_ptr<MainExecutor>& executor, Background& background)
      : executor_(executor), background_(&background) {}  ///< `background` must outlive it and has the clock

  [[nodiscard]] bool isCancelled() const { return isCancelled_; }  ///< no way leads back from true

  /// Ends the loop at its next look, and the sleep it may be in at once.
  void cancel();

  /// Calls `resume` on the main executor at `instant` of the background's clock, or when the task is
  /// cancelled.
  void sleepUntil(Seconds instant, std::function<void()> resume);

 private:
  void post();
  void wake();

  std::weak_ptr<MainExecutor> executor_;  // its queue may hold this task
  Background* background_;
  bool isCancelled_ = false;
  std::function<void()> resume_;
  WakeUp wakeUp_;
};

}  // namespace quellin
