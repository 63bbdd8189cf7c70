#pragma once

#include <optional>
#include <string_view>

#include "QuellinCore/Models/PowerReading.h"

namespace quellin {

/// The parts of a battery record that say where its energy goes.
struct BatteryFlow {
  double wattage = 0;        ///< watts, negative while the battery delivers energy
  bool isCharging = false;   ///< by the host's flag, not by the sign of the watts
  bool acConnected = false;  ///< external power is present

  /// The flow of a battery record of any form.
  template <class Battery>
  [[nodiscard]] static constexpr BatteryFlow of(const Battery& battery) {
    return {battery.wattage, battery.isCharging, battery.acConnected};
  }
};

/// Which quantity the battery's watts are: its draw or supplement while it delivers energy, its charge input
/// while it takes energy in and charges. No value for any other flow, among it one that is not a number.
[[nodiscard]] std::optional<PowerReadingKind> batteryReadingKind(const BatteryFlow& flow);

/// Which quantity stands for the whole machine: the battery's flow where its direction is known, else the
/// silicon model's figure where there is one.
template <class Battery>
[[nodiscard]] std::optional<PowerReadingKind> primaryReadingKind(const std::optional<Battery>& battery,
                                                                 bool hasSiliconPower) {
  if (battery) {
    if (const auto kind = batteryReadingKind(BatteryFlow::of(*battery))) return kind;
  }
  if (hasSiliconPower) return PowerReadingKind::ioReportSiliconPower;
  return std::nullopt;
}

/// What people are told about a kind of reading.
struct PowerReadingTexts {
  std::string_view label;    ///< short name
  std::string_view summary;  ///< one line on what the figure does and does not include
};

/// The texts of a kind.
[[nodiscard]] const PowerReadingTexts& powerReadingTexts(PowerReadingKind kind);

/// Where figures of a kind come from.
[[nodiscard]] PowerReadingConfidence powerReadingConfidence(PowerReadingKind kind);

}  // namespace quellin
