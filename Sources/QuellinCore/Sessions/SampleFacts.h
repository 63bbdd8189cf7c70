#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Sessions/PowerSessionDTOs.h"

namespace quellin {

/// What one row of process data adds to the score of a process.
struct Contribution {
  std::string name;         ///< of the process
  bool isMeasured = false;  ///< true from pro telemetry, false from sampled process activity
  double score = 0;         ///< above 0

  bool operator==(const Contribution&) const = default;
};

/// What pro telemetry contributes: per row the first present of energy impact, CPU time and wakeups, rows
/// with none or with 0 or less left out.
[[nodiscard]] std::vector<Contribution> contributions(const ProTelemetrySnapshot& telemetry);

/// What sampled process activity contributes: the impact score of each row, those of 0 or less left out.
[[nodiscard]] std::vector<Contribution> contributions(std::span<const ProcessActivityDTO> activities);

/// What a summary needs of a sample's blobs, worked out while they are at hand and kept beside the columns.
/// The battery's external power and percent in the snapshot are those of the columns whenever facts are
/// there.
struct SampleFacts {
  std::string powerSourceKind;                ///< raw value of a `PowerReadingKind`, or "unavailable"
  std::string powerSourceLabel;               ///< as in `PowerSamplePoint`
  std::vector<Contribution> contributions;    ///< those of the pro telemetry first
  std::optional<Instant> telemetrySampledAt;  ///< of pro telemetry that was available, in whole seconds

  bool operator==(const SampleFacts&) const = default;
};

/// The facts of a sample whose blobs are the encodings of these records; no value when reading the blobs back
/// would not give the same.
[[nodiscard]] std::optional<SampleFacts> sampleFacts(const SystemPowerStateDTO& snapshot,
                                                     std::span<const ProcessActivityDTO> activities,
                                                     const ProTelemetrySnapshot* telemetry);

}  // namespace quellin
