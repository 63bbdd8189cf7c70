#include "QuellinCore/Models/PowerReadingRules.h"

#include <array>
#include <cstddef>

namespace quellin {
namespace {

// In the order of the kinds.
constexpr std::array<PowerReadingTexts, rawValues<PowerReadingKind>.size()> texts{
    {{"Battery draw", "SmartBattery whole-system draw while unplugged"},
     {"Battery charge input", "SmartBattery charge rate; not total system load"},
     {"Battery supplement", "Battery is supplementing adapter input; not total system load"},
     {"IOReport silicon power", "CPU/GPU/ANE/DRAM energy model"}}};

}  // namespace

std::optional<PowerReadingKind> batteryReadingKind(const BatteryFlow& flow) {
  if (flow.wattage < 0) {
    return flow.acConnected ? PowerReadingKind::batterySupplement : PowerReadingKind::batteryDischarge;
  }
  if (flow.isCharging && flow.wattage > 0) return PowerReadingKind::batteryChargeInput;
  return std::nullopt;
}

const PowerReadingTexts& powerReadingTexts(PowerReadingKind kind) {
  return texts.at(static_cast<std::size_t>(kind));
}

PowerReadingConfidence powerReadingConfidence(PowerReadingKind kind) {
  return kind == PowerReadingKind::ioReportSiliconPower ? PowerReadingConfidence::ioReport
                                                        : PowerReadingConfidence::batteryTerminal;
}

}  // namespace quellin
