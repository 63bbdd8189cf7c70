#pragma once

#include <optional>
#include <string>
#include <vector>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Support/Clock.h"
#include "QuellinHelper/BlockedSignals.h"
#include "QuellinHelper/PowermetricsSnapshot.h"
#include "QuellinHelper/SampleFile.h"
#include "QuellinHelper/SystemTemporaryFolder.h"

namespace quellin {

/// Measures component powers and the energy of processes by running the operating system's measuring tool
/// once. Needs effective user 0 with the real tool. One thread at a time; `sample` blocks for about a second,
/// and for 15 seconds at most before the tool is ended.
class PowermetricsSampler {
 public:
  /// `executable` is an absolute path. The clocks must outlive the sampler.
  explicit PowermetricsSampler(std::string executable = "/usr/bin/powermetrics",
                               std::string temporaryFolder = systemTemporaryFolder(),
                               WallClock& wallClock = systemWallClock(),
                               MonotonicClock& monotonicClock = systemMonotonicClock());

  /// One measurement. Every failure is a snapshot that says so. Neither a child nor a file is left behind,
  /// whatever happens, short of SIGKILL: signals that would end the process are held back meanwhile and end
  /// the wait.
  [[nodiscard]] ProTelemetrySnapshot sample();

  /// The signal that cut the last measurement short, if one did. It has been taken: a program that is to end
  /// by it raises it again.
  [[nodiscard]] std::optional<int> interruption() const { return interruption_; }

 private:
  [[nodiscard]] CommandResult measure(const BlockedSignals& signals);
  [[nodiscard]] CommandResult runPowermetrics(const std::vector<std::string>& arguments,
                                              const SampleFile& output, Seconds timeout,
                                              const BlockedSignals& signals);

  std::string executable_;
  std::string temporaryFolder_;
  WallClock& wallClock_;
  MonotonicClock& monotonicClock_;
  std::optional<int> interruption_;
};

}  // namespace quellin
