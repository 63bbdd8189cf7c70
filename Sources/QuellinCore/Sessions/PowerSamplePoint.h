#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// The power facts of one moment, for plotting and integration.
struct PowerSamplePoint {
  Instant timestamp;                           ///< that of the sample or live state
  std::optional<double> watts;                 ///< total watts; absent when no reading was possible
  std::string sourceKind;                      ///< raw value of a `PowerReadingKind`, or "unavailable"
  std::string sourceLabel;                     ///< the kind's label, "On AC, battery idle" or "Unavailable"
  std::optional<bool> acConnected;             ///< absent without battery information
  std::optional<std::int64_t> batteryPercent;  ///< absent when not known

  bool operator==(const PowerSamplePoint&) const = default;
};

}  // namespace quellin
