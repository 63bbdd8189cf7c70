#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/MainExecutor.h"

namespace quellin {

/// One wake-up that was asked for; destroying or resetting it calls the wake-up off. A wake-up that is just
/// happening on another thread may still run.
class [[nodiscard]] WakeUp {
 public:
  WakeUp() = default;
  explicit WakeUp(std::shared_ptr<void> handle) : handle_(std::move(handle)) {}  ///< letting go calls it off

  /// Calls the wake-up off; no effect once it has happened.
  void reset() { handle_.reset(); }

 private:
  std::shared_ptr<void> handle_;
};

/// Threads and timers beside the main executor: blocking work runs here and is awaited there.
class Background {
 public:
  virtual ~Background() = default;

  /// Runs `work` on a worker thread, soon. Callable from every thread. `work` must not throw.
  virtual void run(std::function<void()> work) = 0;

  /// Seconds on the monotonic clock that keeps counting while the machine sleeps.
  [[nodiscard]] virtual Seconds now() const = 0;

  /// Calls `action` on an unspecified thread once the clock has reached `instant`, which for one centuries
  /// away is never. `action` must not throw.
  [[nodiscard]] virtual WakeUp wakeAt(Seconds instant, std::function<void()> action) = 0;
};

/// Runs blocking `work` on `background`, then `use` with its result on `executor`. What `use` holds is
/// destroyed on the executor, too, unless `background` or `executor` drop it.
template <class Work, class Use>
void runThenPost(Background& background, std::shared_ptr<MainExecutor> executor, Work work, Use use) {
  background.run([executor = std::move(executor), work = std::move(work), use = std::move(use)]() mutable {
    auto value = std::make_shared<std::invoke_result_t<Work&>>(work());
    // Moved on: what belongs to the main executor must not be destroyed here.
    executor->post([use = std::move(use), value = std::move(value)] { use(std::move(*value)); });
  });
}

/// A background of `threads` threads. Destroying it waits for the work that has begun, drops the rest, and
/// must not happen on one of its own threads.
[[nodiscard]] std::unique_ptr<Background> makeBackground(unsigned threads = 1);

}  // namespace quellin
