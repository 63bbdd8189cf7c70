#pragma once

#include <optional>
#include <span>
#include <string>

#include "QuellinCore/Platform/Linux/PowerSupply.h"

namespace quellin {

enum class ChargingStatus { charging, discharging, full, notCharging };

/// What one battery, or all batteries of the machine taken together, hold and do, in the units of the battery
/// tables.
struct BatteryPack {
  std::optional<ChargingStatus> status;
  std::optional<double> percent;
  std::optional<double> chargeNow;       ///< mAh
  std::optional<double> chargeFull;      ///< mAh
  std::optional<double> chargeDesign;    ///< mAh
  std::optional<double> voltage;         ///< mV
  std::optional<double> current;         ///< mA, negative while discharging
  std::optional<double> currentAverage;  ///< mA, negative while discharging
  std::optional<double> temperature;     ///< hundredths of a degree Celsius
  std::optional<double> cycleCount;
  std::optional<double> minutesToEmpty;
  std::optional<double> minutesToEmptyAverage;
  std::optional<double> minutesToFull;
  std::optional<double> minutesToFullAverage;
  std::optional<std::string> health;
  std::optional<std::string> serialNumber;

  bool operator==(const BatteryPack&) const = default;
};

/// One battery. Charges come from the charge_* properties; a driver that counts energy instead has it divided
/// by the voltage of this moment (by the design voltage without one), so that charge over current is exactly
/// energy over power, while the charge itself is approximate. The sign of the current is that of the status.
[[nodiscard]] BatteryPack batteryPack(const PowerSupply& battery);

/// Several batteries as one of the first one's voltage, such that energies and powers add up: charges and
/// currents are scaled by the voltage before they are added. A sum of which a part is unknown is unknown. Of
/// the rest: the highest temperature and cycle count, the first health that is not "Good", the first serial
/// number; the kernel's time estimates are for one battery each and are left out. No batteries give an empty
/// pack.
[[nodiscard]] BatteryPack combinedPack(std::span<const BatteryPack> packs);

}  // namespace quellin
