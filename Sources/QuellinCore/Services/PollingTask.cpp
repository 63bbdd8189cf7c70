#include "QuellinCore/Services/PollingTask.h"

namespace quellin {

void PollingTask::cancel() {
  isCancelled_ = true;
  wakeUp_.reset();
  // Not from here: the canceller may be deep inside something that the loop would run into.
  post();
}

void PollingTask::sleepUntil(Seconds instant, std::function<void()> resume) {
  resume_ = std::move(resume);
  if (isCancelled_) return post();
  wakeUp_ = background_->wakeAt(instant, [weak = weak_from_this()] {
    if (const auto task = weak.lock()) task->post();
  });
}

void PollingTask::post() {
  if (const auto executor = executor_.lock()) {
    executor->post([task = shared_from_this()] { task->wake(); });
  }
}

void PollingTask::wake() {
  wakeUp_.reset();
  if (const auto resume = std::exchange(resume_, nullptr)) resume();
}

}  // namespace quellin
