#include "quellin/Watch/Panels.h"

#include <utility>

#include "QuellinCore/Models/TemperatureInsights.h"
#include "quellin/Presentation/FigureText.h"

namespace quellin::cli {
namespace {

std::string watts(const std::optional<double>& value) {
  return value ? figureText(value, "W") + " W" : unknown;
}

std::string degrees(double value) { return figureText(value, "°C") + " °C"; }

std::string minutes(std::int64_t value) {
  if (value < 60) return whole(value) + " min";
  return durationText(Seconds{60.0 * static_cast<double>(value)});
}

PanelEntry stateOf(const BatteryInfo& battery) {
  if (battery.isInsufficientCharger()) return {"State", "charger too weak", Style::warning};
  if (battery.isCharging) return {"State", "charging", Style::good};
  if (battery.isFullyCharged) return {"State", "full", Style::good};
  return {"State", battery.acConnected ? "not charging" : "on battery"};
}

PanelEntry timeOf(const BatteryInfo& battery) {
  if (const auto empty = battery.timeToEmpty()) return {"Until empty", minutes(*empty)};
  if (const auto full = battery.timeToFullCharge()) return {"Until full", minutes(*full)};
  return {"Time left", unknown};
}

Style styleOf(ThermalState state) {
  switch (state) {
    case ThermalState::nominal:
      return Style::good;
    case ThermalState::fair:
      return Style::plain;
    case ThermalState::serious:
      return Style::warning;
    case ThermalState::critical:
      return Style::bad;
  }
  return Style::plain;
}

PanelEntry pressureOf(const ThermalInfo& thermal, bool isKnown) {
  if (!isKnown) return {"Thermal", unknown};
  return {"Thermal", std::string{rawValue(thermal.state)} + ", " + whole(thermal.pressure) + " of 4",
          styleOf(thermal.state)};
}

}  // namespace

Panel batteryPanel(const SystemPowerState& state) {
  Panel panel{.title = "Battery", .entries = {}};
  const auto& battery = state.battery;
  if (!battery) {
    panel.entries.push_back({"State", unknown});
    return panel;
  }
  panel.entries = {{"Charge", whole(battery->chargePercent) + " %"},
                   stateOf(*battery),
                   {"Flow", watts(state.batteryTerminalWatts())},
                   timeOf(*battery),
                   {"Health", battery->healthPercent > 0 ? whole(battery->healthPercent) + " %" : unknown}};
  return panel;
}

Panel componentsPanel(const SystemPowerState& state) {
  Panel panel{.title = "Components", .entries = {}};
  const auto& power = state.power;
  const auto add = [&](const char* label, double PowerMetrics::* part) {
    panel.entries.push_back({label, power ? watts((*power).*part) : unknown});
  };
  add("CPU", &PowerMetrics::cpuPower);
  add("GPU", &PowerMetrics::gpuPower);
  add("Neural engine", &PowerMetrics::anePower);
  add("Memory", &PowerMetrics::ramPower);
  add("Sum of the four", &PowerMetrics::systemPower);
  if (const auto rest = state.displayAndOtherPower()) {
    panel.entries.push_back({"Display and other", watts(rest)});
  }
  return panel;
}

Panel heatPanel(const SystemPowerState& state, bool isThermalKnown) {
  Panel panel{.title = "Heat and fans", .entries = {pressureOf(state.thermal, isThermalKnown)}};
  if (isThermalKnown && state.thermal.isLowPowerMode) panel.entries.push_back({"Low-power mode", "on"});
  if (state.fans.empty()) panel.entries.push_back({"Fans", unknown});
  for (const FanInfo& fan : state.fans) panel.entries.push_back({fan.name, whole(fan.currentRPM) + " rpm"});
  return panel;
}

Panel temperaturesPanel(const SystemPowerState& state) {
  Panel panel{.title = "Temperatures", .entries = {}};
  for (const auto& reading : TemperatureInsights::dashboardReadings(state.sensors, state.battery)) {
    panel.entries.push_back({reading.label, degrees(reading.temperature)});
  }
  if (panel.entries.empty()) panel.entries.push_back({"All", unknown});
  return panel;
}

}  // namespace quellin::cli
