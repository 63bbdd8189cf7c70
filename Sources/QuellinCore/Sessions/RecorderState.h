#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "QuellinCore/Sessions/PowerSessionRecorder.h"
#include "QuellinCore/Sessions/RecorderMeter.h"
#include "QuellinCore/Sessions/RunningSummary.h"

namespace quellin {

/// What a recorder knows and does. The recorder owns it; a measurement in flight holds it weakly. Operations
/// note what they change and tell the observers at their very end, so that an observer finds everything
/// settled.
class PowerSessionRecorder::State : public std::enable_shared_from_this<State> {
 public:
  State(std::shared_ptr<MainExecutor> mainExecutor, std::shared_ptr<PowerSessionStore> sessionStore,
        Seconds interval, ProcessSampler sampler, Background& sampleOn, const CPUClock& cpuClock);

  std::shared_ptr<PowerSession> start(const std::optional<std::string>& title, PowerSessionSource source,
                                      double sampleInterval, Instant startedAt);
  void stop(Instant endedAt);
  void interrupt(Instant endedAt);
  void record(const SystemPowerState& state, const std::optional<ProTelemetrySnapshot>& proTelemetry,
              std::function<void()> completion);
  void refreshActiveSession();
  void refreshSummary();
  std::vector<std::shared_ptr<PowerSession>> sessions();
  PowerSessionSummary summary(const std::shared_ptr<PowerSession>& session);
  void remove(const std::shared_ptr<PowerSession>& session);

  /// Nobody hears of anything any more, and nothing is recorded any more. What recording has cost so far is
  /// saved, and with it what an earlier save could not write, if that can be written now.
  void close();

  const std::shared_ptr<MainExecutor> executor;
  const std::shared_ptr<PowerSessionStore> store;
  const Seconds processSampleInterval;
  std::shared_ptr<PowerSession> activeSession;
  RunningSummary running;
  std::optional<std::string> lastError;
  std::optional<Instant> lastProcessSampleAt;
  std::optional<Instant> lastProTelemetrySampledAt;

  struct Signals {
    Signal<const std::shared_ptr<PowerSession>&> activeSession;
    Signal<const PowerSessionSummary&> activeSummary;
    Signal<const std::optional<std::string>&> lastError;
    Signal<const std::optional<Instant>&> lastProcessSampleAt;
    Signal<const std::optional<Instant>&> lastProTelemetrySampledAt;
  };
  std::unique_ptr<Signals> signals = std::make_unique<Signals>();

 private:
  struct Changes {
    bool activeSession = false;
    bool activeSummary = false;
    bool lastError = false;
    bool lastProcessSampleAt = false;
    bool lastProTelemetrySampledAt = false;
  };

  /// A snapshot on its way into a session.
  struct Snapshot {
    std::shared_ptr<PowerSession> session;
    SystemPowerState state;
    std::optional<ProTelemetrySnapshot> proTelemetry;
    std::vector<ProcessActivityInfo> processActivities;
    std::function<void()> completion;
  };

  [[nodiscard]] bool needsProcessActivity(const Snapshot& snapshot) const;
  void measure(std::shared_ptr<Snapshot> snapshot);
  void append(const Snapshot& snapshot);
  void finish(const Snapshot& snapshot);
  [[nodiscard]] std::optional<ProTelemetrySnapshot> accepted(
      const std::optional<ProTelemetrySnapshot>& proTelemetry);

  using Ending = void (PowerSessionStore::*)(const std::shared_ptr<PowerSession>&, Instant);
  void end(Ending ending, Instant endedAt);

  void noteCost(std::optional<Instant> moment = std::nullopt);
  void reset(std::shared_ptr<PowerSession> session);
  void reloadActiveSession();
  void leaveSession();
  void rebuild();

  void setLastError(std::optional<std::string> text);
  void setLastProcessSampleAt(std::optional<Instant> instant);
  void setLastProTelemetrySampledAt(std::optional<Instant> instant);
  void tell();

  /// What `operation` returns; no value, and `lastError` set, when the store fails.
  template <class Operation>
  auto attempt(Operation operation) -> std::optional<decltype(operation())> {
    try {
      return operation();
    } catch (const StoreError& error) {
      setLastError(error.what());
      return std::nullopt;
    }
  }

  std::shared_ptr<const ProcessSampler> processSampler_;
  Background* background_;
  RecorderMeter meter_;
  Changes changes_;
  bool wasRebuilt_ = false;  // the summary, since the last append began
};

}  // namespace quellin
