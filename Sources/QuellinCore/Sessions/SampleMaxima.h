#pragma once

#include <cstdint>
#include <optional>

#include "QuellinCore/Models/SystemPowerState.h"
#include "QuellinCore/Sessions/SampleColumns.h"

namespace quellin {

/// The greatest values of a moment that summaries follow.
struct SampleMaxima {
  std::int64_t thermalPressure = 0;    ///< 0 (none) to 4
  std::optional<std::int64_t> fanRPM;  ///< absent without fans
  std::optional<double> temperature;   ///< degrees Celsius; absent without sensors

  bool operator==(const SampleMaxima&) const = default;
};

/// Those of a live state.
[[nodiscard]] SampleMaxima maxima(const SystemPowerState& state);

/// Those of a stored sample.
[[nodiscard]] SampleMaxima maxima(const SampleColumns& columns);

}  // namespace quellin
