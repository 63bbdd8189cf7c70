#include "QuellinCore/Models/SystemPowerState.h"

#include <cmath>

namespace quellin {
namespace {

bool delivers(const BatteryInfo& battery) { return battery.wattage < 0; }

}  // namespace

std::optional<double> SystemPowerState::batteryTerminalWatts() const {
  if (!battery) return std::nullopt;
  return battery->wattage;
}

std::optional<double> SystemPowerState::batteryDischargeWatts() const {
  if (!battery || battery->acConnected || !delivers(*battery)) return std::nullopt;
  return std::abs(battery->wattage);
}

std::optional<double> SystemPowerState::batteryChargeInputWatts() const {
  if (!battery || !battery->isCharging || !(battery->wattage > 0)) return std::nullopt;
  return battery->wattage;
}

std::optional<double> SystemPowerState::batterySupplementWatts() const {
  if (!battery || !battery->acConnected || !delivers(*battery)) return std::nullopt;
  return std::abs(battery->wattage);
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
  if (const auto watts = batteryDischargeWatts()) {
    return PowerReading{*watts, PowerReadingKind::batteryDischarge, "Battery draw",
                        "SmartBattery whole-system draw while unplugged",
                        PowerReadingConfidence::batteryTerminal};
  }
  if (const auto watts = batterySupplementWatts()) {
    return PowerReading{*watts, PowerReadingKind::batterySupplement, "Battery supplement",
                        "Battery is supplementing adapter input; not total system load",
                        PowerReadingConfidence::batteryTerminal};
  }
  if (const auto watts = batteryChargeInputWatts()) {
    return PowerReading{*watts, PowerReadingKind::batteryChargeInput, "Battery charge input",
                        "SmartBattery charge rate; not total system load",
                        PowerReadingConfidence::batteryTerminal};
  }
  if (const auto watts = siliconWatts()) {
    return PowerReading{*watts, PowerReadingKind::ioReportSiliconPower, "IOReport silicon power",
                        "CPU/GPU/ANE/DRAM energy model", PowerReadingConfidence::ioReport};
  }
  return std::nullopt;
}

}  // namespace quellin
