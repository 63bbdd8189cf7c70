#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/UUID.h"

namespace quellin {

/// What a sample keeps beside its blobs. The figures from `totalWatts` to `maxTemperature` repeat what the
/// snapshot blob holds, so that lists and summaries need not decode it.
struct SampleColumns {
  UUID id;                                     ///< not unique by force
  Instant timestamp;                           ///< by default that of the snapshot
  double elapsedSeconds = 0;                   ///< since the start of the session, never negative
  std::optional<double> totalWatts;            ///< of the primary power reading; absent without one
  std::optional<std::int64_t> batteryPercent;  ///< absent without a battery
  std::optional<bool> acConnected;             ///< absent without a battery
  std::int64_t thermalPressure = 0;            ///< 0 (none) to 4
  std::optional<std::int64_t> maxFanRPM;       ///< absent without fans
  std::optional<double> maxTemperature;        ///< degrees Celsius; absent without sensors
  Instant createdAt;                           ///< when the record was made

  bool operator==(const SampleColumns&) const = default;
};

/// The blobs of a sample: records as JSON.
struct SampleBlobs {
  std::string snapshotData;                        ///< a `SystemPowerStateDTO`
  std::optional<std::string> processActivityData;  ///< an array of `ProcessActivityDTO`
  std::optional<std::string> proTelemetryData;     ///< a `ProTelemetrySnapshot`

  bool operator==(const SampleBlobs&) const = default;
};

}  // namespace quellin
