#pragma once

#include <optional>
#include <vector>

#include "QuellinCore/Models/BatteryInfo.h"
#include "QuellinCore/Models/FanInfo.h"
#include "QuellinCore/Models/PowerMetrics.h"
#include "QuellinCore/Models/PowerReading.h"
#include "QuellinCore/Models/TemperatureSensor.h"
#include "QuellinCore/Models/ThermalInfo.h"
#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// The complete snapshot of the machine at one instant. An immutable value: nothing derived is cached, so
/// that it may be copied and sent between threads freely. Battery and silicon figures are never added
/// together.
struct SystemPowerState {
  std::optional<BatteryInfo> battery;      ///< absent without a battery or when it could not be read
  std::optional<PowerMetrics> power;       ///< absent when no energy sample was available
  ThermalInfo thermal;                     ///< nominal where the host says nothing
  std::vector<FanInfo> fans;               ///< by index; empty without fans
  std::vector<TemperatureSensor> sensors;  ///< empty where none could be read
  Instant timestamp{};                     ///< when the snapshot was taken

  /// Watts at the battery's terminals as read: negative while it delivers energy. Absent without a battery.
  [[nodiscard]] std::optional<double> batteryTerminalWatts() const;

  /// Watts that the battery delivers while external power is absent, as a magnitude.
  [[nodiscard]] std::optional<double> batteryDischargeWatts() const;

  /// Watts that the battery takes in while it charges, whatever is known about external power.
  [[nodiscard]] std::optional<double> batteryChargeInputWatts() const;

  /// Watts that the battery delivers on top of external power, as a magnitude.
  [[nodiscard]] std::optional<double> batterySupplementWatts() const;

  /// Watts by the energy model of the silicon. Absent when there is none.
  [[nodiscard]] std::optional<double> siliconWatts() const;

  /// Watts drawn from the battery that the silicon model does not explain: display, storage, radios and the
  /// rest; never negative. Exists only while running on battery and with a silicon figure.
  [[nodiscard]] std::optional<double> displayAndOtherPower() const;

  /// The one figure that stands for the whole machine, and what it is. The battery's flow wins over the
  /// silicon model wherever its direction is known; absent when there is neither.
  [[nodiscard]] std::optional<PowerReading> primaryPowerReading() const;

  bool operator==(const SystemPowerState&) const = default;
};

}  // namespace quellin
