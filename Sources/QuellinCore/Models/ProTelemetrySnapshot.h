#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// What the operating system's measuring tool is called where it is the source of figures.
inline constexpr std::string_view powermetricsSource = "powermetrics";

/// How long that tool is to measure, in milliseconds.
inline constexpr std::int64_t powermetricsIntervalMilliseconds = 1000;

/// The energy figures of one process, as the privileged measurement reports them.
struct ProProcessEnergy {
  std::int32_t pid = 0;                      ///< process identifier
  std::string name;                          ///< as the measuring tool prints it
  std::optional<double> energyImpact;        ///< unitless score
  std::optional<double> cpuTimePercent;      ///< percent of one core
  std::optional<double> wakeupsPerSecond;    ///< wakeups per second
  std::optional<double> diskBytesPerSecond;  ///< bytes per second

  /// What tells one row from another: the process identifier.
  [[nodiscard]] std::int32_t id() const { return pid; }

  static constexpr auto fields() {
    return std::tuple{Field{"pid", &ProProcessEnergy::pid},
                      Field{"name", &ProProcessEnergy::name},
                      Field{"energyImpact", &ProProcessEnergy::energyImpact},
                      Field{"cpuTimePercent", &ProProcessEnergy::cpuTimePercent},
                      Field{"wakeupsPerSecond", &ProProcessEnergy::wakeupsPerSecond},
                      Field{"diskBytesPerSecond", &ProProcessEnergy::diskBytesPerSecond}};
  }

  bool operator==(const ProProcessEnergy&) const = default;
};

/// One privileged measurement: component powers and the energy of processes.
struct ProTelemetrySnapshot {
  /// How long a snapshot counts as fresh when a caller has no window of its own.
  static constexpr Seconds defaultFreshnessWindow{15.0};

  bool isAvailable = false;  ///< true when at least one sample of the measuring tool could be parsed
  std::string source;        ///< what produced the snapshot
  Instant sampledAt;         ///< when the snapshot was finished
  std::int64_t sampleIntervalMilliseconds = 0;  ///< the measuring interval asked for
  std::vector<ProProcessEnergy> processes;      ///< in the order printed
  std::optional<double> cpuPowerWatts;          ///< average over the interval
  std::optional<double> gpuPowerWatts;          ///< average over the interval
  std::optional<double> anePowerWatts;          ///< neural engine, average over the interval
  std::optional<std::string>
      rawSampleSummary;              ///< one line on what was parsed, or the head of unreadable output
  std::optional<std::string> error;  ///< the failure, when `isAvailable` is false

  /// The sum in watts of the component powers that are present. Absent when none is, when the snapshot is not
  /// available, and when it is older than `maxAge` at `now`; a snapshot from the future is fresh.
  [[nodiscard]] std::optional<double> freshPowerTotal(Instant now, Seconds maxAge) const;

  static constexpr auto fields() {
    return std::tuple{Field{"isAvailable", &ProTelemetrySnapshot::isAvailable},
                      Field{"source", &ProTelemetrySnapshot::source},
                      Field{"sampledAt", &ProTelemetrySnapshot::sampledAt},
                      Field{"sampleIntervalMilliseconds", &ProTelemetrySnapshot::sampleIntervalMilliseconds},
                      Field{"processes", &ProTelemetrySnapshot::processes},
                      Field{"cpuPowerWatts", &ProTelemetrySnapshot::cpuPowerWatts},
                      Field{"gpuPowerWatts", &ProTelemetrySnapshot::gpuPowerWatts},
                      Field{"anePowerWatts", &ProTelemetrySnapshot::anePowerWatts},
                      Field{"rawSampleSummary", &ProTelemetrySnapshot::rawSampleSummary},
                      Field{"error", &ProTelemetrySnapshot::error}};
  }

  bool operator==(const ProTelemetrySnapshot&) const = default;
};

}  // namespace quellin
