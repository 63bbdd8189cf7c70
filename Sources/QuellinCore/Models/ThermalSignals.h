#pragma once

#include <cstdint>
#include <optional>
#include <tuple>

#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// What the operating system says about heat, before any interpretation. No signal depends on another.
struct ThermalSignals {
  std::optional<std::int64_t>
      stateCode;  ///< 0 nominal, 1 fair, 2 serious, 3 critical; other values are possible
  std::optional<std::uint64_t> pressureState;  ///< raw state of the thermal-pressure notification
  std::optional<bool> isLowPowerMode;  ///< low-power mode is switched on; absent where the host has none

  static constexpr auto fields() {
    return std::tuple{Field{"stateCode", &ThermalSignals::stateCode},
                      Field{"pressureState", &ThermalSignals::pressureState},
                      Field{"isLowPowerMode", &ThermalSignals::isLowPowerMode}};
  }

  bool operator==(const ThermalSignals&) const = default;
};

}  // namespace quellin
