#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <tuple>

#include "QuellinCore/Models/ThermalSignals.h"
#include "QuellinCore/Support/JSON/Record.h"
#include "QuellinCore/Support/RawValue.h"

namespace quellin {

/// How hard the system throttles for heat, from not at all upwards.
enum class ThermalState { nominal, fair, serious, critical };

template <>
inline constexpr std::array rawValues<ThermalState>{std::string_view{"nominal"}, std::string_view{"fair"},
                                                    std::string_view{"serious"},
                                                    std::string_view{"critical"}};

/// The machine's thermal condition at one instant.
struct ThermalInfo {
  ThermalState state = ThermalState::nominal;  ///< nominal where the host says nothing
  std::int64_t pressure = 0;                   ///< thermal-pressure level, 0 (none) to 4
  bool isLowPowerMode = false;                 ///< low-power mode is switched on

  static constexpr auto fields() {
    return std::tuple{Field{"state", &ThermalInfo::state}, Field{"pressure", &ThermalInfo::pressure},
                      Field{"isLowPowerMode", &ThermalInfo::isLowPowerMode}};
  }

  bool operator==(const ThermalInfo&) const = default;
};

/// The record for what the system said. A signal that is absent, and a state code outside 0 to 3, reads as no
/// throttling and low-power mode off; a pressure above 4 reads as 4. A pressure that is negative as a signed
/// 64-bit number ends the process.
[[nodiscard]] ThermalInfo thermalInfo(const ThermalSignals& signals);

/// Whether `thermalInfo` can make a record of `signals`; it ends the process on others.
[[nodiscard]] bool isWithinRange(const ThermalSignals& signals);

}  // namespace quellin
