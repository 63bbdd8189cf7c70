#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "QuellinCore/Sessions/PowerSessionRecorder.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/Measuring/Loop.h"
#include "quellin/Measuring/MeasuredHost.h"
#include "quellin/Measuring/TelemetryFeed.h"
#include "quellin/Storage/RecorderLock.h"

namespace quellin::cli {

/// What is said when others ended the session that is recorded, or deleted it.
inline constexpr const char* sessionLostText =
    "the session is no longer active: it was ended or deleted from elsewhere.";
/// What is said instead of summing up a session that others deleted.
inline constexpr const char* sessionDeletedText =
    "the session was deleted from elsewhere; nothing is left of it.";

/// Records one session over a machine: reads everything and hands it to the recorder. Used on the loop's
/// thread.
class SessionRecording {
 public:
  /// In the store that the options name; looks at the processes every `processInterval`. All must outlive the
  /// recording. `storeFile` is how the store is opened. Throws `StoreError`.
  SessionRecording(const Invocation& invocation, const MeasuredHost& host, Loop& loop,
                   Seconds processInterval, const StoreFileOptions& storeFile = {});
  SessionRecording(const SessionRecording&) = delete;
  SessionRecording& operator=(const SessionRecording&) = delete;
  SessionRecording(SessionRecording&&) = delete;
  SessionRecording& operator=(SessionRecording&&) = delete;
  /// Ends the session when nothing else has, as `end` does, or else as `interruptWhenLeft` says: what is
  /// recorded up to a failure is a session of its own.
  ~SessionRecording();

  [[nodiscard]] PowerSessionRecorder& recorder() { return recorder_; }
  [[nodiscard]] PowerSessionStore& store() { return *recorder_.store(); }
  /// The telemetry of the installed tool, where it was asked for.
  [[nodiscard]] const TelemetryFeed& telemetry() const { return telemetry_; }
  /// The primary reading of the last sample.
  [[nodiscard]] const std::optional<PowerReading>& reading() const { return reading_; }

  /// Begins a session, or goes on with the one that is active. `interval` is what was asked for from one
  /// sample to the next. Throws `Failure`, also as `claimStore` does, and `StoreError`.
  const std::shared_ptr<PowerSession>& begin(const std::optional<std::string>& title, Seconds interval);

  /// False when the session was ended or deleted from elsewhere.
  [[nodiscard]] bool isStillOurs() { return session_ && store().isStillActive(session_); }

  /// Reads everything and stores it as one sample; calls `done` once, inside this call or later.
  void sample(std::function<void()> done);

  /// Reads everything once more for the sample that the session ends with, unless the last reading was taken
  /// at `end`, on the machine's monotonic clock, or later. A trace tells of nothing between its ticks: it is
  /// only read where nothing of it was. Samples that follow make it void.
  void readLast(Seconds end);

  /// Stores what `readLast` read; runs the loop until that is done. The processes are not looked at again:
  /// what they cost by now is no part of the session.
  void storeLast();

  /// What went wrong last; absent when all is well. That a sample came too late for a session which others
  /// deleted is no failure: `isStillOurs` tells of it.
  [[nodiscard]] std::optional<std::string> failure() const;

  /// As `failure`; each is told once, for as long as it lasts.
  [[nodiscard]] std::optional<std::string> newFailure();

  /// Ends the session unless that has been done, here or elsewhere; `failure` tells when it cannot be. Throws
  /// `StoreError` where the store cannot even be asked for it.
  void end();

  /// As `end`, as interrupted.
  void interrupt();

  /// From now on a session that nothing ends is interrupted by the destructor.
  void interruptWhenLeft() { endingWhenLeft_ = &PowerSessionRecorder::interrupt; }

 private:
  using Ending = void (PowerSessionRecorder::*)(Instant);
  void endBy(Ending ending);
  [[nodiscard]] SystemPowerState read();
  [[nodiscard]] std::vector<ProcessActivityInfo> topProcesses(int limit, Seconds interval) const;

  const Options& options_;
  const MeasuredHost& host_;
  Loop& loop_;
  SystemReader reader_;
  std::atomic<bool> isEnding_{false};  // told to the recorder's thread
  PowerSessionRecorder recorder_;
  TelemetryFeed telemetry_;
  std::optional<RecorderLock> lock_;  // while a session is recorded
  std::shared_ptr<PowerSession> session_;
  std::optional<PowerReading> reading_;
  std::optional<Seconds> readAt_;         // on the machine's monotonic clock
  std::optional<SystemPowerState> last_;  // to be stored by `storeLast`
  std::optional<std::string> toldFailure_;
  Ending endingWhenLeft_ = &PowerSessionRecorder::stop;
};

}  // namespace quellin::cli
