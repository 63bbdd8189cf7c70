#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <vector>

#include "QuellinCore/Platform/Linux/FileTree.h"
#include "QuellinCore/Platform/Linux/SourceReport.h"

namespace quellin {

/// One entry of /sys/class/power_supply, in the kernel's units. A property that the driver does not have, or
/// that could not be read, is absent.
struct PowerSupply {
  std::string name;  ///< the entry's name: "BAT0", "AC"
  std::optional<std::string> type;
  std::optional<std::string> scope;
  std::optional<std::string> status;
  std::optional<std::string> health;
  std::optional<std::string> serialNumber;
  std::optional<std::int64_t> present;
  std::optional<std::int64_t> online;
  std::optional<std::int64_t> capacity;          ///< percent
  std::optional<std::int64_t> chargeNow;         ///< µAh
  std::optional<std::int64_t> chargeFull;        ///< µAh
  std::optional<std::int64_t> chargeFullDesign;  ///< µAh
  std::optional<std::int64_t> energyNow;         ///< µWh
  std::optional<std::int64_t> energyFull;        ///< µWh
  std::optional<std::int64_t> energyFullDesign;  ///< µWh
  std::optional<std::int64_t> voltageNow;        ///< µV
  std::optional<std::int64_t> voltageMinDesign;  ///< µV
  std::optional<std::int64_t> voltageMax;        ///< µV
  std::optional<std::int64_t> currentNow;        ///< µA; many drivers give the magnitude only
  std::optional<std::int64_t> currentAverage;    ///< µA
  std::optional<std::int64_t> currentMax;        ///< µA
  std::optional<std::int64_t> powerNow;          ///< µW
  std::optional<std::int64_t> temperature;       ///< tenths of a degree Celsius
  std::optional<std::int64_t> cycleCount;
  std::optional<std::int64_t> timeToEmptyNow;      ///< seconds
  std::optional<std::int64_t> timeToEmptyAverage;  ///< seconds
  std::optional<std::int64_t> timeToFullNow;       ///< seconds
  std::optional<std::int64_t> timeToFullAverage;   ///< seconds

  /// The properties that are there and could not be read, in the order of this record.
  std::vector<ReadFault> faults;
};

/// Where the kernel lists power supplies, below /sys.
inline constexpr const char* powerSupplyDirectory = "class/power_supply";

/// Every power supply of the machine, in natural order of the names.
[[nodiscard]] std::expected<std::vector<PowerSupply>, SystemError> readPowerSupplies(const FileTree& sys);

/// Whether the supply is a battery of the machine itself, in its bay: not that of a mouse or headset.
[[nodiscard]] bool isSystemBattery(const PowerSupply& supply);

/// Whether the supply brings power into the machine from outside, connected or not.
[[nodiscard]] bool isExternalSupply(const PowerSupply& supply);

/// Whether the supply is connected. The kernel has two words for it: 1, and 2 for a programmable supply.
[[nodiscard]] bool isOnline(const PowerSupply& supply);

}  // namespace quellin
