#pragma once

#include "QuellinCore/Models/SystemPowerState.h"

namespace quellin::testing_support {

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

}  // namespace quellin::testing_support
