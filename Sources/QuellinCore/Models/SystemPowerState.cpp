#include "QuellinCore/Models/SystemPowerState.h"

#include <cmath>
#include <string>

#include "QuellinCore/Models/PowerReadingRules.h"

namespace quellin {
namespace {

// The magnitude of the battery's flow, where it is a flow of that kind.
std::optional<double> batteryWatts(const std::optional<BatteryInfo>& battery, PowerReadingKind kind) {
  if (!battery || batteryReadingKind(BatteryFlow::of(*battery)) != kind) return std::nullopt;
  return std::abs(battery->wattage);
}

}  // namespace

std::optional<double> SystemPowerState::batteryTerminalWatts() const {
  if (!battery) return std::nullopt;
  return battery->wattage;
}

std::optional<double> SystemPowerState::batteryDischargeWatts() const {
  return batteryWatts(battery, PowerReadingKind::batteryDischarge);
}

std::optional<double> SystemPowerState::batteryChargeInputWatts() const {
  return batteryWatts(battery, PowerReadingKind::batteryChargeInput);
}

std::optional<double> SystemPowerState::batterySupplementWatts() const {
  return batteryWatts(battery, PowerReadingKind::batterySupplement);
}

std::optional<double> SystemPowerState::siliconWatts() const {
  if (!power) return std::nullopt;
  return power->systemPower;
}

std::optional<double> SystemPowerState::displayAndOtherPower() const {
  const auto discharge = batteryDischargeWatts();
  if (!discharge || !power) return std::nullopt;
  const double unexplained = *discharge - power->systemPower;
  // Written so that NaN gives 0 as well.
  return unexplained > 0 ? unexplained : 0.0;
}

std::optional<PowerReading> SystemPowerState::primaryPowerReading() const {
  const auto kind = primaryReadingKind(battery, power.has_value());
  if (!kind) return std::nullopt;
  const auto watts =
      *kind == PowerReadingKind::ioReportSiliconPower ? siliconWatts() : batteryWatts(battery, *kind);
  const PowerReadingTexts& texts = powerReadingTexts(*kind);
  return PowerReading{*watts, *kind, std::string(texts.label), std::string(texts.summary),
                      powerReadingConfidence(*kind)};
}

}  // namespace quellin
