#include "QuellinCore/Sessions/PowerSessionMetrics.h"

#include "QuellinCore/Sessions/PowerSource.h"

namespace quellin::PowerSessionMetrics {

std::optional<double> totalWatts(const SystemPowerState& state) {
  const auto reading = state.primaryPowerReading();
  return reading ? std::optional(reading->watts) : std::nullopt;
}

std::string totalWattsConfidence(const SystemPowerState& state) {
  const auto reading = state.primaryPowerReading();
  return std::string(reading ? rawValue(reading->confidence) : "unavailable");
}

std::string powerSourceKind(const SystemPowerState& state) {
  return std::string(powerSource(state.battery, state.power.has_value()).kind);
}

std::string powerSourceLabel(const SystemPowerState& state) {
  return std::string(powerSource(state.battery, state.power.has_value()).label);
}

PowerSamplePoint livePowerPoint(const SystemPowerState& state) {
  PowerSamplePoint point{.timestamp = state.timestamp,
                         .watts = totalWatts(state),
                         .sourceKind = powerSourceKind(state),
                         .sourceLabel = powerSourceLabel(state),
                         .acConnected = {},
                         .batteryPercent = {}};
  if (state.battery) {
    point.acConnected = state.battery->acConnected;
    point.batteryPercent = state.battery->chargePercent;
  }
  return point;
}

std::string inferredPowerSourceKind(const SystemPowerStateDTO& snapshot) {
  return std::string(powerSource(snapshot.battery, snapshot.power.has_value()).kind);
}

std::string inferredPowerSourceLabel(const SystemPowerStateDTO& snapshot) {
  return std::string(powerSource(snapshot.battery, snapshot.power.has_value()).label);
}

}  // namespace quellin::PowerSessionMetrics
