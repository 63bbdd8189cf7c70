#pragma once

#include <functional>
#include <memory>

#include "QuellinCore/Support/Clock.h"

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

/// A background of `threads` threads. Destroying it waits for the work that has
/// begun, drops the rest, and must not happen on one of its own threads.
[[nodiscard]] std::unique_ptr<Background> makeBackground(unsigned threads = 1);

}  // namespace quellin
