#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "QuellinCore/Sessions/PowerSessionPowerSegment.h"
#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// A process by the energy it cost over a session; processes of one name count together.
struct PowerSessionContributor {
  std::string name;        ///< of the process
  std::string source;      ///< "powermetrics" or "proc_pid_rusage"
  double score = 0;        ///< without a unit; comparable within one source
  std::string confidence;  ///< "derived" or "estimated"

  /// What tells one contributor from another.
  [[nodiscard]] std::string id() const { return name + "-" + source; }

  static constexpr auto fields() {
    return std::tuple{Field{"name", &PowerSessionContributor::name},
                      Field{"source", &PowerSessionContributor::source},
                      Field{"score", &PowerSessionContributor::score},
                      Field{"confidence", &PowerSessionContributor::confidence}};
  }

  bool operator==(const PowerSessionContributor&) const = default;
};

/// What a session comes to. The default one is that of a session without samples.
struct PowerSessionSummary {
  /// Stands for the averages and sums that sources of different kinds do not have in common.
  static constexpr std::string_view mixedSourcesNote =
      "Mixed power sources; use powerSegments for per-source averages.";

  double durationSeconds = 0;                            ///< never negative
  std::int64_t sampleCount = 0;                          ///< with or without watts
  std::int64_t wattSampleCount = 0;                      ///< samples with total watts
  std::optional<double> averageWatts;                    ///< absent for mixed sources
  std::optional<std::string> averageWattsNote;           ///< present for mixed sources
  std::optional<double> minWatts;                        ///< absent without a reading
  std::optional<double> maxWatts;                        ///< absent without a reading
  std::optional<double> totalWattHours;                  ///< absent for mixed sources
  std::optional<std::string> totalWattHoursNote;         ///< equal to `averageWattsNote`
  std::optional<std::int64_t> batteryPercentStart;       ///< absent when never known
  std::optional<std::int64_t> batteryPercentEnd;         ///< absent when never known
  std::optional<std::int64_t> batteryPercentDelta;       ///< negative when the charge fell
  std::int64_t maxThermalPressure = 0;                   ///< 0 (none) to 4
  std::optional<double> maxTemperature;                  ///< degrees Celsius
  std::optional<std::int64_t> maxFanRPM;                 ///< revolutions per minute
  std::vector<PowerSessionPowerSegment> powerSegments;   ///< in order of time; empty without samples
  std::vector<PowerSessionContributor> topContributors;  ///< highest score first

  /// The summary of a session without samples.
  [[nodiscard]] static PowerSessionSummary empty() { return {}; }

  static constexpr auto fields() {
    using Summary = PowerSessionSummary;
    return std::tuple{Field{"durationSeconds", &Summary::durationSeconds},
                      Field{"sampleCount", &Summary::sampleCount},
                      Field{"wattSampleCount", &Summary::wattSampleCount},
                      Field{"averageWatts", &Summary::averageWatts},
                      Field{"averageWattsNote", &Summary::averageWattsNote},
                      Field{"minWatts", &Summary::minWatts},
                      Field{"maxWatts", &Summary::maxWatts},
                      Field{"totalWattHours", &Summary::totalWattHours},
                      Field{"totalWattHoursNote", &Summary::totalWattHoursNote},
                      Field{"batteryPercentStart", &Summary::batteryPercentStart},
                      Field{"batteryPercentEnd", &Summary::batteryPercentEnd},
                      Field{"batteryPercentDelta", &Summary::batteryPercentDelta},
                      Field{"maxThermalPressure", &Summary::maxThermalPressure},
                      Field{"maxTemperature", &Summary::maxTemperature},
                      Field{"maxFanRPM", &Summary::maxFanRPM},
                      Field{"powerSegments", &Summary::powerSegments},
                      Field{"topContributors", &Summary::topContributors}};
  }

  bool operator==(const PowerSessionSummary&) const = default;
};

}  // namespace quellin
