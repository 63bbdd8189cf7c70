#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "QuellinCore/Models/SystemPowerState.h"
#include "QuellinCore/Support/Background.h"
#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/MainExecutor.h"
#include "QuellinCore/Support/Observation.h"

namespace quellin {

/// Live state: reads the machine once per interval while running, publishes each snapshot and keeps the
/// latest ones.
///
/// Lives on the main executor: every operation must be called there and ends the process elsewhere, and
/// observers are called there. Reads run on a background thread. Destroying the engine ends the polling and
/// waits for a read in flight; observers are not called any more. An observer may unsubscribe, stop or
/// destroy the engine inside its own call. What an observer throws leaves through the main executor's loop
/// and ends the polling.
class MetricsEngine {
 public:
  /// One full read of the machine. Called on background threads, after a restart on two at a time; may block,
  /// must not throw.
  using Reader = std::function<SystemPowerState()>;

  /// A stopped engine with an empty history and an empty current state stamped by `wallClock`. Throws
  /// std::invalid_argument for an `interval` that is not finite and above 0, and for a negative
  /// `historyLimit`. `reader` defaults to the readers of this host.
  MetricsEngine(std::shared_ptr<MainExecutor> executor, Seconds interval, std::int64_t historyLimit,
                Reader reader = nativeReader(), std::unique_ptr<Background> background = makeBackground(2),
                const WallClock& wallClock = systemWallClock());
  MetricsEngine(const MetricsEngine&) = delete;
  MetricsEngine& operator=(const MetricsEngine&) = delete;
  MetricsEngine(MetricsEngine&&) = delete;
  MetricsEngine& operator=(MetricsEngine&&) = delete;
  ~MetricsEngine();

  /// The latest snapshot.
  [[nodiscard]] const SystemPowerState& currentState() const;
  /// The latest snapshots, oldest first, at most `historyLimit`.
  [[nodiscard]] const std::vector<SystemPowerState>& history() const;
  [[nodiscard]] bool isRunning() const;  ///< between `start` and `stop`
  /// From the end of one poll to the start of the next.
  [[nodiscard]] Seconds interval() const;
  [[nodiscard]] std::int64_t historyLimit() const;  ///< how many snapshots `history` keeps

  /// Begins polling, at once and then once per interval. No effect while running.
  void start();

  /// Ends the polling. A read in flight is still published when it arrives. No effect while stopped.
  void stop();

  /// A running engine starts over with the new interval at once. No effect when it is the present one. Throws
  /// as the constructor does.
  void setInterval(Seconds interval);

  /// Reads everything once and hands the result to `completion` on the main executor; current state and
  /// history stay as they are. `completion` is not called when the engine is gone by then.
  void snapshot(std::function<void(const SystemPowerState&)> completion);

  /// @{ Each calls the observer with the new value after every change, until the subscription ends.
  [[nodiscard]] Subscription observeCurrentState(std::function<void(const SystemPowerState&)> observer);
  [[nodiscard]] Subscription observeHistory(
      std::function<void(const std::vector<SystemPowerState>&)> observer);
  [[nodiscard]] Subscription observeIsRunning(std::function<void(bool)> observer);
  [[nodiscard]] Subscription observeInterval(std::function<void(Seconds)> observer);  /// @}

  /// A reader over the readers of this host.
  [[nodiscard]] static Reader nativeReader();

 private:
  struct State;

  [[nodiscard]] std::shared_ptr<State> state() const;

  std::shared_ptr<State> state_;
  std::unique_ptr<Background> background_;
};

}  // namespace quellin
