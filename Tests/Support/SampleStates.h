#pragma once

#include "QuellinCore/Models/SystemPowerState.h"

namespace quellin::testing_support {

/// When the sessions of the tests begin, 2025-03-04T12:00:00Z, in seconds from 1970 on.
inline constexpr double noonSeconds = 1741089600;
inline constexpr Instant noon = instantAt(noonSeconds);

/// A snapshot of a laptop on battery, drawing 12.5 W at 80 percent, with two fans and three sensors.
[[nodiscard]] inline SystemPowerState stateOnBattery(Instant timestamp) {
  SystemPowerState state;
  state.battery.emplace();
  state.battery->chargePercent = 80;
  state.battery->wattage = -12.5;
  state.battery->health = "Good";
  state.thermal = {.state = ThermalState::fair, .pressure = 2, .isLowPowerMode = false};
  state.fans = {{.id = 0, .name = "Fan 0", .currentRPM = 1200, .minRPM = 1000, .maxRPM = 5000},
                {.id = 1, .name = "Fan 1", .currentRPM = 1300, .minRPM = 1000, .maxRPM = 5000}};
  state.sensors = {{"TC0P", "CPU", 45.5}, {"TG0P", "GPU", 51.25}, {"TB0T", "Battery", 30}};
  state.timestamp = timestamp;
  return state;
}

/// A snapshot of a machine of which nothing could be read.
[[nodiscard]] inline SystemPowerState emptyState(Instant timestamp) {
  SystemPowerState state;
  state.timestamp = timestamp;
  return state;
}

/// A snapshot of a laptop that draws so much from its battery; without watts, one that has none.
[[nodiscard]] inline SystemPowerState stateDrawing(Instant timestamp, std::optional<double> watts,
                                                   std::int64_t percent) {
  SystemPowerState state = emptyState(timestamp);
  if (watts) {
    state.battery.emplace().wattage = -*watts;
    state.battery->chargePercent = percent;
  }
  return state;
}

}  // namespace quellin::testing_support
