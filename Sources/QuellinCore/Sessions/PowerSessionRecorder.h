#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Models/ProcessActivityInfo.h"
#include "QuellinCore/Models/SystemPowerState.h"
#include "QuellinCore/Sessions/PowerSession.h"
#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "QuellinCore/Sessions/PowerSessionSummary.h"
#include "QuellinCore/Support/Background.h"
#include "QuellinCore/Support/CPUClock.h"
#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/MainExecutor.h"
#include "QuellinCore/Support/Observation.h"

namespace quellin {

/// Turns live snapshots into a recorded session: one stored sample per snapshot, process activity at its own
/// slower pace, pro telemetry when it is new, and a live summary that costs no look at the store.
///
/// Lives on the main executor: every operation must be called there and ends the process elsewhere, and
/// observers are called there. Process activity is measured on a background thread. Nothing is thrown but by
/// `exportJSONL`: failures are found in `lastError`. What recording costs is noted in the store with the
/// first snapshot, about once a minute, when the session ends, and when the recorder goes. Destroying the
/// recorder waits for a measurement in flight and drops its snapshot. An observer may unsubscribe, use or
/// destroy the recorder inside its call.
class PowerSessionRecorder {
 public:
  /// Measures the `limit` processes with the highest impact over `interval`. Called on a background thread,
  /// may block.
  using ProcessSampler = std::function<std::vector<ProcessActivityInfo>(int limit, Seconds interval)>;

  /// A recorder that goes on with the session that is still active in `store`, if any. At least
  /// `processSampleInterval` passes between two measurements of process activity. `processSampler` defaults
  /// to the processes of this host.
  PowerSessionRecorder(std::shared_ptr<MainExecutor> executor, std::shared_ptr<PowerSessionStore> store,
                       Seconds processSampleInterval, ProcessSampler processSampler = nativeProcessSampler(),
                       std::unique_ptr<Background> background = makeBackground(),
                       const WallClock& wallClock = systemWallClock(),
                       const CPUClock& cpuClock = systemCPUClock());
  PowerSessionRecorder(const PowerSessionRecorder&) = delete;
  PowerSessionRecorder& operator=(const PowerSessionRecorder&) = delete;
  PowerSessionRecorder(PowerSessionRecorder&&) = delete;
  PowerSessionRecorder& operator=(PowerSessionRecorder&&) = delete;
  ~PowerSessionRecorder();

  /// The session that is being recorded; null when there is none.
  [[nodiscard]] const std::shared_ptr<PowerSession>& activeSession() const;
  /// The summary of the active session, empty when there is none.
  [[nodiscard]] const PowerSessionSummary& activeSummary() const;
  /// The text of the last failure; the next `start`, `stop`, `interrupt` or `record` that succeeds clears
  /// it.
  [[nodiscard]] const std::optional<std::string>& lastError() const;
  [[nodiscard]] const std::shared_ptr<PowerSessionStore>& store() const;  ///< where sessions go; never null
  [[nodiscard]] Seconds processSampleInterval() const;  ///< the least time between two measurements
  /// Timestamp of the snapshot with which process activity was last taken.
  [[nodiscard]] const std::optional<Instant>& lastProcessSampleAt() const;
  /// When the pro telemetry that was last accepted was sampled.
  [[nodiscard]] const std::optional<Instant>& lastProTelemetrySampledAt() const;

  /// Begins a session, or goes on with the one that is active in the store; the live summary begins empty
  /// either way. `sampleInterval` in seconds. Null on failure.
  std::shared_ptr<PowerSession> start(const std::optional<std::string>& title, PowerSessionSource source,
                                      double sampleInterval, Instant startedAt);

  /// Ends the active session as completed. No effect without one.
  void stop(Instant endedAt);
  /// As `stop`, as interrupted.
  void interrupt(Instant endedAt);

  /// Stores one snapshot, with the pro telemetry that the caller holds at present, in the active session; no
  /// effect without one. When process activity is due, it is measured first, for a good third of a second;
  /// other calls may come meanwhile and are handled at once. A snapshot whose session is no longer the active
  /// one after the measurement is dropped. `completion` is called at the end, inside this call when nothing
  /// is measured, and not at all when the recorder is destroyed first.
  void record(const SystemPowerState& state, const std::optional<ProTelemetrySnapshot>& proTelemetry,
              std::function<void()> completion = {});

  /// Reads the active session and its samples from the store again.
  void refreshActiveSession();
  /// Reads the samples of the active session from the store again.
  void refreshSummary();

  /// All sessions, newest start first; empty on failure.
  [[nodiscard]] std::vector<std::shared_ptr<PowerSession>> sessions();
  /// What a stored session comes to; the empty summary on failure.
  [[nodiscard]] PowerSessionSummary summary(const std::shared_ptr<PowerSession>& session);
  /// Deletes a session with its samples and reads the active session again. A session whose deletion fails is
  /// recorded no more; the next save that succeeds deletes it.
  void remove(const std::shared_ptr<PowerSession>& session);

  /// The session as a JSON Lines document of the present moment. Throws `StoreError`.
  [[nodiscard]] std::string exportJSONL(const std::shared_ptr<PowerSession>& session);

  /// @{ Each calls the observer with the new value after it was set, until the subscription ends; those of
  /// the two instants only when the value differs from the one before.
  [[nodiscard]] Subscription observeActiveSession(
      std::function<void(const std::shared_ptr<PowerSession>&)> observer);
  [[nodiscard]] Subscription observeActiveSummary(std::function<void(const PowerSessionSummary&)> observer);
  [[nodiscard]] Subscription observeLastError(
      std::function<void(const std::optional<std::string>&)> observer);
  [[nodiscard]] Subscription observeLastProcessSampleAt(
      std::function<void(const std::optional<Instant>&)> observer);
  [[nodiscard]] Subscription observeLastProTelemetrySampledAt(
      std::function<void(const std::optional<Instant>&)> observer);
  /// @}

  /// A sampler over the processes of this host.
  [[nodiscard]] static ProcessSampler nativeProcessSampler();

 private:
  class State;
  [[nodiscard]] std::shared_ptr<State> state() const;

  std::shared_ptr<State> state_;
  std::unique_ptr<Background> background_;
  const WallClock* wallClock_;
};

}  // namespace quellin
